#include <array>

#include "interface/Composition.h"
#include "interface/LibellesEntree.h"

// The meaning of the entry boxes: the rows as they stand, then what the tables say.

namespace kv::sens {

namespace {

constexpr const char* sansEffet = "sans effet sur le calcul";

std::string Montant(Parametre montant) { return VersUtf8(FloatToStr(Valeur(loi2017, montant))) + " €"; }

class Entrees {
  public:
    std::array<SensEntree, nEntrees> sens;

    Entrees() {
        for (const PartieEntree& partie : partiesEntree)
            for (const LigneEntree& ligne : partie.lignes)
                PourChaqueMot(ligne.boites, [&](std::string_view nom) {
                    std::string libelle = ligne.libelle;
                    if (partie.groupe == Groupe::HorsCalcul) (libelle += ", ") += sansEffet;
                    Note(EntreeDe(nom), std::move(libelle), partie.groupe, ligne.genre);
                });
        Locatifs();
        OutreMer();
        Fractions();
        PartsExceptionnelles();
        for (SensEntree& s : sens)
            if (s.libelle.empty()) s = {"Case " + std::string(sansEffet), Genre::Code};
    }

  private:
    std::string& LibelleDe(CaseEntree c) { return sens[static_cast<std::size_t>(c.numero)].libelle; }
    void Note(CaseEntree c, std::string libelle, Groupe groupe, Genre genre = Genre::Euros) {
        SensEntree& s = sens[static_cast<std::size_t>(c.numero)];
        if (s.libelle.empty()) s = {std::move(libelle), genre, groupe};
    }

    void Locatifs() {
        PourChaqueRegimeLocatif([&](const auto& table, const char* regime) {
            for (const auto& ligne : table) Note(ligne.entree, Libelle(regime, ligne), Groupe::ReductionsCredits);
        });
    }

    // The share that goes to the operating company, or what limits the reduction, then what becomes of the rest.
    void OutreMer() {
        static constexpr const char* retrocedees[om::nRetrocessions] = {"50 %",   "52,63 %", "56 %", "60 %",
                                                                        "62,5 %", "65 %",    "66 %", "70 %"};
        std::array<std::string, nSorties> limites;
        const auto limiteDe = [&](CaseSortie c) -> std::string& { return limites[static_cast<std::size_t>(c.numero)]; };
        for (const auto& l : om::lignesRetrocedees)
            limiteDe(l.reduction) = std::string(", rétrocession de ") + retrocedees[l.classe];
        for (const auto& l : om::lignesLimitees) limiteDe(l.reduction) = ", plafonné";
        for (const auto& l : om::lignesLimiteesAuForfait)
            limiteDe(l.reduction) = ", plafond de " + Montant(om::EnveloppeDe(l).sansRetrocession) + " sans option";
        std::array<bool, nSorties> remboursables{};
        for (const auto& l : om::lignesRemboursables)
            remboursables[static_cast<std::size_t>(l.reduction.numero)] = true;
        for (const auto& l : om::lignesSimples)
            Note(l.entree, "Outre-mer" + limiteDe(l.sortie) + Regles(l.niche), Groupe::OutreMer);
        for (const auto& l : om::lignesReportees) {
            const bool rembourse =
                remboursables[static_cast<std::size_t>(l.sortie.numero)] || (l.suite && Nom(l.suite)[0] == 'C');
            const std::string reste = rembourse ? ", remboursable" : l.suite ? ", reportable" : "";
            Note(l.entree, "Outre-mer" + limiteDe(l.sortie) + reste + Regles(l.niche), Groupe::OutreMer);
        }
    }

    void Fractions() {
        r::TousLesGroupes([&](auto groupe) {
            for (const auto& ligne : groupe)
                if constexpr (requires { ligne.suivantes; }) {
                    int annee = anneeDesRevenus;
                    for (const auto& copie : ligne.suivantes.copies)
                        if (copie.de)
                            Note(copie.de, LibelleDe(ligne.entree) + ", part de " + std::to_string(++annee),
                                 Groupe::ReductionsCredits);
                }
        });
    }

    // "1AJCI" says which part of "1AJ" is exceptional.
    void PartsExceptionnelles() {
        for (int i = 0; i < nEntrees; ++i) {
            const std::string_view nom = entree::lignes[i].nom;
            if (nom.size() < 5 || !nom.ends_with("CI")) continue;
            const CaseEntree base = EntreeDe(nom.substr(0, nom.size() - 2));
            const SensEntree& b = sens[static_cast<std::size_t>(base.numero)];
            Note(CaseEntree::Numero(i), b.libelle + ", part exceptionnelle", b.groupe);
        }
    }
};

const Entrees& ToutesLesEntrees() {
    static const Entrees entrees;
    return entrees;
}

}  // namespace

const SensEntree& De(CaseEntree c) { return ToutesLesEntrees().sens[static_cast<std::size_t>(c.numero)]; }

}  // namespace kv::sens
