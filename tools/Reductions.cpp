#include "Calcul/pCalculN/ReductionsTable.h"

#include "support/KVTarvel.h"
#include "tools/Resultat.h"

// The reduction tables as they stand, for a reader who compares them with the law.

namespace outil {

namespace {

namespace r = kv::reductions;
namespace om = kv::outremer;

std::string Nom(CaseSortie c) { return c ? kv::sortie::noms[c.numero] : ""; }
std::string Nom(CaseEntree c) { return c ? kv::entree::lignes[c.numero].nom : ""; }
std::string Figure(kv::Parametre p) { return kv::VersUtf8(FloatToStr(kv::Valeur(kv::loi2017, p))); }
std::string Taux(kv::Parametre p) { return p ? Figure(p) : "100"; }

const char* Groupe(kv::Niche niche) {
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

// One line of the listing.
class Tableau {
  public:
    explicit Tableau(std::ostream& sortie) : m_sortie(sortie) {}

    template <class Entree>
    void Ecrit(CaseSortie ligne, Entree entree, const std::string& taux, const std::string& plafond, kv::Niche niche,
               const std::string& reports = "", const std::string& annees = "", const std::string& fin = "") {
        const std::string valeurs[] = {Nom(entree), taux, plafond, Groupe(niche), annees, fin, reports};
        m_sortie << Nom(ligne);
        for (const std::string& valeur : valeurs) m_sortie << '\t' << (valeur.empty() ? "-" : valeur);
        m_sortie << '\n';
    }
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
        Ecrit(l.excedent, l.reduction, Figure(p.taux) + " " + Figure(p.conservee) + "/" + Figure(p.retrocedee),
              "room " + std::to_string(l.enveloppe) + ", " + Figure(om::partages[l.limite].plafond), l.niche,
              Nom(l.nonRetrocede) + " " + Nom(l.retrocede));
    }
    void operator()(const om::LigneLimitee& l) {
        Ecrit(l.excedent, l.reduction, "100", "room " + std::to_string(l.enveloppe), l.niche);
    }
    void operator()(const om::LigneLimiteeAuForfait& l) {
        Ecrit(l.excedent, l.reduction, "100",
              "room " + std::to_string(l.enveloppe) + " or " + Figure(om::EnveloppeDe(l).sansRetrocession), l.niche);
    }
    void operator()(const om::LigneRemboursable& l) {
        Ecrit(l.credit, l.entree, "100", Figure(om::plafondRemboursable) + " less the reduction", {});
    }

  private:
    void AuTaux(const r::LigneTaux& l, CaseSortie report) {
        Ecrit(l.sortie, l.entree, Taux(l.taux), l.base ? "prorated base" : Texte(l.plafond), l.niche, Nom(report));
    }
    static std::string Suivantes(const r::FractionsSuivantes& suivantes) {
        std::string texte;
        for (const auto& copie : suivantes.copies)
            if (copie.vers) texte += " " + Nom(copie.de) + ">" + Nom(copie.vers);
        return texte;
    }
    std::ostream& m_sortie;
};

}  // namespace

void EcritReductions(std::ostream& sortie) {
    Tableau tableau(sortie);
    const auto groupe = [&](const auto& lignes) {
        for (const auto& ligne : lignes) tableau(ligne);
    };
    r::TousLesGroupes(groupe);
    r::GroupesPartages(groupe);
}

}  // namespace outil
