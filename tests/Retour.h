#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Calcul/cCalcul/DataCalcul.h"
#include "Calcul/pCalculN/Pilote.h"
#include "support/KVTarvel.h"

// Whole returns in one line:
//
//     const auto r = Retour{{"M", 1}, {"1AJ", 42000}, {"1BJ", 31000}}.Calcule();
//     EXPECT_EQ(r["TOT_R_IMPOS"], 65700);

namespace test {

/// A computed return, read by name.
class Resultat {
  public:
    Resultat(std::unique_ptr<CDataCalcul> data, bool reussi) : m_data(std::move(data)), m_reussi(reussi) {}

    bool Reussi() const { return m_reussi; }
    std::int32_t operator[](CaseSortie sortie) const { return m_data->Sortie[sortie]; }
    /// Output column 1, 2 or 3.
    std::int32_t C(std::size_t colonne, CaseSortie sortie) const { return m_data->Colonne[colonne - 1][sortie]; }
    /// The three columns, to compare at once.
    std::vector<std::int32_t> Colonnes(CaseSortie sortie) const { return {C(1, sortie), C(2, sortie), C(3, sortie)}; }
    std::string Detail(CaseSortie sortie) const { return kv::VersUtf8(m_data->Detail[sortie]); }
    std::int32_t E(CaseEntree entree) const { return m_data->Entree[entree]; }
    std::int32_t Report(CaseReport report) const { return m_data->Report[report]; }
    const CDataCalcul& Data() const { return *m_data; }
    CDataCalcul& Data() { return *m_data; }

  private:
    std::unique_ptr<CDataCalcul> m_data;
    bool m_reussi;
};

/// A return to compute: entry boxes, then what else it holds.
class Retour {
  public:
    struct Valeur {
        CaseEntree box;
        std::int32_t valeur;
    };

    Retour() = default;
    Retour(std::initializer_list<Valeur> entrees) { Avec(entrees); }

    Retour& Avec(std::initializer_list<Valeur> entrees) {
        for (const Valeur& v : entrees) m_data->Entree[v.box] = v.valeur;
        return *this;
    }
    Retour& TI(kv::CaseTI box, std::int32_t valeur) { return m_data->TI[box] = valeur, *this; }
    Retour& TIX(kv::CaseTIX box, std::int32_t valeur) { return m_data->TIX[box] = valeur, *this; }
    Retour& TIY(kv::CaseTIX box, std::int32_t valeur) { return m_data->TIY[box] = valeur, *this; }
    Retour& TK(kv::CaseTK box, std::int32_t valeur) { return m_data->TK[box] = valeur, *this; }
    Retour& TKZ(kv::CaseTK box, std::int32_t valeur) { return m_data->TKZ[box] = valeur, *this; }
    Retour& Quotient(kv::CaseQuotient box, std::int32_t coefficient, std::int32_t montant) {
        m_data->AjouteQuotient(box.numero, coefficient, montant);
        return *this;
    }
    Retour& Indexation(double taux) { return m_indexation = taux, *this; }
    Retour& Loi(const kv::Loi& loi) { return m_loi = loi, *this; }
    Retour& Periode(const TPeriode& periode) { return m_periode = periode, *this; }

    CDataCalcul& Data() { return *m_data; }

    /// Launches the computation; the return is used up.
    Resultat Calcule() { return Lance(false, false); }
    /// Launches it with the options that the return sets.
    Resultat CalculeOptions() { return Lance(false, true); }

  private:
    Resultat Lance(bool optionsForcees, bool optionsSiSaisies) {
        const bool reussi = kv::Lance(*m_data, &m_periode, true, m_indexation, optionsForcees, optionsSiSaisies, m_loi);
        return {std::move(m_data), reussi};
    }

    std::unique_ptr<CDataCalcul> m_data = std::make_unique<CDataCalcul>();
    TPeriode m_periode{2017};
    double m_indexation = -1.0;
    kv::Loi m_loi = kv::loi2017;
};

/// Everything that a host gave: entries, companions, quotient amounts.
struct Donnees {
    explicit Donnees(const CDataCalcul& data)
        : entree(data.Entree.valeurs),
          ti(data.TI.valeurs),
          tix(data.TIX.valeurs),
          tiy(data.TIY.valeurs),
          tk(data.TK.valeurs),
          tkz(data.TKZ.valeurs),
          quotients(data.MapsQuotients) {
        // The totals of the foreign companions are written by every launch.
        entree[static_cast<std::size_t>(CaseEntree("8TI").numero)] = 0;
        entree[static_cast<std::size_t>(CaseEntree("8TK").numero)] = 0;
    }
    bool operator==(const Donnees&) const = default;

    decltype(kv::ZoneEntree::valeurs) entree;
    decltype(decltype(CDataCalcul::TI)::valeurs) ti;
    decltype(decltype(CDataCalcul::TIX)::valeurs) tix, tiy;
    decltype(decltype(CDataCalcul::TK)::valeurs) tk, tkz;
    decltype(CDataCalcul::MapsQuotients) quotients;
};

/// Everything that a launch found, value by value and text by text.
inline bool MemesSorties(const CDataCalcul& a, const CDataCalcul& b) {
    for (std::size_t k = 0; k < 3; ++k)
        if (a.Colonne[k].valeurs != b.Colonne[k].valeurs) return false;
    return a.Sortie.valeurs == b.Sortie.valeurs && a.Detail.valeurs == b.Detail.valeurs;
}

}  // namespace test

using test::Donnees;
using test::Resultat;
using test::Retour;
