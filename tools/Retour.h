#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Calcul/cCalcul/DataCalcul.h"
#include "Calcul/pCalculN/Loi.h"
#include "KVCommun/cPeriode/Periode.h"
#include "tools/ErreurEntree.h"

// A return as a file describes it, and what its computation gives.

namespace outil {

/// A return to compute.
struct Retour {
    std::unique_ptr<CDataCalcul> data = std::make_unique<CDataCalcul>();
    TPeriode periode{2017};
    double indexation = -1.0;
    /// The two option switches of the launch: the options apply always, or when the return sets one.
    bool optionsForcees = false, optionsSiSaisies = false;

    /// Launches the computation under a law; false when it failed.
    bool Calcule(const kv::Loi& loi = kv::loi2017);
    /// Fills the carry-forward boxes from what the launch left.
    void CalculeReports();
};

/// Reads a return from JSON. fichier and premiereLigne say where the text stands, for the messages.
/// Throws ErreurEntree for anything that is not exactly a return.
Retour LisRetour(std::string_view json, const std::string& fichier, int premiereLigne = 1);

/// The launches by the names that a return may give them.
std::vector<std::string> NomsDesLancements();

}  // namespace outil
