#include "interface/LignesReductions.h"

#include <array>

#include "Calcul/pCalculN/ReductionsTable.h"
#include "support/KVTarvel.h"

namespace kv {

namespace {

namespace r = reductions;
namespace om = outremer;

std::string Nom(CaseSortie c) { return c ? sortie::noms[c.numero] : ""; }
std::string Nom(CaseEntree c) { return c ? entree::lignes[c.numero].nom : ""; }
std::string Figure(Parametre p) { return VersUtf8(FloatToStr(Valeur(loi2017, p))); }
std::string Taux(Parametre p) { return p ? Figure(p) : "100"; }

const char* Groupe(Niche niche) {
    static constexpr const char* noms[] = {"outside", "2013", "2013 special", "2012",
                                           "2011",    "2010", "2009",         "outside, always active"};
    return noms[static_cast<std::size_t>(niche)];
}

std::string Texte(const r::Plafond& plafond) {
    static constexpr const char* noms[] = {"",
                                           "forest works",
                                           "help to persons in difficulty",
                                           "press",
                                           "film companies",
                                           "survivor annuities",
                                           "donations",
                                           "capital",
                                           "capital of small companies",
                                           "restored buildings",
                                           "restored buildings, four years"};
    static_assert(std::size(noms) == static_cast<std::size_t>(r::Commun::Nombre));
    std::string texte = plafond.montant ? Figure(plafond.montant) : "";
    if (plafond.parFoyer) texte += " per household";
    if (plafond.fois) texte += " x " + Nom(plafond.fois);
    if (plafond.commun != r::Commun::Aucun)
        texte += (texte.empty() ? "" : ", ") + std::string("shared: ") + noms[static_cast<std::size_t>(plafond.commun)];
    return texte;
}

// Puts the rows of the tables into words.
class Tableau {
  public:
    std::vector<LigneReduction> lignes;

    void operator()(const r::LigneTaux& l) { AuTaux(l, l.report); }
    void operator()(const r::LigneDon& l) { AuTaux(l.ligne, l.report); }
    void operator()(const r::LigneEnfants& l) {
        const std::string autres = " " + Nom(l.lycee) + " " + Nom(l.superieur);
        const std::string montants = Figure("reductions.7EA.montant") + ", " + Figure("reductions.7EC.montant") +
                                     " or " + Figure("reductions.7EF.montant") + " each";
        Ecrit(l.sortie, l.college, "100", montants + (l.diviseur == 2 ? ", halved" : ""), l.niche, "", "", autres);
    }
    void operator()(const r::LigneResidence& l) {
        Ecrit(l.sortie, l.entree, Figure(l.taux), Texte(r::plafondResidences), l.niche, Suivantes(l.suivantes));
    }
    void operator()(const r::LigneFraction& l) {
        Ecrit(l.sortie, l.entree, "100", "", l.niche, Nom(l.report) + Suivantes(l.suivantes));
    }
    void operator()(const r::LigneEtalee& l) {
        const std::string plafond = l.enveloppe == r::Enveloppe::Neuve         ? Figure(l.plafond)
                                    : l.enveloppe == r::Enveloppe::LigneDAvant ? "left by the line before"
                                                                               : "left by the line 7IR";
        const std::string yearly = l.premiere ? " yearly: " + Nom(l.premiere) : "";
        Ecrit(l.sortie, l.entree, Figure(l.taux), plafond, l.niche, Nom(l.report) + yearly + Suivantes(l.suivantes),
              std::to_string(l.annees), std::to_string(l.fin));
    }
    void operator()(const om::LigneSimple& l) { Ecrit(l.sortie, l.entree, "100", "", l.niche); }
    void operator()(const om::LigneReportee& l) { Ecrit(l.sortie, l.entree, "100", "", l.niche, Nom(l.suite)); }
    void operator()(const om::LigneRetrocedee& l) {
        const om::Partage& p = om::partages[l.classe];
        EcritRendue(l.excedent, l.reduction, Figure(p.taux) + " " + Figure(p.conservee) + "/" + Figure(p.retrocedee),
                    "room " + std::to_string(l.enveloppe) + ", " + Figure(om::partages[l.limite].plafond), l.niche,
                    Nom(l.nonRetrocede) + " " + Nom(l.retrocede));
    }
    void operator()(const om::LigneLimitee& l) {
        EcritRendue(l.excedent, l.reduction, "100", "room " + std::to_string(l.enveloppe), l.niche);
    }
    void operator()(const om::LigneLimiteeAuForfait& l) {
        EcritRendue(l.excedent, l.reduction, "100",
                    "room " + std::to_string(l.enveloppe) + " or " + Figure(om::EnveloppeDe(l).sansRetrocession),
                    l.niche);
    }
    void operator()(const om::LigneRemboursable& l) {
        Ecrit(l.credit, l.entree, "100", Figure(om::plafondRemboursable) + " less the reduction", {});
    }

  private:
    template <class Base>
    void Ecrit(CaseSortie sortie, Base base, const std::string& taux, const std::string& plafond, Niche niche,
               const std::string& reports = "", const std::string& annees = "", const std::string& derniere = "") {
        lignes.push_back({sortie, false, Nom(base), taux, plafond, Groupe(niche), annees, derniere, reports});
    }
    template <class... Valeurs>
    void EcritRendue(const Valeurs&... valeurs) {
        Ecrit(valeurs...);
        lignes.back().rendue = true;
    }
    void AuTaux(const r::LigneTaux& l, CaseSortie report) {
        Ecrit(l.sortie, l.entree, Taux(l.taux), l.base ? "prorated base" : Texte(l.plafond), l.niche, Nom(report));
    }
    static std::string Suivantes(const r::FractionsSuivantes& suivantes) {
        std::string texte;
        for (const auto& copie : suivantes.copies)
            if (copie.vers) texte += " " + Nom(copie.de) + ">" + Nom(copie.vers);
        return texte;
    }
};

std::vector<LigneReduction> Compose() {
    Tableau tableau;
    const auto groupe = [&](const auto& lignes) {
        for (const auto& ligne : lignes) tableau(ligne);
    };
    r::TousLesGroupes(groupe);
    r::GroupesPartages(groupe);
    return std::move(tableau.lignes);
}

// The reduction in a row of any table: some rows hold one within another rule.
template <class Rangee>
constexpr const auto& LigneDe(const Rangee& rangee) {
    if constexpr (requires { rangee.ligne.sortie; })
        return rangee.ligne;
    else
        return rangee;
}

constexpr auto reportsDesReductions = [] {
    std::array<CaseSortie, nSorties> reports;
    r::TousLesGroupes([&](const auto& groupe) {
        for (const auto& rangee : groupe) {
            CaseSortie& report = reports[static_cast<std::size_t>(LigneDe(rangee).sortie.numero)];
            if constexpr (requires { rangee.report; }) report = rangee.report;
            if constexpr (requires { rangee.suite; }) report = rangee.suite;
        }
    });
    return reports;
}();

}  // namespace

const std::vector<LigneReduction>& LignesReductions() {
    static const std::vector<LigneReduction> lignes = Compose();
    return lignes;
}

CaseSortie ReportDe(CaseSortie reduction) { return reportsDesReductions[static_cast<std::size_t>(reduction.numero)]; }

std::string RegleDe(std::string_view parametre) {
    std::string regle;
    r::TousLesGroupes([&](const auto& groupe) {
        for (const auto& rangee : groupe) {
            const auto& ligne = LigneDe(rangee);
            if constexpr (requires { ligne.taux; })
                if (ligne.taux && ligne.entree && parametre == "reductions." + Nom(ligne.entree) + ".taux")
                    regle = ligne.taux.Ligne().nom;
        }
    });
    return regle;
}

}  // namespace kv
