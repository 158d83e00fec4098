#include "interface/Arbre.h"

#include <algorithm>
#include <charconv>
#include <deque>
#include <utility>

#include "support/KVTarvel.h"

namespace kv {

std::string Decimal(std::int32_t centiemes) {
    char texte[32];
    return {texte, std::to_chars(texte, std::end(texte), centiemes / 100.0).ptr};
}

// ---- Nodes.

Noeud Part(std::string libelle, std::int32_t valeur) {
    Noeud noeud;
    noeud.libelle = std::move(libelle), noeud.valeur = valeur;
    return noeud;
}

Noeud PartTaux(std::int32_t centiemes) {
    Noeud noeud = Part("taux (centièmes de %)", centiemes);
    noeud.formule = TexteTaux(centiemes);
    return noeud;
}

void Ajoute(Noeud& noeud, Noeud terme, int signe, const char* role) {
    if (terme.valeur == 0) return;
    terme.signe = signe, terme.role = role;
    noeud.termes.push_back(std::move(terme));
}

std::string Addition(const Noeud& noeud) {
    std::string texte;
    if (std::count_if(noeud.termes.begin(), noeud.termes.end(), [](const Noeud& terme) { return terme.EstTerme(); }) <
        2)
        return texte;
    for (const Noeud& terme : noeud.termes) {
        if (!terme.EstTerme()) continue;
        const bool moins = (terme.signe < 0) != (terme.valeur < 0);
        texte += texte.empty() ? (moins ? "-" : "") : moins ? " - " : " + ";
        texte += Nombre(std::llabs(terme.valeur));
    }
    return texte;
}

std::int32_t Manque(const Noeud& noeud) {
    std::int32_t reste = noeud.valeur;
    for (const Noeud& terme : noeud.termes)
        if (terme.EstTerme()) reste -= terme.signe * terme.valeur;
    return reste;
}

void Somme(Noeud& noeud) { noeud.regle = "sum", noeud.formule = Addition(noeud); }

void Complete(Noeud& noeud, std::string libelle) {
    const std::int32_t reste = Manque(noeud);
    Ajoute(noeud, Part(std::move(libelle), reste < 0 ? -reste : reste), reste < 0 ? -1 : 1);
    Somme(noeud);
}

Noeud Total(std::string libelle, std::int32_t valeur) {
    Noeud noeud = Part(std::move(libelle), valeur);
    noeud.regle = "sum";
    return noeud;
}

Noeud Taxe(std::string libelle, Noeud base, Noeud taux) {
    Noeud noeud = Part(std::move(libelle), nAuTaux(base.valeur, taux.valeur));
    noeud.regle = "rate", noeud.source = taux.source;
    noeud.formule = TexteTaux(taux.valeur) + " de " + Nombre(base.valeur);
    Ajoute(noeud, std::move(base), 1, "base");
    Ajoute(noeud, std::move(taux), 1, "rate");
    return noeud;
}

Noeud Prorata(std::string libelle, std::int32_t valeur, Noeud montant, Noeud numerateur, Noeud denominateur) {
    Noeud noeud = Part(std::move(libelle), valeur);
    noeud.regle = "share", noeud.source = montant.source;
    noeud.formule = Nombre(montant.valeur);
    if (numerateur.valeur != 1) noeud.formule += " x " + Nombre(numerateur.valeur);
    if (denominateur.valeur != 1) noeud.formule += " / " + Nombre(denominateur.valeur);
    Ajoute(noeud, std::move(montant), 1, "amount");
    if (!numerateur.libelle.empty()) Ajoute(noeud, std::move(numerateur), 1, "numerator");
    if (!denominateur.libelle.empty()) Ajoute(noeud, std::move(denominateur), 1, "denominator");
    return noeud;
}

namespace {

Noeud Borne(const char* regle, const char* mot, std::int32_t valeur, Noeud a, Noeud b) {
    Noeud noeud = Part(a.libelle, valeur);
    noeud.regle = regle, noeud.source = b.source.empty() ? a.source : b.source;
    noeud.formule = std::string(mot) + " de " + Nombre(a.valeur) + " et " + Nombre(b.valeur);
    Ajoute(noeud, std::move(a), 1, "among");
    Ajoute(noeud, std::move(b), 1, "among");
    return noeud;
}

}  // namespace

Noeud Minimum(Noeud a, Noeud b) {
    const std::int32_t valeur = std::min(a.valeur, b.valeur);
    return Borne("min", "le moindre", valeur, std::move(a), std::move(b));
}
Noeud Maximum(Noeud a, Noeud b) {
    const std::int32_t valeur = std::max(a.valeur, b.valeur);
    return Borne("max", "le plus élevé", valeur, std::move(a), std::move(b));
}

void Reprend(Noeud& noeud, Noeud&& autre) {
    noeud.regle = autre.regle;
    noeud.formule = std::move(autre.formule), noeud.source = std::move(autre.source);
    noeud.termes = std::move(autre.termes);
}

void Coupe(Noeud& noeud, std::int32_t profondeur) {
    if (profondeur < 0) return;
    if (profondeur == 0 && (!noeud.termes.empty() || noeud.aEffets.sortie || noeud.aEffets.report)) {
        noeud.termes.clear();
        noeud.aEffets = {};
        noeud.regle = "deeper";
    }
    for (Noeud& terme : noeud.termes) Coupe(terme, profondeur - 1);
}

// ---- JSON.

namespace {

void EcritTexte(std::string& vers, std::string_view texte) {
    vers += '"';
    for (const char c : texte) {
        if (c == '"' || c == '\\') vers += '\\';
        vers += c;
    }
    vers += '"';
}

// An object, member by member; what is "" is left out.
class Objet {
  public:
    explicit Objet(std::string& vers) : m_vers(vers) {}

    void Nombre(const char* nom, std::int64_t valeur) { Cle(nom), m_vers += std::to_string(valeur); }
    void Texte(const char* nom, std::string_view texte) {
        if (!texte.empty()) Cle(nom), EcritTexte(m_vers, texte);
    }
    template <class Liste, class Fonction>
    void Termes(const Liste& termes, Fonction ecrit) {
        if (termes.empty()) return;
        Cle("terms");
        const char* entre = "[";
        for (const auto& terme : termes) m_vers += std::exchange(entre, ","), ecrit(terme);
        m_vers += ']';
    }
    void Ferme() { m_vers += '}'; }

  private:
    void Cle(const char* nom) { (((m_vers += std::exchange(m_separateur, ",")) += '"') += nom) += "\":"; }

    std::string& m_vers;
    const char* m_separateur = "{";
};

// What names a node: the same in a tree and in a difference.
void EcritNom(Objet& objet, const Noeud& noeud, bool racine) {
    if (racine) objet.Nombre("version", 1);
    objet.Texte("box", noeud.nom);
    if (noeud.colonne > 0) objet.Nombre("column", noeud.colonne);
    objet.Texte("label", noeud.libelle);
    if (!racine) objet.Nombre("sign", noeud.signe);
    objet.Texte("role", noeud.role);
}

void Ecrit(std::string& vers, const Noeud& noeud, bool racine) {
    Objet objet(vers);
    EcritNom(objet, noeud, racine);
    objet.Nombre("value", noeud.valeur);
    objet.Texte("rule", noeud.regle);
    objet.Texte("formula", noeud.formule);
    objet.Texte("law", noeud.source);
    objet.Texte("step", noeud.etape);
    objet.Texte("run", noeud.passage);
    objet.Termes(noeud.termes, [&](const Noeud& terme) { Ecrit(vers, terme, false); });
    objet.Ferme();
}

// ---- Differences.

// Whether two terms are the same one in two trees.
bool Memes(const Noeud& a, const Noeud& b) {
    return a.nom == b.nom && a.colonne == b.colonne && a.signe == b.signe && std::string_view(a.role) == b.role &&
           (!a.nom.empty() || a.libelle == b.libelle);
}

// A branch of which something differs. Where it stands in one tree only, the other node is null, or what the other
// return has of the figure.
struct Branche {
    const Noeud *avant, *apres;
    std::optional<std::int32_t> valeurAvant, valeurApres;
    const char* compteDans = "";  // the one return in which it counts
    std::vector<Branche> termes = {};

    const Noeud& Montree() const { return apres ? *apres : *avant; }
    bool MemeRegle() const { return avant && apres && std::string_view(avant->regle) == apres->regle; }
};

class Difference {
  public:
    Difference(const AutreRetour& avant, const AutreRetour& apres) : m_avant(avant), m_apres(apres) {}

    Branche Racine(const Noeud& avant, const Noeud& apres, std::int32_t profondeur) {
        Branche racine{&avant, &apres, avant.valeur, apres.valeur};
        CompareTermes(racine, profondeur);
        return racine;
    }

  private:
    // entier: both returns have what makes the branch above; memeRegle: by the same rule.
    std::optional<Branche> Compare(const Noeud* avant, const Noeud* apres, bool entier, bool memeRegle,
                                   std::int32_t profondeur) {
        Branche b{avant, apres, Valeur(avant, apres, m_avant, memeRegle), Valeur(apres, avant, m_apres, memeRegle)};
        const bool deDeux = avant && apres;
        const bool differe = b.valeurAvant != b.valeurApres;
        if (!deDeux && b.valeurAvant.value_or(1) != 0 && b.valeurApres.value_or(1) != 0)
            b.compteDans = apres ? "after" : "before";
        const std::pair cle(b.Montree().nom, b.Montree().colonne);
        const bool enCours = std::find(m_chemin.begin(), m_chemin.end(), cle) != m_chemin.end();
        m_chemin.push_back(cle);
        if (!avant && !enCours) b.avant = Construit(m_avant, *apres, profondeur);
        if (!apres && !enCours) b.apres = Construit(m_apres, *avant, profondeur);
        CompareTermes(b, profondeur);
        m_chemin.pop_back();
        if (!entier) b.compteDans = "";
        const bool connues = b.valeurAvant && b.valeurApres;
        const bool change = differe && (deDeux || connues);
        // An equal figure that one return alone counts is a change of its sum, or of what is chosen.
        const bool compte =
            *b.compteDans != 0 && connues && (b.Montree().EstTerme() || std::string_view(b.Montree().role) == "chosen");
        if (b.termes.empty() && !change && !compte) return {};
        return b;
    }

    void CompareTermes(Branche& b, std::int32_t profondeur) {
        if (profondeur == 0) return;
        const auto cherche = [](const Noeud* parmi, const Noeud& terme) -> const Noeud* {
            if (!parmi) return nullptr;
            const auto meme = std::find_if(parmi->termes.begin(), parmi->termes.end(),
                                           [&](const Noeud& autre) { return Memes(autre, terme); });
            return meme == parmi->termes.end() ? nullptr : &*meme;
        };
        const auto note = [&](const Noeud* avant, const Noeud* apres) {
            if (auto terme = Compare(avant, apres, b.avant && b.apres, b.MemeRegle(), profondeur - 1))
                b.termes.push_back(std::move(*terme));
        };
        if (b.avant)
            for (const Noeud& terme : b.avant->termes) note(&terme, cherche(b.apres, terme));
        if (b.apres)
            for (const Noeud& terme : b.apres->termes)
                if (!cherche(b.avant, terme)) note(nullptr, &terme);
    }

    // What a return has: its node's value; of a node of the other one, its own figure of that name; nothing of a part
    // that the same rule has there only; none where another rule leads to the figure.
    static std::optional<std::int32_t> Valeur(const Noeud* sien, const Noeud* autre, const AutreRetour& retour,
                                              bool memeRegle) {
        if (sien) return sien->valeur;
        if (const auto valeur = retour.lit(*autre)) return valeur;
        return memeRegle ? std::optional<std::int32_t>(0) : std::nullopt;
    }

    const Noeud* Construit(const AutreRetour& retour, const Noeud& noeud, std::int32_t profondeur) {
        auto construit = retour.explique(noeud, profondeur);
        return construit ? &m_construits.emplace_back(std::move(*construit)) : nullptr;
    }

    const AutreRetour &m_avant, &m_apres;
    std::deque<Noeud> m_construits;                     // they stay where they are
    std::vector<std::pair<std::string, int>> m_chemin;  // the figures that are compared
};

void EcritDifference(std::string& vers, const Branche& b, bool racine) {
    Objet objet(vers);
    EcritNom(objet, b.Montree(), racine);
    if (b.valeurAvant) objet.Nombre("before", *b.valeurAvant);
    if (b.valeurApres) objet.Nombre("after", *b.valeurApres);
    objet.Texte("in", b.compteDans);
    if (b.MemeRegle()) objet.Texte("rule", b.apres->regle);
    if (b.avant) objet.Texte("formulaBefore", b.avant->formule);
    if (b.apres) objet.Texte("formulaAfter", b.apres->formule);
    objet.Termes(b.termes, [&](const Branche& terme) { EcritDifference(vers, terme, false); });
    objet.Ferme();
}

}  // namespace

std::string JsonDe(const Noeud& racine) {
    std::string json;
    Ecrit(json, racine, true);
    return json;
}

std::string JsonDeDifference(const Noeud& avant, const AutreRetour& retourAvant, const Noeud& apres,
                             const AutreRetour& retourApres, std::int32_t profondeur) {
    Difference difference(retourAvant, retourApres);
    std::string json;
    EcritDifference(json, difference.Racine(avant, apres, profondeur), true);
    return json;
}

}  // namespace kv
