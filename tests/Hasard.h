#pragma once

#include <cstdint>
#include <initializer_list>
#include <kv.hpp>
#include <random>
#include <string>
#include <vector>

// Random returns, the same ones for the same seed on any machine: plausible households and amounts, or anything that a
// host may give. An expression draws once, since compilers differ on which argument comes first. Nothing is thrown:
// builds without exceptions draw the same returns.

namespace test {

class Hasard {
  public:
    explicit Hasard(std::uint32_t graine) : m_moteur(graine) {}

    std::int32_t Entre(std::int32_t min, std::int32_t max) {
        return min + static_cast<std::int32_t>(m_moteur() % static_cast<std::uint32_t>(max - min + 1));
    }
    bool UneFoisSur(std::int32_t n) { return Entre(1, n) == 1; }
    template <class Liste>
    auto Parmi(const Liste& liste) {
        return std::data(liste)[Entre(0, static_cast<std::int32_t>(std::size(liste)) - 1)];
    }
    template <class T>
    T Parmi(std::initializer_list<T> liste) {
        return liste.begin()[Entre(0, static_cast<std::int32_t>(liste.size()) - 1)];
    }
    /// Nothing to fortunes, the small amounts as often as the large ones.
    std::int32_t Montant() { return Entre(0, Parmi({600, 15000, 60000, 250000})); }
    /// An amount of any size up to max, small ones as likely as large ones.
    std::int32_t Montant(std::int32_t max) { return Entre(0, max >> Entre(0, 11)); }
    /// Mostly nothing, ticks and amounts, but also unset, negative and absurd ones.
    std::int32_t Arbitraire() {
        switch (m_moteur() % 16) {
            case 0:
                return KV_UNSET;
            case 1:
                return static_cast<std::int32_t>(m_moteur());
            case 2:
                return -Entre(0, 49'999);
            case 3:
            case 4:
                return 1;
            case 5:
            case 6:
            case 7:
                return Entre(0, 99'999);
            default:
                return 0;
        }
    }

    /// A return with anything in all that a host may fill.
    kv::Return Tout() {
        kv::Return r;
        for (std::int32_t i = 0; i < Nombre(); ++i)
            for (kv_area aire = KV_AREA_ENTRY; aire <= KV_AREA_TKZ; ++aire)
                kv_set_box(r.handle(), aire, i, Arbitraire());  // a status where the box has no such amount
        for (int k = 0; k < 30; ++k) {
            const std::int32_t box = Parmi(Boites().quotient), coefficient = Entre(0, 4);
            r.set_exceptional(box, coefficient, Arbitraire());
        }
        return r;
    }

    /// A household with this many boxes of income and charges, foreign and exceptional income.
    kv::Return Declaration(int boites = 20) {
        kv::Return r;
        Menage(r);
        for (int i = 0; i < boites; ++i) {
            const std::int32_t box = Parmi(Revenus());
            r.set(box, UneFoisSur(20) ? KV_UNSET : Genre(box) == KV_YEAR ? Entre(2010, 2018) : Montant());
        }
        const auto compagnon = [&](const std::vector<std::int32_t>& boxes, kv_area aire, std::int32_t part) {
            const std::int32_t box = Parmi(boxes);
            r.set(box, part == 1 && UneFoisSur(10) ? KV_UNSET : Montant() / part, aire);
        };
        for (int i = Entre(0, 4); i > 0; --i) {
            compagnon(Boites().ti, KV_AREA_TI, 1);
            compagnon(Boites().tix, KV_AREA_TIX, 4);
            compagnon(Boites().tix, KV_AREA_TIY, 4);
        }
        for (int i = Entre(0, 2); i > 0; --i) {
            compagnon(Boites().tk, KV_AREA_TK, 1);
            compagnon(Boites().tk, KV_AREA_TKZ, 4);
        }
        for (int i = Entre(0, 3); i > 0; --i) {
            const std::int32_t box = Parmi(Boites().quotient), coefficient = Entre(0, 5);
            r.set_exceptional(box, coefficient, Montant());
        }
        return r;
    }

    /// A simple household with an income, or without any.
    kv::Return Simple(bool avecRevenu = true) {
        kv::Return r;
        r.set("M", Entre(0, 1)).set("Fm", Entre(0, 2));
        if (avecRevenu) r.set("1AJ", Montant(300000)).set("4BA", Montant(900000));
        if (avecRevenu && UneFoisSur(4)) r.set("GMR", 1).set("5XT", Montant(50000));
        return r;
    }
    /// Adds amounts to boxes of section 7, and of the overseas investments.
    void Depenses(kv::Return& r, int nombre) { Ajoute(r, Boites().depenses, nombre); }
    void OutreMer(kv::Return& r, int nombre) {
        Ajoute(r, Boites().outreMer, nombre);
        r.set("HQA", Entre(0, 1));
    }

    /// Adds what a box may hold to boxes of every section.
    void Partout(kv::Return& r, int nombre) {
        for (; nombre > 0; --nombre) {
            const std::int32_t box = Entre(0, Nombre() - 1);
            r.set(box, Plausible(box));
        }
    }

    /// Anything from a box or two to all of them, whatever the launch, the period, the indexation and the law.
    kv::Return Variee() {
        kv::Return r = UneFoisSur(12) ? Tout() : UneFoisSur(2) ? Simple() : Declaration(Entre(1, 30));
        if (UneFoisSur(2)) Depenses(r, Entre(1, 6));
        if (UneFoisSur(4)) OutreMer(r, Entre(1, 6));
        Partout(r, Parmi({0, 2, 6, 40}));
        for (const char* option : {"6QW", "AVA", "PFU", "BAR", "CIMR"})
            if (UneFoisSur(5)) r.set(option, UneFoisSur(4) ? KV_UNSET : 1);
        r.set_launch(UneFoisSur(2) ? KV_LAUNCH_NORMAL : Entre(0, 3));
        if (UneFoisSur(6)) r.set_indexation(Entre(-200, 1000) / 100.0);
        if (UneFoisSur(10)) {
            const std::int32_t debut = 20170101 + 100 * Entre(0, 5);
            r.set_period(debut, 20170630 + 100 * Entre(0, 5));
        }
        if (UneFoisSur(6)) r.set_law(Loi());
        return r;
    }

    /// The law of the year with a few other figures, from nothing to twice those of the year.
    kv::Law Loi() {
        kv::Law loi;
        for (int n = Entre(1, 40); n > 0; --n) {
            const std::int32_t parametre = Entre(0, kv::parameter_count() - 1);
            const double avant = loi.get(parametre), facteur = Entre(0, 200) / 100.0;
            kv_law_set_parameter(loi.handle(), parametre, static_cast<double>(static_cast<long>(avant * facteur)));
            if (kv_law_check(loi.handle()) != KV_OK) loi.set(parametre, avant);
        }
        return loi;
    }

    /// The boxes of income and charges, but for the ceilings that an earlier launch left (6QW).
    static const std::vector<std::int32_t>& Revenus() { return Boites().revenus; }

  private:
    struct Listes {
        std::vector<kv_kind> genres;
        std::vector<std::int32_t> revenus, depenses, outreMer, ti, tix, tk, quotient;
    };
    static const Listes& Boites() {
        static const Listes listes = [] {
            Listes l;
            for (std::int32_t i = 0, n = kv::count(KV_ENTRY); i < n; ++i) {
                const kv_box box = kv::describe(KV_ENTRY, i);
                const std::string nom = box.name;
                l.genres.push_back(box.kind);
                if ('1' <= nom[0] && nom[0] <= '6' && nom != "6QW") l.revenus.push_back(i);
                if (nom.size() == 3 && nom[0] == '7') l.depenses.push_back(i);
                if (nom.size() == 3 && nom[0] == 'H' && nom != "HQA") l.outreMer.push_back(i);
                if (box.ti >= 0) l.ti.push_back(i);
                if (box.tix >= 0) l.tix.push_back(i);
                if (box.tk >= 0) l.tk.push_back(i);
                if (box.quotient >= 0) l.quotient.push_back(i);
            }
            return l;
        }();
        return listes;
    }
    static std::int32_t Nombre() { return static_cast<std::int32_t>(Boites().genres.size()); }
    static kv_kind Genre(std::int32_t box) { return Boites().genres[static_cast<std::size_t>(box)]; }

    void Ajoute(kv::Return& r, const std::vector<std::int32_t>& boxes, int nombre) {
        for (int i = 0; i < nombre; ++i) {
            const std::int32_t box = Parmi(boxes);
            r.set(box, Montant(200000));
        }
    }

    // What a household may write in a box.
    std::int32_t Plausible(std::int32_t box) {
        switch (Genre(box)) {
            case KV_TICK:
                return 1;
            case KV_COUNT:
            case KV_CODE:
                return Entre(0, 4);
            case KV_DATE: {
                const std::int32_t annee = UneFoisSur(2) ? 2017 : Entre(1930, 2000), mois = Entre(1, 12);
                return 10000 * annee + 100 * mois + Entre(1, 28);
            }
            case KV_YEAR:
                return Entre(2000, 2018);
            default:
                return UneFoisSur(30) ? -Montant() : Montant();
        }
    }

    void Menage(kv::Return& r) {
        r.set(Parmi({"M", "M", "O", "C", "D", "V"}), 1);
        r.set("Fm", Entre(0, 3)).set("Hm", Entre(0, 2) / 2);
        for (const char* box : {"T", "P", "Nm", "REM", "RED", "GUY", "GMR"}) r.set(box, UneFoisSur(8));
        r.set("8TM", UneFoisSur(8) ? Montant() : 0);
        r.set("AAF1", UneFoisSur(3) ? 19400615 : 0);
    }

    std::mt19937 m_moteur;
};

}  // namespace test

using test::Hasard;
