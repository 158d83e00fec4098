#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

#include "Effets.h"
#include "Libelles.h"

// A figure and its rates as an amount grows, drawn: the figure above, the rates below, one axis of amounts for both.

namespace outil {

namespace {

constexpr double largeur = 860, gauche = 84, droite = 824;
constexpr double hautFigure = 92, basFigure = 352, hautTaux = 404, basTaux = 560;

// For light pages, and over it for dark ones; without variables, which few programs but browsers know.
constexpr const char* style = R"(<style>
  text { font: 13px system-ui, sans-serif; fill: #5b6675; } .titre { font-size: 17px; font-weight: 600; fill: #1c2430; }
  .fond { fill: #ffffff; } .grille { stroke: #d9dee6; } .zero { stroke: #5b6675; }
  path { fill: none; stroke-width: 2; stroke-linejoin: round; } line.saut { stroke: #a3195b; stroke-width: 1.5; stroke-dasharray: 4 3; }
  path.figure { stroke: #1756a9; } path.moyen { stroke: #16794c; } path.marginal { stroke: #b4480f; }
  text.moyen { fill: #16794c; } text.marginal { fill: #b4480f; } text.saut { fill: #a3195b; }
  @media (prefers-color-scheme: dark) {
    text { fill: #a3adbb; } .titre { fill: #e8ecf2; } .fond { fill: #12161d; } .grille { stroke: #323a46; } .zero { stroke: #a3adbb; }
    line.saut { stroke: #f48fbd; } path.figure { stroke: #7db4f5; } path.moyen { stroke: #66cf9d; } path.marginal { stroke: #f2a06b; }
    text.moyen { fill: #66cf9d; } text.marginal { fill: #f2a06b; } text.saut { fill: #f48fbd; }
  }
</style>
)";

std::string Nombre(double n) {
    char texte[32];
    std::snprintf(texte, sizeof texte, "%.1f", n);
    return texte;
}

// "1 234 567", with spaces that do not break.
std::string ParMilliers(std::int64_t n) {
    std::string texte = std::to_string(std::llabs(n));
    for (std::size_t i = texte.size(); i > 3; i -= 3) texte.insert(i - 3, "\u202F");
    return (n < 0 ? "−" : "") + texte;
}

std::string Echappe(const std::string& texte) {
    std::string sur;
    for (const char c : texte) sur += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    return sur;
}

// A scale from values to places, with some six round graduations.
class Axe {
  public:
    Axe(double min, double max, double depuis, double jusqua) : m_depuis(depuis), m_jusqua(jusqua) {
        const double brut = std::max(max - min, 1e-6) / 6, puissance = std::pow(10, std::floor(std::log10(brut)));
        m_pas = puissance * (brut <= puissance ? 1 : brut <= 2 * puissance ? 2 : brut <= 5 * puissance ? 5 : 10);
        m_min = min, m_max = max > min ? max : min + 1;
    }
    // The same from and to a graduation.
    Axe Arrondi() const {
        Axe axe = *this;
        axe.m_min = std::floor(m_min / m_pas) * m_pas, axe.m_max = std::ceil(m_max / m_pas) * m_pas;
        return axe;
    }
    double operator()(double valeur) const {
        return m_depuis + (valeur - m_min) / (m_max - m_min) * (m_jusqua - m_depuis);
    }
    template <class Fonction>
    void Graduations(Fonction f) const {
        for (double g = std::ceil(m_min / m_pas - 1e-9) * m_pas; g <= m_max + m_pas / 1e6; g += m_pas) f(g);
    }

  private:
    double m_depuis, m_jusqua, m_pas = 1, m_min = 0, m_max = 1;
};

// One more euro, and the figure leaps.
struct Saut {
    std::int32_t montant;  // the first amount after it
    std::int64_t ecart;
};
constexpr std::int64_t sautMinimal = 15;

// The leaps, the largest ones first. A range of many amounts is looked at from some way off, then closely where the
// figure moves by more than the amount does.
std::vector<Saut> Sauts(const kv::Return& retour, const DemandeCourbe& demande) {
    constexpr std::int32_t regards = 400'000;
    std::vector<Saut> sauts;
    kv_range range = Intervalle(demande);
    const auto cherche = [&](std::int32_t de, std::int32_t a, std::int32_t pas, auto trouve) {
        range.from = de, range.to = a, range.step = pas;
        const kv::Return::Curve courbe = retour.curve(range);
        for (std::size_t i = 1; i < courbe.values.size(); ++i) {
            const std::int64_t ecart = std::int64_t{courbe.values[i]} - courbe.values[i - 1];
            if (std::llabs(ecart) >= sautMinimal + pas - 1) trouve(courbe.amounts[i - 1], courbe.amounts[i], ecart);
        }
    };
    const auto note = [&](std::int32_t, std::int32_t apres, std::int64_t ecart) { sauts.push_back({apres, ecart}); };
    const auto pas = static_cast<std::int32_t>((std::int64_t{demande.a} - demande.de) / regards + 1);
    if (pas == 1)
        cherche(demande.de, demande.a, 1, note);
    else
        cherche(demande.de, demande.a, pas,
                [&](std::int32_t avant, std::int32_t apres, std::int64_t) { cherche(avant, apres, 1, note); });
    std::sort(sauts.begin(), sauts.end(), [](const Saut& a, const Saut& b) {
        const auto x = std::llabs(a.ecart), y = std::llabs(b.ecart);
        return x != y ? x > y : a.montant < b.montant;
    });
    return sauts;
}

class Dessin {
  public:
    Dessin(std::ostream& sortie, const kv::Return::Curve& courbe, std::vector<Saut> sauts)
        : m_sortie(sortie),
          m_courbe(courbe),
          m_sauts(std::move(sauts)),
          m_x(courbe.amounts.front(), courbe.amounts.back(), gauche, droite),
          m_figure(AxeDe(courbe.values, basFigure, hautFigure)),
          m_taux(AxeDesTaux()) {}

    void Ecrit(const std::string& titre, const std::string& montant) {
        m_sortie << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << largeur
                 << " 636\" role=\"img\">\n<title>" << Echappe(titre) << "</title>\n"
                 << style << "<rect class=\"fond\" width=\"100%\" height=\"100%\"/>\n"
                 << "<clipPath id=\"cadre\"><rect x=\"" << gauche << "\" y=\"" << hautTaux << "\" width=\""
                 << droite - gauche << "\" height=\"" << basTaux - hautTaux << "\"/></clipPath>\n";
        Texte(gauche, 34, "titre", "start", titre);
        Texte(gauche, 62, "", "start", "euros");
        Texte(gauche, hautTaux - 14, "", "start", "taux");
        Texte(gauche + 56, hautTaux - 14, "moyen", "start", "— moyen");
        Texte(gauche + 140, hautTaux - 14, "marginal", "start", "— marginal");
        Texte((gauche + droite) / 2, 618, "", "middle", montant + " (euros)");
        m_x.Graduations([&](double g) {
            for (const auto& [haut, bas] : {std::pair{hautFigure, basFigure}, {hautTaux, basTaux}})
                Trait("grille", m_x(g), haut, m_x(g), bas);
            Texte(m_x(g), basTaux + 22, "", "middle", ParMilliers(std::llround(g)));
        });
        Lignes(m_figure, [](double g) { return ParMilliers(std::llround(g)); });
        Lignes(m_taux, [](double g) {
            const double pourCent = std::round(g * 1e4) / 100;
            return (pourCent == std::round(pourCent) ? ParMilliers(std::llround(pourCent)) : Nombre(pourCent)) +
                   "\u00A0%";
        });
        MarqueLesSauts();
        Courbe("figure", m_courbe.values, m_figure);
        Courbe("moyen", m_courbe.average, m_taux);
        Courbe("marginal", m_courbe.marginal, m_taux, true);
        m_sortie << "</svg>\n";
    }

  private:
    template <class Valeurs>
    static Axe AxeDe(const Valeurs& valeurs, double bas, double haut) {
        const auto [min, max] = std::minmax_element(valeurs.begin(), valeurs.end());
        return Axe(std::min<double>(*min, 0), std::max<double>(*max, 0), bas, haut).Arrondi();
    }
    // A rate of more than all of an euro is that of a leap, which is marked as such.
    Axe AxeDesTaux() const {
        double min = 0, max = 0.1;
        for (const auto& taux : {m_courbe.average, m_courbe.marginal})
            for (const double t : taux)
                if (std::fabs(t) <= 1) min = std::min(min, t), max = std::max(max, t);
        return Axe(min, max, basTaux, hautTaux).Arrondi();
    }

    void Trait(const char* classe, double x1, double y1, double x2, double y2) {
        m_sortie << "<line class=\"" << classe << "\" x1=\"" << Nombre(x1) << "\" y1=\"" << Nombre(y1) << "\" x2=\""
                 << Nombre(x2) << "\" y2=\"" << Nombre(y2) << "\"/>\n";
    }
    void Texte(double x, double y, const char* classe, const char* ancre, const std::string& texte) {
        m_sortie << "<text x=\"" << Nombre(x) << "\" y=\"" << Nombre(y) << "\" text-anchor=\"" << ancre << '"';
        if (*classe) m_sortie << " class=\"" << classe << '"';
        m_sortie << '>' << Echappe(texte) << "</text>\n";
    }
    template <class EnTexte>
    void Lignes(const Axe& axe, EnTexte enTexte) {
        axe.Graduations([&](double g) {
            Trait(std::fabs(g) < 1e-9 ? "zero" : "grille", gauche, axe(g), droite, axe(g));
            Texte(gauche - 8, axe(g) + 4, "", "end", enTexte(g));
        });
    }
    // en escalier: a value holds as far as the next amount. There is no average rate of nothing.
    template <class Valeurs>
    void Courbe(const char* classe, const Valeurs& valeurs, const Axe& axe, bool enEscalier = false) {
        m_sortie << "<path class=\"" << classe << "\" clip-path=\"" << (&axe == &m_taux ? "url(#cadre)" : "none")
                 << "\" d=\"";
        const char* trait = "M";
        for (std::size_t i = 0; i < valeurs.size(); ++i) {
            if (&valeurs == static_cast<const void*>(&m_courbe.average) && m_courbe.amounts[i] == 0) continue;
            m_sortie << std::exchange(trait, " L") << Nombre(m_x(m_courbe.amounts[i])) << ','
                     << Nombre(axe(valeurs[i]));
            if (enEscalier && i + 1 < valeurs.size()) m_sortie << " H" << Nombre(m_x(m_courbe.amounts[i + 1]));
        }
        m_sortie << "\"/>\n";
    }
    // The largest leaps, each with its amount where there is room for it.
    void MarqueLesSauts() {
        constexpr std::size_t auPlus = 8;
        std::vector<double> places;
        for (std::size_t i = 0; i < std::min(m_sauts.size(), auPlus); ++i) {
            const double x = m_x(m_sauts[i].montant);
            Trait("saut", x, hautFigure, x, basFigure);
            if (std::any_of(places.begin(), places.end(), [&](double p) { return std::fabs(p - x) < 64; })) continue;
            places.push_back(x);
            Texte(std::clamp(x, gauche + 30, droite - 30), hautFigure - 8, "saut", "middle",
                  (m_sauts[i].ecart > 0 ? "+" : "") + ParMilliers(m_sauts[i].ecart) + "\u00A0€");
        }
    }

    std::ostream& m_sortie;
    const kv::Return::Curve& m_courbe;
    const std::vector<Saut> m_sauts;
    const Axe m_x, m_figure, m_taux;
};

}  // namespace

void DessineCourbe(std::ostream& sortie, const kv::Return& retour, const DemandeCourbe& demande) {
    const kv::Return::Curve courbe = Demande([&] { return retour.curve(Intervalle(demande)); });
    const std::string boite = demande.montant.substr(demande.montant.rfind('.') + 1);
    const std::string libelle = LibelleDuMontant(demande.montant, kv::find(KV_ENTRY, boite).value());
    Dessin(sortie, courbe, Sauts(retour, demande))
        .Ecrit(LibelleDeFigure(demande.figure), demande.montant + ", " + libelle);
}

}  // namespace outil
