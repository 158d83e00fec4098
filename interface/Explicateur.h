#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Calcul/pCalculN/Contexte.h"
#include "Calcul/pCalculN/ReglesTable.h"
#include "interface/Arbre.h"
#include "interface/Retour.h"

// A figure is explained from the figures that the computation left: by a row of the rules, by what the tables of
// reductions, credits and business income say of it, by its step and its text. A rule is shown only where its operands
// give the figure; what no rule gives is told by what each amount of the return does to it.

namespace kv {

/// What the runs beside the household's own left, and what each reduction met.
class Passages final : public Observateur {
  public:
    struct Vu {
        Passage passage;
        Saisie saisie;
        Lignes::Conservees lignes{std::pmr::new_delete_resource()};
    };
    std::vector<std::unique_ptr<Vu>> vus;
    std::vector<ReductionImputee> reductions;

    void Fin(Passage passage, const Contexte& c) override {
        auto vu = std::make_unique<Vu>(Vu{passage, c.Vue()});
        c.commun.lignes.Conserve(vu->lignes);
        vus.push_back(std::move(vu));
    }
    void Impute(const ReductionImputee& reduction) override { reductions.push_back(reduction); }
};

class Explicateur {
  public:
    /// The household's own run; what it is made from lives as long.
    Explicateur(const Demande& demande, const Resultats& resultats, const Passages& passages);
    /// Another run, over its own inputs and lines. Effects are those of the household's own: it tells none.
    Explicateur(const Explicateur& autre, const Passages::Vu& vu, const Lignes& lignes);

    /// The tree of a figure. pourComparer: what leads to the net amount is told in the same way whether something is
    /// to be paid or refunded.
    Noeud Racine(const FigureLue& figure, std::int32_t profondeur, bool pourComparer = false);
    /// What this return has of what a node of another one shows; none for a part of a rule.
    std::optional<std::int32_t> Lit(const Noeud& noeud) const;
    /// The same with what makes it; none for what is no figure.
    std::optional<Noeud> Explique(const Noeud& noeud, std::int32_t profondeur);

  private:
    using Terme = regles::Terme;
    using Genre = regles::Genre;

    // ---- Figures. "Net", what is above it and the options: Explications.cpp.
    Noeud Net(std::int32_t profondeur, bool pourComparer);
    Noeud Option(const char* libelle, CaseEntree option, std::int32_t net, const char* passage, bool ecartee,
                 std::int32_t profondeur);
    Noeud Ligne(CaseSortie sortie, int colonne, std::int32_t profondeur, bool memeNul = false);
    Noeud Report(CaseReport report, std::int32_t profondeur);
    Noeud Boite(CaseEntree box, std::size_t vue, std::int32_t profondeur);
    void RevenusDeplaces(Noeud& noeud, CaseEntree box) const;
    /// The figure of the law; twice as much for a couple.
    Noeud FigureDeLaLoi(Parametre p) const;
    Noeud FigureParFoyer(Parametre p) const;
    void ParEtape(Noeud& noeud, CaseSortie sortie, int colonne);
    void EcritEffets(Noeud& racine);

    std::int32_t Valeur(CaseSortie sortie, int colonne = 0) const {
        return Figure(m_lignes.Lit(sortie), static_cast<std::size_t>(colonne));
    }
    std::int32_t Valeur(const Terme& terme, int colonne, const Saisie& vue) const;
    std::int32_t ValeurLoi(Parametre p) const { return static_cast<const Loi&>(m_loi)[p]; }
    std::int32_t ParFoyer(std::int32_t montant) const { return m_couple ? 2 * montant : montant; }
    /// Whether a row is of the option on capital income under which the return is computed.
    bool DeLOption(regles::Option option) const {
        using regles::Option;
        return option == Option::Toutes || option == m_option ||
               (option == Option::SansForfait && m_option != Option::Forfait);
    }
    bool Resident() const { return m_declaree["REM"] == 0 && m_declaree["RED"] == 0; }

    // ---- Rows of rules and tables: ExplicationsParTable.cpp. Each answers whether it gives the figure.
    bool ParLigne(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur);
    bool EssaieTermes(Noeud& noeud, Genre genre, const std::vector<Terme>& termes, const char* ecart, int colonne,
                      std::int32_t profondeur);
    void Montre(Noeud& noeud, Genre genre, const std::vector<Terme>& termes, const std::vector<std::int32_t>& v,
                int colonne, std::size_t vue, std::int32_t profondeur);
    Noeud Operande(const Terme& terme, int colonne, std::size_t vue, std::int32_t profondeur);
    bool ParRevenuDeReference(Noeud& noeud, std::int32_t profondeur);
    bool ParTable(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur);
    bool ParBaseRetenue(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur);
    bool ParReduction(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur);
    bool ParActivite(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur);
    bool ParSomme(Noeud& noeud, const CasesSortie& plus, const CasesSortie& moins, std::int32_t profondeur);
    const ReductionImputee* Imputee(CaseSortie sortie) const;

    // ---- Rules that are more than a row: the tax of the household in ExplicationsBareme.cpp and
    // ExplicationsImpot.cpp, what an income is reduced by in ExplicationsRevenus.cpp. Each answers whether it gives the
    // figure; profondeur: below the figure.
    bool ParRegleDeLImpot(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur);
    bool ParRegleDuRevenu(Noeud& noeud, CaseSortie sortie, int colonne, std::int32_t profondeur);
    bool ParBareme(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur);
    bool ParParts(Noeud& noeud, std::int32_t profondeur);
    bool ParDeclarants(Noeud& noeud);
    bool ParPlafondDesDemiParts(Noeud& noeud);
    bool ParReductionComplementaire(Noeud& noeud, std::int32_t profondeur);
    bool ParQuotient(Noeud& noeud, std::int32_t profondeur);
    bool ParDecote(Noeud& noeud, std::int32_t profondeur);
    bool ParRevenusModestes(Noeud& noeud, std::int32_t profondeur);
    bool ParTauxMinimum(Noeud& noeud, std::int32_t profondeur);
    bool ParCsgDesCapitaux(Noeud& noeud, std::int32_t profondeur);
    bool ParHautsRevenus(Noeud& noeud, std::int32_t profondeur);
    bool ParPlusValuesOutreMer(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur);
    bool ParAgentsAssurance(Noeud& noeud);
    bool ParPensionsEnCapital(Noeud& noeud);
    bool ParPrelevementLiberatoire(Noeud& noeud);
    bool ParCotisationsSyndicales(Noeud& noeud);
    bool ParSeuil(Noeud& noeud, CaseSortie sortie, std::int32_t profondeur);
    bool ParContributionEffective(Noeud& noeud, std::int32_t profondeur);
    bool ParSoldeSansAvantages(Noeud& noeud, std::int32_t profondeur);
    bool ParRevenuMondial(Noeud& noeud, std::int32_t profondeur);
    bool ParTauxEffectif(Noeud& noeud, std::int32_t profondeur);
    Noeud AvantDecote(std::int32_t profondeur);
    Noeud RevenuLisse(std::int32_t profondeur);

    bool ParFrais(Noeud& noeud, int colonne, bool desGains, std::int32_t profondeur);
    bool ParAbattementPensions(Noeud& noeud, int colonne, std::int32_t profondeur);
    bool ParAbattementMicro(Noeud& noeud, CaseSortie sortie, int colonne);
    bool ParMoyenneAgricole(Noeud& noeud, int colonne, std::int32_t profondeur);
    bool ParAbattementAgricole(Noeud& noeud, int colonne, std::int32_t profondeur);
    bool ParPersonnesAgees(Noeud& noeud);
    bool ParGardeDEnfants(Noeud& noeud, CaseSortie sortie);
    bool ParPensionsVersees(Noeud& noeud, CaseSortie sortie);

    /// Calls f(vue) for what each of the runs saw, until it answers true.
    template <class Fonction>
    bool DansUneVue(Fonction f) const {
        for (std::size_t vue = 0; vue < m_vues.size(); ++vue)
            if (f(vue)) return true;
        return false;
    }
    /// Calls f(run) for the runs of a kind until it answers true.
    template <class Fonction>
    bool DansUnPassage(Passage passage, Fonction f) {
        for (const auto& vu : m_passages.vus) {
            if (vu->passage != passage) continue;
            const auto lignes = std::make_unique<Lignes>();
            lignes->Reprend(vu->lignes);
            Explicateur dedans(*this, *vu, *lignes);
            if (f(dedans)) return true;
        }
        return false;
    }

    const Demande& m_demande;
    const Resultats& m_resultats;
    const Passages& m_passages;
    const Lignes& m_lignes;
    const LoiAppliquee m_loi;
    const Saisie m_declaree;     // unset amounts as 0
    std::vector<Saisie> m_vues;  // as the runs saw it: detailed rows folded in, then exceptional amounts too
    const regles::Option m_option;
    const bool m_couple = m_declaree["M"] == 1 || m_declaree["O"] == 1;
    const std::optional<Passage> m_passage;     // none: the household's own run
    std::vector<std::pair<int, int>> m_chemin;  // the figures under explanation
};

}  // namespace kv
