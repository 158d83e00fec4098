#include "Lot.h"

#include <algorithm>
#include <atomic>
#include <iostream>
#include <sstream>
#include <thread>
#include <vector>

namespace outil {

namespace {

struct Ligne {
    std::string texte;
    int numero;
    std::string resultat, avertissements;
    bool calculee = true;
};

void Calcule(Ligne& ligne, const std::string& nom, const LoiNommee& loi, Forme forme) {
    std::ostringstream resultat;
    try {
        kv::Return retour = LisRetour(ligne.texte, nom, ligne.numero);
        EcritResultat(resultat, retour.set_law(loi.loi).compute(), loi, forme);
        for (const std::string& message : retour.warnings())
            ligne.avertissements += nom + ':' + std::to_string(ligne.numero) + ": warning: " + message + '\n';
    } catch (const std::runtime_error& e) {  // the line is no return, or its computation failed
        EcritErreur(resultat, e.what());
        ligne.calculee = false;
    }
    ligne.resultat = std::move(resultat).str();
}

// Calls f(i) for each i below n, on that many threads, this one included.
template <class Fonction>
void EnParallele(std::size_t threads, std::size_t n, Fonction f) {
    std::atomic<std::size_t> prochain = 0;
    const auto travaille = [&] {
        for (std::size_t i; (i = prochain++) < n;) f(i);
    };
    std::vector<std::jthread> autres(std::min(threads, n) - (n > 0));
    for (auto& autre : autres) autre = std::jthread(travaille);
    travaille();
}

}  // namespace

bool CalculeLot(const DemandeLot& demande, const LoiNommee& loi) {
    Entree entree(demande.entree);
    ControleDifferents(demande.entree, demande.sortie);
    Sortie sortie(demande.sortie);
    Progression progression(demande.bavardage, sortie);
    const std::size_t threads = demande.threads > 0 ? static_cast<std::size_t>(demande.threads)
                                                    : std::max(1U, std::thread::hardware_concurrency());
    constexpr std::size_t lignesParOuvrier = 64;

    bool toutes = true;
    std::int64_t octets = 0;
    std::vector<Ligne> lignes;
    for (int numero = 1; entree.Flux();) {
        lignes.clear();
        for (std::string texte; lignes.size() < threads * lignesParOuvrier && std::getline(entree.Flux(), texte);) {
            octets += std::ssize(texte) + 1;
            lignes.push_back({std::move(texte), numero++, {}, {}});
        }
        EnParallele(threads, lignes.size(),
                    [&](std::size_t i) { Calcule(lignes[i], entree.Nom(), loi, demande.forme); });
        for (const Ligne& ligne : lignes) {
            sortie.Ecrit(ligne.resultat);
            if (!ligne.avertissements.empty()) {
                progression.Efface();
                std::cerr << ligne.avertissements;
            }
            toutes = toutes && ligne.calculee;
        }
        const double part =
            entree.Taille() > 0 ? static_cast<double>(octets) / static_cast<double>(entree.Taille()) : 0;
        progression.Montre(numero - 1, part);
    }
    entree.Controle();
    sortie.Vide();
    return toutes;
}

}  // namespace outil
