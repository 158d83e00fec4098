#include "interface/Arbre.h"

#include <algorithm>
#include <charconv>
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

// A branch of both trees, or of one of them, the other node being null: then what the other return has of it, if it has
// one.
struct Branche {
    const Noeud *avant, *apres;
    std::optional<std::int32_t> valeurAvant, valeurApres;

    const Noeud& Montree() const { return apres ? *apres : *avant; }
    bool DeDeux() const { return avant && apres; }
    bool DUnArbre() const { return !DeDeux() && (valeurAvant.value_or(1) != 0) && (valeurApres.value_or(1) != 0); }
    bool Differe() const { return valeurAvant != valeurApres; }
};

class Difference {
  public:
    Difference(const Lecture& lisAvant, const Lecture& lisApres) : m_lisAvant(lisAvant), m_lisApres(lisApres) {}

    std::string json;

    // entier: the branch above is one of both trees, or there is none above.
    void Ecrit(const Branche& branche, bool racine, bool entier = true) {
        const auto& [avant, apres, valeurAvant, valeurApres] = branche;
        Objet objet(json);
        EcritNom(objet, branche.Montree(), racine);
        if (valeurAvant) objet.Nombre("before", *valeurAvant);
        if (valeurApres) objet.Nombre("after", *valeurApres);
        if (entier && branche.DUnArbre()) objet.Texte("in", apres ? "after" : "before");
        if (branche.DeDeux() && std::string_view(avant->regle) == apres->regle) objet.Texte("rule", apres->regle);
        if (avant) objet.Texte("formulaBefore", avant->formule);
        if (apres) objet.Texte("formulaAfter", apres->formule);
        objet.Termes(Branches(branche), [&](const Branche& terme) { Ecrit(terme, false, branche.DeDeux()); });
        objet.Ferme();
    }

  private:
    // What the other return has of a node of one tree: its own figure of that name; nothing of a part that the same
    // rule has here only; none where another rule leads to the figure there.
    static std::optional<std::int32_t> Ailleurs(const Noeud& noeud, const Lecture& lis, bool memeRegle) {
        if (const auto valeur = lis(noeud)) return valeur;
        return memeRegle ? std::optional<std::int32_t>(0) : std::nullopt;
    }

    std::vector<Branche> Branches(const Branche& branche) const {
        std::vector<Branche> branches;
        const auto cherche = [](const Noeud* parmi, const Noeud& terme) -> const Noeud* {
            if (!parmi) return nullptr;
            const auto meme = std::find_if(parmi->termes.begin(), parmi->termes.end(),
                                           [&](const Noeud& autre) { return Memes(autre, terme); });
            return meme == parmi->termes.end() ? nullptr : &*meme;
        };
        const bool memeRegle = branche.DeDeux() && std::string_view(branche.avant->regle) == branche.apres->regle;
        // Below a branch of one tree only what both returns have is compared.
        const auto garde = [&](const Branche& terme) {
            if (terme.Differe() ? branche.DeDeux() || (terme.valeurAvant && terme.valeurApres)
                                : branche.DeDeux() && terme.DUnArbre())
                branches.push_back(terme);
        };
        if (branche.avant) {
            for (const Noeud& terme : branche.avant->termes) {
                const Noeud* const autre = cherche(branche.apres, terme);
                garde({&terme, autre, terme.valeur, autre ? autre->valeur : Ailleurs(terme, m_lisApres, memeRegle)});
            }
        }
        if (branche.apres)
            for (const Noeud& terme : branche.apres->termes)
                if (!cherche(branche.avant, terme))
                    garde({nullptr, &terme, Ailleurs(terme, m_lisAvant, memeRegle), terme.valeur});
        return branches;
    }

    const Lecture &m_lisAvant, &m_lisApres;
};

}  // namespace

std::string JsonDe(const Noeud& racine) {
    std::string json;
    Ecrit(json, racine, true);
    return json;
}

std::string JsonDeDifference(const Noeud& avant, const Lecture& lisAvant, const Noeud& apres, const Lecture& lisApres) {
    Difference difference(lisAvant, lisApres);
    difference.Ecrit({&avant, &apres, avant.valeur, apres.valeur}, true);
    return std::move(difference.json);
}

}  // namespace kv
