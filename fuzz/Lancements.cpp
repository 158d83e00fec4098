#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "Calcul/cCalcul/DataCalcul.h"
#include "Calcul/pCalculN/Pilote.h"
#include "support/KVTarvel.h"
#include "support/Tarvel.h"

// Arbitrary box values, companions, quotient amounts and figures of the law through both launches and the carry-forward
// computation: they return, and the entries stand as they were given.

namespace {

// Reads the fuzzer's bytes, then zeros.
class Octets {
  public:
    Octets(const std::uint8_t* donnees, std::size_t taille) : m_donnees(donnees), m_reste(taille) {}
    bool Fini() const { return m_reste == 0; }
    std::uint32_t Lit(int octets) {
        std::uint32_t valeur = 0;
        for (int i = 0; i < octets && m_reste > 0; ++i, --m_reste) valeur = valeur << 8 | *m_donnees++;
        return valeur;
    }
    // Mostly plausible amounts, sometimes anything.
    std::int32_t Valeur() {
        switch (Lit(1) % 8) {
            case 0:
                return static_cast<std::int32_t>(Lit(4));
            case 1:
                return nNonSaisi;
            case 2:
                return -static_cast<std::int32_t>(Lit(2));
            case 3:
            case 4:
                return static_cast<std::int32_t>(Lit(1) % 4);
            default:
                return static_cast<std::int32_t>(Lit(3));
        }
    }

  private:
    const std::uint8_t* m_donnees;
    std::size_t m_reste;
};

template <class Zone>
void Remplit(Zone& zone, Octets& octets) {
    zone.valeurs[octets.Lit(2) % zone.valeurs.size()] = octets.Valeur();
}

void Exige(bool condition, const char* quoi) {
    if (condition) return;
    CLogging::Error(kv::VersUtf16(quoi));
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    Octets octets(donnees, taille);
    const auto data = std::make_unique<CDataCalcul>();
    const std::uint32_t mode = octets.Lit(1);
    const double indexation = mode & 4 ? static_cast<std::int32_t>(octets.Lit(2)) / 100.0 - 100 : -1.0;
    kv::Loi loi = kv::loi2017;
    while (!octets.Fini()) {
        switch (octets.Lit(1) % 16) {
            case 0:
                Remplit(data->TI, octets);
                break;
            case 1:
                Remplit(data->TIX, octets);
                break;
            case 2:
                Remplit(data->TIY, octets);
                break;
            case 3:
                Remplit(data->TK, octets);
                break;
            case 4:
                Remplit(data->TKZ, octets);
                break;
            case 5: {
                const int map = static_cast<int>(octets.Lit(1) % kv::nQuotients);
                const std::int32_t coefficient = static_cast<std::int32_t>(octets.Lit(1)) - 5;
                data->AjouteQuotient(map, coefficient, octets.Valeur());
                break;
            }
            case 6:
                Remplit(loi, octets);
                break;
            default:
                Remplit(data->Entree, octets);
        }
    }
    auto entrees = data->Entree.valeurs;
    const auto ti = data->TI.valeurs;
    const auto tk = data->TK.valeurs;
    const auto quotients = data->MapsQuotients;
    Exige(kv::Lance(*data, nullptr, true, indexation, (mode & 1) != 0, (mode & 2) != 0, loi), "the launch failed");
    kv::LanceReports(*data, nullptr, indexation);

    // The launch writes the totals of the foreign companions, and a comparison ends with both options off.
    for (const CaseEntree box : {CaseEntree("8TI"), CaseEntree("8TK"), CaseEntree("PFU"), CaseEntree("BAR")})
        entrees[static_cast<std::size_t>(box.numero)] = data->Entree[box];
    Exige(entrees == data->Entree.valeurs, "an entry box changed");
    Exige(ti == data->TI.valeurs && tk == data->TK.valeurs, "a companion changed");
    Exige(quotients == data->MapsQuotients, "a quotient amount changed");
    return 0;
}
