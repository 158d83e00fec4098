#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory_resource>
#include <utility>
#include <vector>

#include "Calcul/cCalcul/Catalogues.h"
#include "Calcul/cCalcul/DataCalcul.h"

// What a run finds: a line for each output box, and how it was found for the reader.

namespace kv {

/// An output box: its value, and the three figures beside it.
struct Ligne {
    std::int32_t valeur;
    std::array<std::int32_t, 3> colonnes;
    bool operator==(const Ligne&) const = default;
};
/// The ten ceilings of retirement savings, which outlive every reset.
using PlafondsPERP = std::array<Ligne, 10>;

/// How a figure was found, noted as numbers; the words are written once, at the end of a launch.
class Texte {
  public:
    Texte() = default;

    /// "12"
    static constexpr Texte Nombre(std::int32_t n) { return {Forme::Nombre, n}; }
    /// "12.5%", of a rate in hundredths of a percent
    static constexpr Texte Taux(std::int32_t centiemes) { return {Forme::Taux, centiemes}; }
    /// "14.3%", of a rate in tenths of a percent
    static constexpr Texte TauxEnDixiemes(std::int32_t dixiemes) { return {Forme::TauxEnDixiemes, dixiemes}; }
    /// "6.8% x 1000", of a rate in hundredths of a percent
    static constexpr Texte TauxDeBase(std::int32_t centiemes, std::int32_t base) {
        return {Forme::TauxDeBase, centiemes, base};
    }
    /// "1000 x 70%", of a rate in hundredths of a percent
    static constexpr Texte BaseAuTaux(std::int32_t base, std::int32_t centiemes) {
        return {Forme::BaseAuTaux, base, centiemes};
    }
    /// "7/13", "1/1.5", of numbers in hundredths
    static constexpr Texte Fraction(std::int32_t a, std::int32_t b) { return {Forme::Fraction, a, b}; }
    /// "2 personne(s)"
    static constexpr Texte Personnes(std::int32_t n) { return {Forme::Personnes, n}; }
    /// "1.5 enfant(s)", of tenths
    static constexpr Texte Enfants(std::int32_t dixiemes) { return {Forme::Enfants, dixiemes}; }
    /// "a sur b) proratisé (x c / b"
    static constexpr Texte Proratise(std::int32_t a, std::int32_t b, std::int32_t c) {
        return {Forme::Proratise, a, b, c};
    }

    /// Writes the text.
    void Ecrit(std::u16string& vers) const;

  private:
    enum class Forme : std::int32_t {
        Nombre,
        Taux,
        TauxEnDixiemes,
        TauxDeBase,
        BaseAuTaux,
        Fraction,
        Personnes,
        Enfants,
        Proratise
    };
    constexpr Texte(Forme forme, std::int32_t a, std::int32_t b = 0, std::int32_t c = 0)
        : m_forme(forme), m_nombres{a, b, c} {}

    Forme m_forme;
    std::array<std::int32_t, 3> m_nombres;
};

/// Every line. The lines that are not all 0 are remembered, with a few that are: a reset clears those.
class Lignes {
  public:
    Lignes();
    Lignes(const Lignes&) = delete;
    Lignes& operator=(const Lignes&) = delete;

    /// A line to write into.
    Ligne& Ecrit(CaseSortie c) {
        m_touchees.Ajoute(c);
        return Acces(c);
    }
    const Ligne& Lit(CaseSortie c) const { return m_lignes[static_cast<std::size_t>(c.numero)]; }
    /// The text of a line in words; "" for none.
    std::u16string LitTexte(CaseSortie c) const;
    Texte& EcritTexte(CaseSortie c) {
        m_notees.Ajoute(c);
        return m_textes[static_cast<std::size_t>(c.numero)];
    }

    /// Which outputs a reset clears.
    enum class Raz { ToutSaufPlafondsPERP, Partielle };
    void RemetAZero(Raz raz);

    /// Takes the ten retirement-savings ceilings that an earlier launch left: they outlive every reset.
    void ReprendPlafondsPERP(const CDataCalcul& data);
    /// Takes the values and columns that an earlier launch left; their texts stay behind.
    void ReprendFigures(const CDataCalcul& data);
    PlafondsPERP Plafonds() const;
    void PosePlafonds(const PlafondsPERP& plafonds);
    /// Replaces every output of a return by these.
    void EcritDans(CDataCalcul& data) const;

    /// Lines put aside, to stand again after other runs.
    struct Conservees {
        explicit Conservees(std::pmr::memory_resource* place) : lignes(place), textes(place) {}

        CasesSortie touchees, notees;
        std::pmr::vector<Ligne> lignes;  ///< those of the set, in its order
        std::pmr::vector<Texte> textes;
    };
    void Conserve(Conservees& vers) const;
    void Reprend(const Conservees& de);

    /// The values of a set of lines to 0; columns and texts stay.
    void RemetValeurs(const CasesSortie& lignes);
    /// The sum of the values of a set of lines.
    std::int32_t Somme(const CasesSortie& lignes) const;

    // ---- A line and its columns.

    /// Adds (or subtracts) a line to another one.
    void Ajoute(CaseSortie vers, CaseSortie ligne);
    void Soustrait(CaseSortie vers, CaseSortie ligne);
    /// Adds several lines to another one.
    void AjouteTout(CaseSortie vers, std::initializer_list<CaseSortie> lignes);
    /// Gives a line the value and columns of another one; its text stays.
    void Copie(CaseSortie vers, CaseSortie ligne) { Ecrit(vers) = Lit(ligne); }
    /// Value and columns to 0; the text stays.
    void Annule(CaseSortie ligne) { Ecrit(ligne) = {}; }
    /// Value = sum of the columns.
    void Totalise(CaseSortie ligne);
    /// Sets base (column 2) and rate (column 3).
    void BaseEtTaux(CaseSortie ligne, std::int32_t base, std::int32_t taux);

  private:
    friend class Chiffre;
    friend class Valeurs;
    friend class Colonne;
    Ligne& Acces(CaseSortie c) { return m_lignes[static_cast<std::size_t>(c.numero)]; }

    std::array<Ligne, nSorties> m_lignes;
    std::array<Texte, nSorties> m_textes;  ///< of the lines that have one
    CasesSortie m_touchees, m_notees;      ///< the lines that may have been written, that have a text
};

// ---- One figure of every line, by the name of the output.

/// A figure to read or to write, for one expression only. A line counts as written once a figure of it changes: neither
/// a figure read nor the 0 of a rule that does not apply is reset or handed over afterwards.
class Chiffre {
  public:
    operator std::int32_t() const&& { return m_chiffre; }

    std::int32_t operator=(std::int32_t valeur) && {
        if (m_chiffre != valeur) {
            m_lignes.m_touchees.Ajoute(m_ligne);
            m_chiffre = valeur;
        }
        return valeur;
    }
    std::int32_t operator=(Chiffre&& autre) && { return std::move(*this) = std::int32_t{autre.m_chiffre}; }
    std::int32_t operator+=(std::int32_t montant) && { return std::move(*this) = m_chiffre + montant; }
    std::int32_t operator-=(std::int32_t montant) && { return std::move(*this) = m_chiffre - montant; }

  private:
    friend class Valeurs;
    friend class Colonne;
    Chiffre(Lignes& lignes, CaseSortie ligne, std::int32_t& chiffre)
        : m_lignes(lignes), m_ligne(ligne), m_chiffre(chiffre) {}

    Lignes& m_lignes;
    CaseSortie m_ligne;
    std::int32_t& m_chiffre;
};

/// The values: S["RN_SAL"].
class Valeurs {
  public:
    explicit Valeurs(Lignes& lignes) : m_lignes(&lignes) {}
    Chiffre operator[](CaseSortie c) { return {*m_lignes, c, m_lignes->Acces(c).valeur}; }
    std::int32_t operator[](CaseSortie c) const { return m_lignes->Lit(c).valeur; }

  private:
    Lignes* m_lignes;
};

/// A column: C2["CO_19"].
class Colonne {
  public:
    Colonne(Lignes& lignes, std::size_t rang) : m_lignes(&lignes), m_rang(rang) {}
    Chiffre operator[](CaseSortie c) { return {*m_lignes, c, m_lignes->Acces(c).colonnes[m_rang]}; }
    std::int32_t operator[](CaseSortie c) const { return m_lignes->Lit(c).colonnes[m_rang]; }

  private:
    Lignes* m_lignes;
    std::size_t m_rang;
};

/// The texts: Detail["TAUX_PAS_IND1"].
class Textes {
  public:
    explicit Textes(Lignes& lignes) : m_lignes(&lignes) {}
    Texte& operator[](CaseSortie c) { return m_lignes->EcritTexte(c); }

  private:
    Lignes* m_lignes;
};

}  // namespace kv
