#include "Lot.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <iostream>
#include <sstream>
#include <system_error>
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

// Calls f(i) for each i below n, on that many threads, this one included; on fewer where the system has no more. What f
// throws is thrown again.
template <class Fonction>
void EnParallele(std::size_t threads, std::size_t n, Fonction f) {
    std::atomic<std::size_t> prochain = 0;
    std::atomic<bool> echec = false;
    std::exception_ptr faute;
    const auto travaille = [&] {
        try {
            for (std::size_t i; (i = prochain++) < n;) f(i);
        } catch (...) {
            if (!echec.exchange(true)) faute = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> autres;
        try {
            while (autres.size() + 1 < std::min(threads, n)) autres.emplace_back(travaille);
        } catch (const std::system_error&) {
        }
        travaille();
    }
    if (faute) std::rethrow_exception(faute);
}

}  // namespace

bool CalculeLot(const DemandeLot& demande, const LoiNommee& loi) {
    Entree entree(demande.entree);
    ControleDifferents(demande.entree, demande.sortie);
    Sortie sortie(demande.sortie);
    Progression progression(demande.bavardage, sortie);
    const std::size_t threads = demande.threads > 0 ? static_cast<std::size_t>(demande.threads)
                                                    : std::max(1U, std::thread::hardware_concurrency());
    const std::size_t lignesParBloc = std::clamp<std::size_t>(64 * threads, 1, 4096);

    bool toutes = true;
    std::int64_t octets = 0;
    std::vector<Ligne> lignes;
    for (int numero = 1; entree.Flux();) {
        lignes.clear();
        for (std::string texte; lignes.size() < lignesParBloc && std::getline(entree.Flux(), texte);) {
            octets += std::ssize(texte) + 1;
            lignes.push_back({std::move(texte), numero++, {}, {}});
        }
        EnParallele(threads, lignes.size(),
                    [&](std::size_t i) { Calcule(lignes[i], entree.Nom(), loi, demande.forme); });
        for (const Ligne& ligne : lignes) {
            sortie.Ecrit(ligne.resultat);
            if (!ligne.avertissements.empty() && demande.bavardage != Bavardage::Silencieux) {
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
