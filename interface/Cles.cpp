#include "interface/Cles.h"

#include <array>
#include <charconv>
#include <vector>

#include "Calcul/cCalcul/Catalogues.h"
#include "interface/Noms.h"
#include "interface/Sens.h"

namespace kv {

namespace {

constexpr std::array<const char*, 6> nomsAires = {"entries", "ti", "tix", "tiy", "tk", "tkz"};

// "; nearest: 1AJ (Traitements et salaires)".
std::string EntreesProches(std::string_view saisi) {
    std::vector<std::string_view> noms;
    for (const auto& ligne : entree::lignes) noms.push_back(ligne.nom);
    std::vector<std::string> proches;
    for (const std::size_t i : LesPlusProches(saisi, noms))
        proches.push_back(std::string(noms[i]) + " (" + sens::De(CaseEntree::Numero(static_cast<int>(i))).libelle +
                          ")");
    return Liste(proches);
}

std::string FiguresProches(std::string_view saisi) {
    std::vector<std::string_view> noms(std::begin(sortie::noms), std::end(sortie::noms));
    noms.insert(noms.end(), std::begin(report::noms), std::end(report::noms));
    std::vector<std::string> proches;
    for (const std::size_t i : LesPlusProches(saisi, noms)) proches.emplace_back(noms[i]);
    return Liste(proches);
}

// A coefficient in the one form that a number has: two spellings would hide each other's amount.
std::optional<std::int32_t> Coefficient(std::string_view texte) {
    std::int32_t coefficient = 0;
    std::from_chars(texte.data(), texte.data() + texte.size(), coefficient);
    if (std::to_string(coefficient) != texte) return {};
    return coefficient;
}

}  // namespace

const char* NomAire(Aire aire) { return nomsAires[static_cast<std::size_t>(aire)]; }

std::string NomDe(const CleSaisie& cle) {
    const std::string boite = entree::lignes[cle.box.numero].nom;
    if (cle.coefficient) return "quotient." + std::to_string(*cle.coefficient) + '.' + boite;
    return cle.aire == Aire::Entrees ? boite : std::string(NomAire(cle.aire)) + '.' + boite;
}

bool PeutEtreExceptionnel(CaseEntree box) { return (entree::lignes[box.numero].marques & entree::Quotient) != 0; }

LectureCle<CleSaisie> LisCleSaisie(std::string_view nom) {
    CleSaisie cle;
    std::string_view boite = nom, aire = nomsAires[0];
    if (const std::size_t point = nom.find('.'); point != nom.npos) {
        aire = nom.substr(0, point);
        boite = nom.substr(point + 1);
        std::size_t i = 1;
        while (i < nomsAires.size() && aire != nomsAires[i]) ++i;
        const bool exceptionnel = aire == "quotient";
        if (i == nomsAires.size() && !exceptionnel)
            return {.statut = KV_UNKNOWN,
                    .message = "unknown amount " + std::string(nom) +
                               "; a name is that of a box, alone or after ti., tix., tiy., tk., tkz. or quotient.N."};
        if (exceptionnel) {
            const std::size_t suite = boite.find('.');
            cle.coefficient = Coefficient(boite.substr(0, suite));
            if (suite == boite.npos || !cle.coefficient)
                return {.statut = KV_UNKNOWN,
                        .message = std::string(nom) + ": the coefficient is not a 32-bit integer"};
            boite.remove_prefix(suite + 1);
        } else {
            cle.aire = static_cast<Aire>(i);
        }
    }
    cle.box = CaseEntree::Numero(NumeroEntree(boite));
    if (!cle.box)
        return {.statut = KV_UNKNOWN, .message = "unknown entry box " + std::string(boite) + EntreesProches(boite)};
    if (cle.coefficient ? !PeutEtreExceptionnel(cle.box) : Place(cle.aire, cle.box) < 0)
        return {.statut = KV_NO_AMOUNT,
                .message = "box " + std::string(boite) + " has no amount in \"" + std::string(aire) + '"'};
    return {.cle = cle};
}

LectureCle<CleFigure> LisCleFigure(std::string_view nom) {
    CleFigure cle;
    std::string_view boite = nom;
    if (nom.size() > 3 && nom.substr(nom.size() - 3, 2) == ".c" && bIsEntre(nom.back(), '1', '3')) {
        cle.colonne = static_cast<std::size_t>(nom.back() - '0');
        boite.remove_suffix(3);
    }
    cle.sortie = CaseSortie::Numero(NumeroSortie(boite));
    if (!cle.sortie && cle.colonne == 0) cle.report = CaseReport::Numero(NumeroReport(boite));
    if (!cle.sortie && !cle.report)
        return {.statut = KV_UNKNOWN, .message = "unknown figure " + std::string(nom) + FiguresProches(boite)};
    return {.cle = cle};
}

LectureCle<FigureLue> LisFigure(const char* nom) {
    if (!nom) return {.cle = {{}, true}};
    auto [cle, statut, message] = LisCleFigure(nom);
    return {.cle = {cle, false}, .statut = statut, .message = std::move(message)};
}

}  // namespace kv
