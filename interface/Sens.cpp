#include "interface/Sens.h"

#include <algorithm>
#include <array>

#include "Calcul/pCalculN/Calculateur.h"
#include "Calcul/pCalculN/CreditsTable.h"
#include "Calcul/pCalculN/ReportsTable.h"
#include "interface/Composition.h"
#include "interface/LibellesSortie.h"

namespace kv::sens {

namespace {

CaseSortie SortieDe(std::string_view nom) { return CaseSortie::Numero(CatalogueSortie::index.Cherche(Hache(nom))); }

// ---- Output boxes.

// The part of the return, or of its computation, that a step is about.
Groupe GroupeDe(Etape etape) {
    switch (etape) {
        case Etape::RevenusSalaires:
        case Etape::RentesViageres:
            return Groupe::SalairesPensions;
        case Etape::RevenusNonSalaries:
        case Etape::RevenusExoneres:
            return Groupe::NonSalaries;
        case Etape::RevenusMobiliers:
        case Etape::PrelevLib:
            return Groupe::Mobiliers;
        case Etape::RevenusFonciers:
            return Groupe::Foncier;
        case Etape::RevenusNet:
        case Etape::PlafondPERP:
            return Groupe::Charges;
        case Etape::ImpotApresReductions:
        case Etape::CreditDImpot:
        case Etape::NichesFiscales:
            return Groupe::ReductionsCredits;
        case Etape::Calcul_ISF:
            return Groupe::Fortune;
        case Etape::NombreParts:
            return Groupe::Foyer;
        default:
            return Groupe::Divers;
    }
}

class Sorties {
  public:
    std::array<SensSortie, nSorties> sens;

    Sorties() {
        for (const FamilleSortie& famille : famillesSortie)
            for (const LigneSortie& ligne : famille.lignes)
                Note(SortieDe(ligne.sortie), ligne.libelle, famille.etape,
                     ligne.colonnes ? *ligne.colonnes : famille.colonnes, ligne.genre);
        Reductions();
        OutreMer();
        for (const auto& t : credits::transitionEnergetique)
            Note(t.credit, "Crédit : " + De(t.depense).libelle, Etape::CreditDImpot, declareRetenuTaux);
        for (SensSortie& s : sens)
            if (s.libelle.empty()) s.libelle = inutilisee;
    }

  private:
    void Note(CaseSortie c, std::string libelle, Etape etape, const Colonnes& colonnes = aucune,
              Genre genre = Genre::Euros) {
        SensSortie& s = sens[static_cast<std::size_t>(c.numero)];
        if (s.libelle.empty()) s = {std::move(libelle), genre, LibelleEtape(etape), GroupeDe(etape), colonnes};
    }
    void NoteReduction(CaseSortie c, std::string libelle, const Colonnes& colonnes = aucune) {
        if (c) Note(c, std::move(libelle), Etape::ImpotApresReductions, colonnes);
    }

    template <class Ligne>
    void Reduction(const Ligne& ligne) {
        if constexpr (requires { ligne.ligne; }) {
            Reduction(ligne.ligne);
        } else if constexpr (requires { ligne.entree; }) {
            if (!ligne.entree) return;
            const std::string& libelle = De(ligne.entree).libelle;
            static constexpr Colonnes annuelle = {"base déclarée", "part annuelle de la base", "taux (%)"};
            const bool etalee = requires { ligne.annees; };
            NoteReduction(ligne.sortie, "Réduction : " + libelle, etalee ? annuelle : reduction);
            if constexpr (requires { ligne.suivantes; }) {
                int annee = anneeDesRevenus;
                for (const auto& copie : ligne.suivantes.copies)
                    if (copie.vers) NoteReduction(copie.vers, libelle + ", part de " + std::to_string(++annee));
            }
        }
    }

    void Reductions() {
        r::TousLesGroupes([&](auto groupe) {
            for (const auto& ligne : groupe) Reduction(ligne);
        });
        PourChaqueRegimeLocatif([&](const auto& table, const std::string& regime) {
            for (const auto& ligne : table) ReportsLocatifs(RegimeDe(regime, ligne), ligne);
        });
        r::TousLesGroupes([&](auto groupe) {
            for (const auto& ligne : groupe)
                if constexpr (requires {
                                  ligne.entree;
                                  ligne.report;
                              })
                    if (ligne.entree) NoteReduction(ligne.report, "À reporter : " + De(ligne.entree).libelle);
        });
    }

    // Where several lines of a scheme add into one box, it belongs to the scheme, its duration and the year of its
    // rules.
    template <class Ligne>
    void ReportsLocatifs(const std::string& complet, const Ligne& ligne) {
        const std::string regime = complet.substr(0, complet.find(',')), regles = Regles(ligne.niche);
        const bool partage =
            ligne.report && std::string_view(Nom(ligne.report)).find("REPORT_7R") != std::string_view::npos;
        const std::string aReporter = "Réductions à reporter : " + regime;
        if constexpr (requires { ligne.annees; }) {
            const std::string duree = " sur " + std::to_string(ligne.annees) + " ans";
            // Lines over three years have boxes of their own; the others share those of the carried fractions.
            if (partage) NoteReduction(ligne.report, aReporter + (ligne.annees == 3 ? duree : "") + regles);
            for (int i = 0; ligne.premiere && i < ligne.fin - anneeDesRevenus; ++i)
                NoteReduction(ligne.premiere + i, "Réductions étalées, part de " +
                                                      std::to_string(anneeDesRevenus + 1 + i) + " : " + regime + duree +
                                                      regles);
        } else if (partage) {
            NoteReduction(ligne.report, aReporter + regles);
        }
    }

    void OutreMer() {
        static constexpr Colonnes conservee = {"part qui reste à l'investisseur", "part retenue", "taux entier (%)"};
        static constexpr Colonnes retrocedee = {"part rétrocédée", "part retenue", ""};
        static constexpr Colonnes rendu = {"parts retenues, dans la limite de la réduction", "", ""};
        std::array<CaseEntree, nSorties> boites;  // of each reduction
        const auto boiteDe = [&](CaseSortie c) -> CaseEntree& { return boites[static_cast<std::size_t>(c.numero)]; };
        const auto libelleDe = [&](CaseSortie c) { return boiteDe(c) ? De(boiteDe(c)).libelle : std::string(); };
        for (const auto& l : om::lignesSimples) boiteDe(l.sortie) = l.entree;
        for (const auto& l : om::lignesReportees) {
            boiteDe(l.sortie) = l.entree;
            const bool rembourse = l.suite && Nom(l.suite)[0] == 'C';
            NoteReduction(l.suite, (rembourse ? "À rembourser : " : "À reporter : ") + De(l.entree).libelle);
        }
        for (const auto& l : om::lignesRemboursables) NoteReduction(l.credit, "À rembourser : " + De(l.entree).libelle);
        for (const auto& l : om::lignesRetrocedees) {
            const std::string libelle = libelleDe(l.reduction);
            NoteReduction(l.nonRetrocede, "Part conservée : " + libelle, conservee);
            NoteReduction(l.retrocede, "Part rétrocédée : " + libelle, retrocedee);
            NoteReduction(l.excedent, "Excédent rendu : " + libelle, rendu);
        }
        const auto limitee = [&](const om::LigneLimitee& l) {
            NoteReduction(l.excedent, "Excédent rendu : " + libelleDe(l.reduction));
        };
        for (const auto& l : om::lignesLimitees) limitee(l);
        for (const auto& l : om::lignesLimiteesAuForfait) limitee(l);
    }
};

const Sorties& ToutesLesSorties() {
    static const Sorties sorties;
    return sorties;
}

// ---- Carry-forward boxes.

class Reports {
  public:
    std::array<SensReport, nReports> sens;

    Reports() {
        for (const reports::Copie& copie : reports::copies) {
            const bool entree = copie.source == reports::Copie::DEntree;
            const std::string nom =
                entree ? Nom(CaseEntree::Numero(copie.numero)) : Nom(CaseSortie::Numero(copie.numero));
            const std::string& libelle =
                entree ? De(CaseEntree::Numero(copie.numero)).libelle : De(CaseSortie::Numero(copie.numero)).libelle;
            if (libelle == inutilisee) continue;
            const bool retenu = copie.source == reports::Copie::DeColonne2;
            Note(copie.vers, retenu ? libelle + ", montant retenu" : libelle, retenu ? nom + ".c2" : nom);
        }
        static constexpr struct {
            CaseReport report;
            const char* libelle;
        } calcules[] = {
            {"F11_IRNm1", "Impôt à payer, moins restitué, non restitué et non recouvré"},
            {"F11_6DE", "CSG déductible, dans la limite des prélèvements à payer"},
            {"F11_7WL", "Risques technologiques : dépenses retenues cette année"},
            {"F11_7WHA", "Transition énergétique : dépenses retenues cette année"},
        };
        for (const auto& [report, libelle] : calcules) Note(report, libelle, "");
        Deficits();
        for (int i = 0; i < nReports; ++i) {
            SensReport& s = sens[static_cast<std::size_t>(i)];
            s.boite = std::string_view(report::noms[i]).substr(4);  // after "F11_"
            if (s.libelle.empty()) s.libelle = inutilisee;
        }
    }

  private:
    void Note(CaseReport c, std::string libelle, std::string source) {
        SensReport& s = sens[static_cast<std::size_t>(c.numero)];
        if (s.libelle.empty()) s.libelle = std::move(libelle), s.source = std::move(source);
    }

    // Each box takes what is left of the deficit a year later than the one it holds now.
    void Deficits() {
        static constexpr struct {
            const char* categorie;
            const char* boites;  // the most recent year first
        } deficits[] = {
            {"Déficit agricole", "5QQ 5QP 5QO 5QN 5QG 5QF"},
            {"Déficit commercial non professionnel", "5RW 5RR 5RQ 5RP 5RO 5RN"},
            {"Déficit de location meublée", "5GJ 5GI 5GH 5GG 5GF 5GE 5GD 5GC 5GB 5GA"},
            {"Déficit non commercial non professionnel", "5MT 5LT 5KT 5JT 5IT 5HT"},
            {"Déficit global", "6FL 6FE 6FD 6FC 6FB 6FA"},
        };
        for (const auto& [categorie, boites] : deficits) {
            int annee = anneeDesRevenus;
            PourChaqueMot(boites, [&](std::string_view boite) {
                const CaseReport c =
                    CaseReport::Numero(CatalogueReport::index.Cherche(Hache("F11_" + std::string(boite))));
                Note(c, std::string(categorie) + " de " + std::to_string(annee--) + ", reste à reporter", "");
            });
        }
    }
};

const Reports& TousLesReports() {
    static const Reports reports;
    return reports;
}

// ---- Searching.

// Small letters without accents; what stands for no letter becomes a space.
std::string Simplifie(std::string_view texte) {
    static constexpr std::u16string_view accents = u"àâäéèêëîïôöùûüçœ", sans = u"aaaeeeeiioouuuco";
    std::string simple;
    for (char16_t c : VersUtf16(texte)) {
        if ((u'A' <= c && c <= u'Z') || (u'À' <= c && c <= u'Þ')) c = static_cast<char16_t>(c + 32);
        if (const std::size_t i = accents.find(c); i != accents.npos) c = sans[i];
        simple += (u'a' <= c && c <= u'z') || (u'0' <= c && c <= u'9') || c == u'_' ? static_cast<char>(c) : ' ';
    }
    return simple;
}

}  // namespace

const SensSortie& De(CaseSortie c) { return ToutesLesSorties().sens[static_cast<std::size_t>(c.numero)]; }
const SensReport& De(CaseReport c) { return TousLesReports().sens[static_cast<std::size_t>(c.numero)]; }

const char* Personne(CaseEntree c) {
    static constexpr const char* charges[] = {"personne à charge 1", "personne à charge 2", "personne à charge 3",
                                              "personne à charge 4", "personne à charge 5", "personne à charge 6",
                                              "personne à charge 7", "personne à charge 8", "personne à charge 9"};
    const entree::Personne personne = entree::lignes[c.numero].personne;
    if (personne == entree::D1) return "déclarant 1";
    if (personne == entree::D2) return "déclarant 2";
    if (personne == entree::Charges) return "personnes à charge";
    if (personne == entree::Foyer) return "foyer";
    return charges[personne - entree::C1];
}

const char* NomGenre(Genre genre) {
    static constexpr const char* noms[] = {"euros", "count", "tick", "code", "date", "year", "rate", "mark"};
    return noms[static_cast<std::size_t>(genre)];
}

const char* NomGroupe(Groupe groupe) {
    static constexpr const char* noms[] = {"Foyer",
                                           "Salaires et pensions",
                                           "Capitaux mobiliers",
                                           "Plus-values et gains divers",
                                           "Revenus fonciers",
                                           "Revenus non salariés",
                                           "Charges déductibles",
                                           "Réductions et crédits d'impôt",
                                           "Outre-mer",
                                           "Divers",
                                           "Impôt de solidarité sur la fortune",
                                           "Hors calcul"};
    return noms[static_cast<std::size_t>(groupe)];
}

bool Correspond(std::string_view nom, std::string_view libelle, std::string_view cherche) {
    const std::string motif = Simplifie(cherche), texte = Simplifie(libelle);
    if (motif.find_first_not_of(' ') == std::string::npos) return false;
    if (Simplifie(nom).find(motif) != std::string::npos) return true;
    bool tous = true;
    PourChaqueMot(motif, [&](std::string_view mot) { tous = tous && texte.find(mot) != std::string::npos; });
    return tous;
}

}  // namespace kv::sens
