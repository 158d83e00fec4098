#include "Calcul/cCalcul/Catalogues.h"

#include <cstddef>
#include <span>

#include "support/KVTarvel.h"

static_assert(sizeof(CaseEntreeDef) == 56 && offsetof(CaseEntreeDef, Nom) == 4 &&
              offsetof(CaseEntreeDef, CaseLiee) == 16 && offsetof(CaseEntreeDef, bAutoEntr) == 24 &&
              offsetof(CaseEntreeDef, nQuotient) == 28 && offsetof(CaseEntreeDef, nDouble) == 52);
static_assert(sizeof(CaseSortieDef) == 108 && offsetof(CaseSortieDef, bRazPartielle) == 104);
static_assert(sizeof(CaseReportDef) == 104 && offsetof(CaseReportDef, Nom) == 4);

namespace kv {

namespace {

consteval void CopieNom(std::span<char16_t> vers, std::string_view nom) {
    if (nom.size() >= vers.size()) throw "the name does not fit with its terminator";
    std::copy(nom.begin(), nom.end(), vers.begin());
}

// A retroceded overseas investment: the part retroceded, and the reduction that it is taken from.
consteval bool EstRetrocede(std::string_view nom) {
    if (nom.starts_with("U_PR_")) return nom.ends_with("_R");
    return nom.starts_with("U_DT_") &&
           CatalogueSortie::index.Cherche(Hache("_R", Hache(nom.substr(5), Hache("U_PR_")))) >= 0;
}

// Reductions and credits are computed again without the advantages under the global cap; retroceded investments are
// not.
consteval bool EstRazPartielle(std::string_view nom) {
    return nom.starts_with("D_") || (nom.starts_with("U_") && !EstRetrocede(nom));
}

consteval auto FichesEntree() {
    std::array<CaseEntreeDef, nEntrees> fiches{};
    int quotients = 0, ti = 0, tix = 0, tk = 0;
    for (int i = 0; i < nEntrees; ++i) {
        const entree::Ligne& l = entree::lignes[i];
        CaseEntreeDef& f = fiches[static_cast<std::size_t>(i)];
        const auto marque = [&](entree::Marque m) { return (l.marques & m) != 0; };
        f.Index = static_cast<std::uint32_t>(i);
        CopieNom(f.Nom, l.nom);
        f.CaseLiee = l.liee ? CatalogueEntree::index.Cherche(Hache(l.liee)) : -1;
        f.Type = l.personne;
        f.bAutoEntr = marque(entree::AutoEntr);
        f.bProspection = marque(entree::Prospection);
        f.bNegatifTI = marque(entree::NegatifTI);
        f.bSauveTK = marque(entree::SauveTK);
        f.nQuotient = marque(entree::Quotient) ? quotients++ : -1;
        f.nTI = marque(entree::TI) ? ti++ : -1;
        f.nTIX = f.nTIY = marque(entree::TIX) ? tix++ : -1;
        f.nTK = f.nTKZ = marque(entree::TK) ? tk++ : -1;
        f.nDouble = -1;
    }
    return fiches;
}

consteval auto FichesSortie() {
    std::array<CaseSortieDef, nSorties> fiches{};
    for (std::size_t i = 0; i < nSorties; ++i) {
        fiches[i].Index = static_cast<std::uint32_t>(i);
        CopieNom(fiches[i].Nom, sortie::noms[i]);
        fiches[i].bRazPartielle = EstRazPartielle(sortie::noms[i]);
    }
    return fiches;
}

consteval CasesSortie SortiesRazPartielle() {
    CasesSortie sorties;
    for (int i = 0; i < nSorties; ++i)
        if (EstRazPartielle(sortie::noms[i])) sorties.Ajoute(CaseSortie::Numero(i));
    return sorties;
}

consteval auto FichesReport() {
    std::array<CaseReportDef, nReports> fiches{};
    for (std::size_t i = 0; i < nReports; ++i) {
        fiches[i].Index = static_cast<std::uint32_t>(i);
        CopieNom(fiches[i].Nom, report::noms[i]);
    }
    return fiches;
}

template <class Catalogue>
int Cherche(std::string_view nom, const char* trouve(int)) {
    const int numero = Catalogue::index.Cherche(Hache(nom));
    return numero >= 0 && nom == trouve(numero) ? numero : -1;
}

}  // namespace

constinit const CasesSortie sortiesRazPartielle = SortiesRazPartielle();

int NumeroEntree(std::string_view nom) {
    return Cherche<CatalogueEntree>(nom, [](int i) { return entree::lignes[i].nom; });
}
int NumeroSortie(std::string_view nom) {
    return Cherche<CatalogueSortie>(nom, [](int i) { return sortie::noms[i]; });
}
int NumeroReport(std::string_view nom) {
    return Cherche<CatalogueReport>(nom, [](int i) { return report::noms[i]; });
}
int NumeroEntree(std::u16string_view nom) { return NumeroEntree(VersUtf8(nom)); }

}  // namespace kv

constinit const std::array<CaseEntreeDef, kv::nEntrees> TableEntree = kv::FichesEntree();
constinit const std::array<CaseSortieDef, kv::nSorties> TableSortie = kv::FichesSortie();
constinit const std::array<CaseReportDef, kv::nReports> TableReport = kv::FichesReport();
