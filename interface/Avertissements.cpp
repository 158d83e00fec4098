#include "interface/Avertissements.h"

#include <chrono>

#include "Calcul/pCalculN/Loi.h"
#include "interface/Sens.h"
#include "support/KVTarvel.h"

namespace kv {

namespace {

class Controle {
  public:
    explicit Controle(const ZoneEntree& entrees) : m_entrees(entrees) {}

    std::vector<std::string> Fait() {
        Situations();
        SecondDeclarant();
        Invalides("Gm", {"Fm", "Jm", "Rm"}, "disabled dependants");
        Invalides("Im", {"Hm"}, "disabled children in alternating residence");
        static const std::vector<CaseEntree> dates = DuGenre(sens::Genre::Date), annees = DuGenre(sens::Genre::Annee),
                                             coches = DuGenre(sens::Genre::Coche);
        for (const CaseEntree c : dates) Date(c);
        for (const CaseEntree c : annees) Annee(c);
        for (const CaseEntree c : coches) Coche(c);
        return std::move(m_messages);
    }

  private:
    std::int32_t E(CaseEntree c) const { return nValForc(m_entrees[c], 0); }
    static const char* Nom(CaseEntree c) { return entree::lignes[c.numero].nom; }
    std::string Valeur(CaseEntree c) const { return Nom(c) + std::string(" = ") + std::to_string(E(c)); }
    static std::string Libelle(CaseEntree c) { return " (" + sens::De(c).libelle + ")"; }

    template <class Choix>
    static std::vector<CaseEntree> Choisies(Choix choix) {
        std::vector<CaseEntree> choisies;
        for (int i = 0; i < nEntrees; ++i)
            if (const CaseEntree c = CaseEntree::Numero(i); choix(c)) choisies.push_back(c);
        return choisies;
    }
    static std::vector<CaseEntree> DuGenre(sens::Genre genre) {
        return Choisies([&](CaseEntree c) { return sens::De(c).genre == genre; });
    }

    void Situations() {
        std::string cochees;
        int nombre = 0;
        for (const CaseEntree c :
             {CaseEntree("M"), CaseEntree("O"), CaseEntree("C"), CaseEntree("D"), CaseEntree("V")}) {
            if (E(c) == 0) continue;
            cochees += (nombre++ == 0 ? "" : " and ") + (Nom(c) + Libelle(c));
        }
        if (nombre > 1) m_messages.push_back(cochees + ": more than one family situation is ticked");
    }

    void SecondDeclarant() {
        const bool couple = E("M") != 0 || E("O") != 0 || E("Vp") != 0 || E("VpEvt") != 0;
        if (couple) return;
        static const std::vector<CaseEntree> revenus = Choisies([](CaseEntree c) {
            return entree::lignes[c.numero].personne == entree::D2 && '1' <= Nom(c)[0] && Nom(c)[0] <= '6';
        });
        std::string boites;
        for (const CaseEntree c : revenus)
            if (E(c) != 0) boites.append(boites.empty() ? "" : ", ").append(Nom(c));
        if (!boites.empty())
            m_messages.push_back(boites + ": income of a second declarant, but neither M nor O is ticked");
    }

    void Invalides(CaseEntree parmi, std::initializer_list<CaseEntree> tous, const char* quoi) {
        std::int32_t nombre = 0;
        std::string boites;
        for (const CaseEntree c : tous) nombre += E(c), boites.append(boites.empty() ? "" : " + ").append(Nom(c));
        if (E(parmi) > nombre)
            m_messages.push_back(Valeur(parmi) + ": more " + quoi + " than " + boites + " = " + std::to_string(nombre));
    }

    void Date(CaseEntree c) {
        const std::int32_t date = E(c), annee = AnneeOfDate(date);
        const std::chrono::year_month_day jour{std::chrono::year(annee),
                                               std::chrono::month(static_cast<unsigned>(date / 100 % 100)),
                                               std::chrono::day(static_cast<unsigned>(date % 100))};
        Passee(c, annee, annee >= 1000 && jour.ok(), "a date (AAAAMMJJ)");
    }
    void Annee(CaseEntree c) { Passee(c, E(c), 1000 <= E(c) && E(c) <= 9999, "a year (AAAA)"); }

    void Passee(CaseEntree c, std::int32_t annee, bool valable, const char* attendue) {
        if (E(c) == 0) return;
        if (!valable)
            m_messages.push_back(Valeur(c) + Libelle(c) + ": not " + attendue);
        else if (annee > anneeDesRevenus)
            m_messages.push_back(Valeur(c) + Libelle(c) + ": after the end of " + std::to_string(anneeDesRevenus));
    }

    void Coche(CaseEntree c) {
        if (E(c) != 0 && E(c) != 1) m_messages.push_back(Valeur(c) + Libelle(c) + ": a tick is 0 or 1");
    }

    const ZoneEntree& m_entrees;
    std::vector<std::string> m_messages;
};

}  // namespace

std::vector<std::string> Avertissements(const ZoneEntree& entrees) { return Controle(entrees).Fait(); }

}  // namespace kv
