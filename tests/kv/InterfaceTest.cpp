#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <kv.hpp>
#include <limits>
#include <thread>

// kv.h as a host sees it: nothing else of the house is known here.

namespace {

constexpr kv_catalogue catalogues[] = {KV_ENTRY, KV_OUTPUT, KV_CARRY};
constexpr kv_area aires[] = {KV_AREA_ENTRY, KV_AREA_TI, KV_AREA_TIX, KV_AREA_TIY, KV_AREA_TK, KV_AREA_TKZ};
constexpr const char* debuts[] = {"", "ti.", "tix.", "tiy.", "tk.", "tkz."};

// Whether an entry box has an amount in an area.
bool Dans(const kv_box& box, kv_area aire) {
    const int32_t places[] = {0, box.ti, box.tix, box.tix, box.tk, box.tk};
    return places[aire] >= 0;
}

// A call that must fail: its status, and words of the message that its handle keeps.
void Refuse(const kv::Return& r, kv_status obtenu, kv_status attendu, const std::string& mention) {
    EXPECT_EQ(obtenu, attendu) << kv_message(r.handle());
    EXPECT_NE(std::string(kv_message(r.handle())).find(mention), std::string::npos) << kv_message(r.handle());
}

kv::Return Celibataire(int32_t salaire) { return kv::Return().set("1AJ", salaire); }

// Everything that a computation found.
struct Figures {
    explicit Figures(const kv::Return& r) {
        for (int32_t colonne = 0; colonne < 4; ++colonne) {
            auto& sorties = colonnes[static_cast<std::size_t>(colonne)];
            sorties.resize(static_cast<std::size_t>(kv::count(KV_OUTPUT)));
            r.outputs(sorties, colonne);
        }
        for (int32_t i = 0; i < kv::count(KV_OUTPUT); ++i) textes.push_back(r.text(i));
        for (int32_t i = 0; i < kv::count(KV_CARRY); ++i) reports.push_back(r.carry(i));
        for (int32_t i = 0; i < kv::count(KV_ENTRY); ++i) entrees.push_back(r.entry(i));
    }
    bool operator==(const Figures&) const = default;

    std::vector<int32_t> colonnes[4], reports, entrees;
    std::vector<std::string> textes;
};

TEST(Interface, TheLibrarySaysWhatItIs) {
    EXPECT_EQ(kv_interface(), KV_INTERFACE);
    EXPECT_EQ(std::string(kv_version()).substr(0, 5), std::to_string(kv_year()) + ".");
    std::vector<std::string> textes;
    for (kv_status s = KV_OK; s <= KV_CANCELLED; ++s) textes.emplace_back(kv_status_text(s));
    std::sort(textes.begin(), textes.end());
    EXPECT_EQ(std::unique(textes.begin(), textes.end()), textes.end());
    for (const kv_status s : {-1, KV_CANCELLED + 1}) EXPECT_STREQ(kv_status_text(s), "unknown status");
}

TEST(Catalogues, EachBoxIsFoundByItsNameAndAmongThoseThatASearchFinds) {
    const int32_t nombres[] = {2128, 2288, 736};
    for (const kv_catalogue c : catalogues) {
        EXPECT_EQ(kv::count(c), nombres[c]);
        for (int32_t i = 0; i < kv::count(c); ++i) {
            const kv_box box = kv::describe(c, i);
            EXPECT_EQ(kv::find(c, box.name), i);
            EXPECT_TRUE(*box.label && *box.kind_name && *box.person_name && *box.group) << box.name;
            EXPECT_TRUE(i % 100 != 0 || kv::nearest(c, box.name)[0] == i) << box.name;
        }
    }
    for (const char* nom : {"1AJ", "TOT_PAYER", "F11_6FL"})
        EXPECT_EQ(std::count_if(std::begin(catalogues), std::end(catalogues),
                                [&](kv_catalogue c) { return kv::find(c, nom).has_value(); }),
                  1);
    for (const char* absent : {"", "1aj", "1AJ ", "ti.1AW"}) EXPECT_FALSE(kv::find(KV_ENTRY, absent)) << absent;
}

TEST(Catalogues, WhatIsKnownOfABox) {
    const auto decrite = [](kv_catalogue c, const char* nom) { return kv::describe(c, kv::find(c, nom).value()); };
    const kv_box salaire = decrite(KV_ENTRY, "1BJ"), naissance = decrite(KV_ENTRY, "AAF1");
    EXPECT_STREQ(salaire.label, "Traitements et salaires");
    EXPECT_EQ(salaire.kind, KV_EUROS);
    EXPECT_EQ(salaire.person, 2);
    EXPECT_STREQ(salaire.person_name, "déclarant 2");
    EXPECT_STREQ(salaire.group, "Salaires et pensions");
    EXPECT_GE(salaire.quotient, 0);
    EXPECT_EQ(salaire.ti + salaire.carried + salaire.linked, -3);
    EXPECT_EQ(naissance.kind, KV_DATE);
    EXPECT_STREQ(decrite(KV_ENTRY, decrite(KV_ENTRY, "5TA").name).person_name, "déclarant 1");
    EXPECT_STREQ(kv::describe(KV_ENTRY, decrite(KV_ENTRY, "5TA").linked).name, "5KO");  // its micro regime
    const kv_box dons = decrite(KV_OUTPUT, "U_DONS_OEUVRES_N");
    EXPECT_STREQ(dons.step, "19:ImpotApresReductions");
    EXPECT_STREQ(dons.columns[1], "base retenue");
    EXPECT_STREQ(kv::describe(KV_OUTPUT, dons.carried).name, "NP1_DONS_N");
    const kv_box report = decrite(KV_CARRY, "F11_7XY");
    EXPECT_STREQ(report.next, "7XY");
    EXPECT_STREQ(report.takes, "NP1_DONS_N");
    const auto lignes = kv::reduction_lines();
    EXPECT_STREQ(
        std::find_if(lignes.begin(), lignes.end(), [&](const auto& l) { return l.base == std::string("7UF"); })->rate,
        "66");
}

TEST(Catalogues, BadCallsAreStatuses) {
    int32_t n = -7, rangs[3] = {-7, -7, -7};
    kv_box box{};
    box.size = sizeof box;
    for (const kv_catalogue c : {-1, 3}) {
        EXPECT_EQ(kv_box_count(c, &n), KV_UNKNOWN);
        EXPECT_EQ(kv_box_find(c, "1AJ", &n), KV_UNKNOWN);
        EXPECT_EQ(kv_box_describe(c, 0, &box), KV_UNKNOWN);
        EXPECT_EQ(kv_box_search(c, "1AJ", rangs, 3, &n), KV_UNKNOWN);
        EXPECT_EQ(kv_box_nearest(c, "1AJ", rangs, 3, &n), KV_UNKNOWN);
    }
    for (const kv_catalogue c : catalogues) {
        for (const int32_t i : {-1, kv::count(c), std::numeric_limits<int32_t>::max()})
            EXPECT_EQ(kv_box_describe(c, i, &box), KV_UNKNOWN);
        EXPECT_EQ(kv_box_count(c, nullptr), KV_NULL);
        EXPECT_EQ(kv_box_find(c, nullptr, &n), KV_NULL);
        EXPECT_EQ(kv_box_find(c, "1AJ", nullptr), KV_NULL);
        EXPECT_EQ(kv_box_describe(c, 0, nullptr), KV_NULL);
        for (const auto fonction : {kv_box_search, kv_box_nearest}) {
            EXPECT_EQ(fonction(c, nullptr, rangs, 3, &n), KV_NULL);
            EXPECT_EQ(fonction(c, "1AJ", nullptr, 3, &n), KV_NULL);
            EXPECT_EQ(fonction(c, "1AJ", rangs, 3, nullptr), KV_NULL);
        }
    }
    EXPECT_EQ(kv_reduction_count(nullptr), KV_NULL);
    EXPECT_EQ(kv_reduction_describe(0, nullptr), KV_NULL);
    EXPECT_EQ(kv_parameter_count(nullptr), KV_NULL);
    EXPECT_EQ(kv_parameter_find(nullptr, &n), KV_NULL);
    EXPECT_EQ(kv_parameter_find("decote.part", nullptr), KV_NULL);
    EXPECT_EQ(kv_parameter_describe(0, nullptr), KV_NULL);
    EXPECT_EQ(kv_parameter_search(nullptr, rangs, 3, &n), KV_NULL);
    EXPECT_EQ(n, -7);

    // What does not fit is counted, and the first ones are there.
    EXPECT_EQ(kv_box_search(KV_ENTRY, "traitements salaires", rangs, 2, &n), KV_TOO_SMALL);
    EXPECT_GT(n, 2);
    EXPECT_LT(rangs[0], rangs[1]);
    EXPECT_EQ(rangs[2], -7);
    EXPECT_EQ(kv_box_search(KV_ENTRY, "zzzz", nullptr, 0, &n), KV_OK);
    EXPECT_EQ(n, 0);
    EXPECT_EQ(kv_parameter_search("DECOTE.", rangs, -1, &n), KV_TOO_SMALL);
    EXPECT_EQ(n, 3);
}

// A structure of an older header is refused, one of a newer header is filled as far as the library knows it.
template <class Structure, class Appel>
void ControleTaille(Appel appel) {
    struct {
        Structure structure;
        char suite[8];
    } plus;
    std::memset(&plus, 'x', sizeof plus);
    plus.structure.size = sizeof plus;
    EXPECT_EQ(appel(&plus.structure), KV_OK);
    EXPECT_EQ(plus.structure.size, sizeof(Structure));
    EXPECT_EQ(std::count(std::begin(plus.suite), std::end(plus.suite), 'x'), 8);
    Structure moins{};
    for (const std::size_t taille : {std::size_t{0}, sizeof moins - 1}) {
        moins.size = taille;
        EXPECT_EQ(appel(&moins), KV_BAD_SIZE);
        EXPECT_EQ(moins.size, taille);
    }
}
TEST(Interface, StructuresCarryTheirSize) {
    ControleTaille<kv_box>([](auto* s) { return kv_box_describe(KV_ENTRY, 0, s); });
    ControleTaille<kv_reduction>([](auto* s) { return kv_reduction_describe(0, s); });
    ControleTaille<kv_parameter>([](auto* s) { return kv_parameter_describe(0, s); });
    const kv::Return r = Celibataire(1).compute();
    ControleTaille<kv_options>([&](auto* s) { return kv_read_options(r.handle(), s); });
}

TEST(Loi, ParametersAreSetByNameOrNumberWithinTheirBounds) {
    kv::Law loi;
    for (int32_t p = 0; p < kv::parameter_count(); ++p) {
        const kv_parameter parametre = kv::describe_parameter(p);
        EXPECT_EQ(kv::find_parameter(parametre.name), p);
        EXPECT_EQ(loi.get(p), parametre.value) << parametre.name;
        loi.set(parametre.name, parametre.maximum);
        EXPECT_EQ(loi.get(p), parametre.maximum) << parametre.name;
        loi.set(p, parametre.minimum + (parametre.decimals > 0 ? 0.01 : 1));
        EXPECT_EQ(loi.get(parametre.name), parametre.decimals > 0 ? 0.01 : 1) << parametre.name;
        for (const double faux : {parametre.minimum - 1, parametre.maximum + 1, 0.001, std::nan(""), HUGE_VAL})
            EXPECT_EQ(kv_law_set_parameter(loi.handle(), p, faux), KV_BAD_VALUE) << parametre.name << ' ' << faux;
    }
    EXPECT_EQ(kv_law_set(loi.handle(), "decote.plafond.coupel", 1), KV_UNKNOWN);
    EXPECT_STREQ(kv_law_message(loi.handle()),
                 "unknown parameter \"decote.plafond.coupel\"; nearest: decote.plafond.couple, decote.plafond.seul");
    EXPECT_EQ(kv_law_set(loi.handle(), "decote.part", 100.5), KV_BAD_VALUE);
    EXPECT_STREQ(kv_law_message(loi.handle()),
                 "decote.part: 100.5 is not a percentage from 0 to 100 with at most two decimals");
    double valeur = -7;
    EXPECT_EQ(kv_law_get(loi.handle(), "decote", &valeur), KV_UNKNOWN);
    for (const int32_t p : {-1, kv::parameter_count()}) {
        EXPECT_EQ(kv_law_get_parameter(loi.handle(), p, &valeur), KV_UNKNOWN);
        EXPECT_EQ(kv_law_set_parameter(loi.handle(), p, 1), KV_UNKNOWN);
        kv_parameter parametre{};
        parametre.size = sizeof parametre;
        EXPECT_EQ(kv_parameter_describe(p, &parametre), KV_UNKNOWN);
    }
    for (kv_law* law : {loi.handle(), static_cast<kv_law*>(nullptr)}) {
        EXPECT_EQ(kv_law_set(law, law ? nullptr : "decote.part", 1), KV_NULL);
        EXPECT_EQ(kv_law_get(law, law ? nullptr : "decote.part", &valeur), KV_NULL);
        EXPECT_EQ(kv_law_get(law, "decote.part", law ? nullptr : &valeur), KV_NULL);
        EXPECT_EQ(kv_law_get_parameter(law, 0, law ? nullptr : &valeur), KV_NULL);
        EXPECT_EQ(kv_law_copy(law, nullptr), KV_NULL);
    }
    EXPECT_EQ(valeur, -7);
    EXPECT_EQ(kv_law_set_parameter(nullptr, 0, 1), KV_NULL);
    EXPECT_EQ(kv_law_check(nullptr), KV_NULL);
    EXPECT_EQ(kv_law_create(nullptr), KV_NULL);
    EXPECT_STREQ(kv_law_message(nullptr), "");
    kv_law_free(nullptr);
}

// 33 333 less 10 %, of which 2 914 at 30 %: 3 293; at 31 %, 3 322.
TEST(Loi, AReturnKeepsTheFiguresOfItsLaw) {
    kv::Return r = Celibataire(33333);
    {
        kv::Law loi;
        const kv::Law annee = loi;
        r.set_law(loi.set("bareme.tranche3.taux", 31));
        loi.set("bareme.tranche3.taux", 45);
        EXPECT_EQ(annee.get("bareme.tranche3.taux"), 30);
    }
    EXPECT_EQ(r.compute()["TOT_IMPOT"], 3322);
    EXPECT_EQ(r.law().get("bareme.tranche3.taux"), 31);
    EXPECT_EQ(kv::Return(r).compute()["TOT_IMPOT"], 3322);
    kv::Law fausse;
    fausse.set("bareme.tranche3.seuil", 9807);
    EXPECT_EQ(kv_law_check(fausse.handle()), KV_BAD_VALUE);
    Refuse(r, kv_set_law(r.handle(), fausse.handle()), KV_BAD_VALUE,
           "bareme.tranche3.seuil is not above bareme.tranche2.seuil");
    EXPECT_EQ(r.compute()["TOT_IMPOT"], 3322);
    EXPECT_EQ(kv_set_law(r.handle(), nullptr), KV_OK);
    EXPECT_EQ(r.compute()["TOT_IMPOT"], 3293);
}

TEST(Retour, EachAmountIsTheSameByNameAndByNumber) {
    kv::Return r;
    int32_t valeur = 0;
    for (int32_t i = 0; i < kv::count(KV_ENTRY); ++i) {
        const kv_box box = kv::describe(KV_ENTRY, i);
        for (const kv_area aire : aires) {
            const std::string nom = debuts[aire] + std::string(box.name);
            if (!Dans(box, aire)) {
                EXPECT_EQ(kv_set(r.handle(), nom.c_str(), 1), KV_NO_AMOUNT) << nom;
                EXPECT_EQ(kv_set_box(r.handle(), aire, i, 1), KV_NO_AMOUNT) << nom;
                EXPECT_EQ(kv_get_box(r.handle(), aire, i, &valeur), KV_NO_AMOUNT) << nom;
                continue;
            }
            r.set(nom, 10 * i + aire);
            EXPECT_EQ(r.get(i, aire), 10 * i + aire) << nom;
            r.set(i, -(10 * i + aire), aire);
        }
        if (box.quotient < 0) {
            EXPECT_EQ(kv_set_exceptional(r.handle(), i, 4, 1), KV_NO_AMOUNT);
            EXPECT_EQ(kv_get_exceptional(r.handle(), i, 4, &valeur), KV_NO_AMOUNT);
            EXPECT_EQ(kv_set(r.handle(), (std::string("quotient.4.") + box.name).c_str(), 1), KV_NO_AMOUNT);
        } else {
            EXPECT_EQ(r.set(std::string("quotient.-3.") + box.name, i).get_exceptional(i, -3), i);
            EXPECT_EQ(r.set_exceptional(i, -3, -i).get(std::string("quotient.-3.") + box.name), -i);
        }
    }
    EXPECT_EQ(valeur, 0);
    // No amount has overwritten another one.
    for (int32_t i = 0; i < kv::count(KV_ENTRY); ++i)
        for (const kv_area aire : aires)
            EXPECT_TRUE(!Dans(kv::describe(KV_ENTRY, i), aire) || r.get(i, aire) == -(10 * i + aire)) << i;
    EXPECT_EQ(r.exceptional().size(), 87u);
    EXPECT_EQ(r.clear().exceptional().size(), 0u);
    EXPECT_EQ(r.get("1AJ"), 0);
}

TEST(Retour, ExceptionalAmountsStandByBoxThenByCoefficient) {
    kv::Return r;
    r.set("quotient.4.1BJ", 40).set("quotient.2.1AJ", 1).set("quotient.-1.1BJ", 10).set("quotient.2.1AJ", 20);
    const auto montants = r.exceptional();
    ASSERT_EQ(montants.size(), 3u);
    EXPECT_EQ(montants[0].amount, 20);
    EXPECT_EQ(montants[1].amount, 10);
    EXPECT_EQ(montants[2].amount, 40);
    int32_t a, b, c;
    Refuse(r, kv_exceptional_at(r.handle(), 3, &a, &b, &c), KV_UNKNOWN, "no exceptional amount has the number 3");
}

TEST(Retour, BadCallsAreStatusesAndChangeNothing) {
    kv::Return r = Celibataire(30000);
    Refuse(r, kv_set(r.handle(), "1AJX", 1), KV_UNKNOWN,
           "unknown entry box 1AJX; nearest: 1AJ (Traitements et salaires)");
    Refuse(r, kv_set(r.handle(), "", 1), KV_UNKNOWN, "unknown entry box");
    Refuse(r, kv_set(r.handle(), "ti.1AJ", 1), KV_NO_AMOUNT, "box 1AJ has no amount in \"ti\"");
    Refuse(r, kv_set(r.handle(), "entries.1AJ", 1), KV_UNKNOWN, "unknown amount entries.1AJ");
    for (const char* nom :
         {"quotient.1AJ", "quotient.04.1AJ", "quotient. 4.1AJ", "quotient.99999999999.1AJ", "quotient."})
        Refuse(r, kv_set(r.handle(), nom, 1), KV_UNKNOWN, "the coefficient is not a 32-bit integer");
    int32_t n = -7;
    Refuse(r, kv_get(r.handle(), "1ZZ", &n), KV_UNKNOWN, "1ZZ");
    for (const int32_t i : {-1, 2128}) {
        Refuse(r, kv_set_box(r.handle(), KV_AREA_ENTRY, i, 1), KV_UNKNOWN, "no entry box has the number ");
        Refuse(r, kv_get_box(r.handle(), KV_AREA_ENTRY, i, &n), KV_UNKNOWN, std::to_string(i));
        Refuse(r, kv_set_exceptional(r.handle(), i, 4, 1), KV_UNKNOWN, std::to_string(i));
        Refuse(r, kv_get_exceptional(r.handle(), i, 4, &n), KV_UNKNOWN, std::to_string(i));
    }
    for (const int32_t i : {-1, 6}) Refuse(r, kv_set_box(r.handle(), i, 0, 1), KV_UNKNOWN, "no area has the number ");
    for (const int32_t i : {-1, 4}) Refuse(r, kv_set_launch(r.handle(), i), KV_UNKNOWN, "no launch has the number ");
    for (const double taux : {std::nan(""), HUGE_VAL, -HUGE_VAL})
        Refuse(r, kv_set_indexation(r.handle(), taux), KV_BAD_VALUE, "indexation");
    for (const int32_t date : {0, 2017, 20170229, 20171301, 20170100, -20170101, std::numeric_limits<int32_t>::max()})
        Refuse(r, kv_set_period(r.handle(), 20170101, date), KV_BAD_VALUE, std::to_string(date) + " is not a date");
    Refuse(r, kv_set_period(r.handle(), 20170702, 20170701), KV_BAD_VALUE, "period ends before it begins");
    Refuse(r, kv_warning(r.handle(), 0, nullptr), KV_NULL, "null");

    // Before any computation there are no results.
    char texte[KV_TEXT];
    kv_options options{};
    kv_return* h = r.handle();
    for (const kv_status s : {kv_read(h, "TOT_PAYER", &n), kv_read_output(h, 0, 0, &n), kv_read_outputs(h, 0, &n, 1),
                              kv_read_carry(h, 0, &n), kv_read_entry(h, 0, &n),
                              kv_read_text(h, 0, texte, sizeof texte, nullptr), kv_read_options(h, &options)})
        Refuse(r, s, KV_NOT_COMPUTED, "not been computed");
    EXPECT_EQ(n, -7);
    EXPECT_EQ(r.get("1AJ"), 30000);
    EXPECT_EQ(r.exceptional().size(), 0u);
    EXPECT_EQ(r.period().last, 20171231);
    EXPECT_EQ(r.compute()["TOT_R_IMPOS"], 27000);

    Refuse(r, kv_read(h, "TOT_PAYRE", &n), KV_UNKNOWN, "unknown figure TOT_PAYRE; nearest: TOT_PAYER");
    for (const char* nom : {"TOT_PAYER.c4", "TOT_PAYER.c0", "F11_6FL.c1", ".c1", "1AJ"})
        Refuse(r, kv_read(h, nom, &n), KV_UNKNOWN, nom);
    for (const int32_t i : {-1, 2288}) {
        Refuse(r, kv_read_output(h, i, 0, &n), KV_UNKNOWN, "no output has the number ");
        Refuse(r, kv_read_text(h, i, texte, sizeof texte, nullptr), KV_UNKNOWN, "no output has the number ");
        Refuse(r, kv_read_carry(h, i, &n), KV_UNKNOWN, "no carry-forward box has the number ");
        Refuse(r, kv_read_entry(h, i, &n), KV_UNKNOWN, "no entry box has the number ");
    }
    for (const int32_t i : {-1, 4}) {
        Refuse(r, kv_read_output(h, 0, i, &n), KV_UNKNOWN, "no column has the number ");
        Refuse(r, kv_read_outputs(h, i, &n, 1), KV_UNKNOWN, "no column has the number ");
    }
    for (const int32_t i : {-1, 2289}) Refuse(r, kv_read_outputs(h, 0, &n, i), KV_UNKNOWN, "no output");
    EXPECT_EQ(n, -7);
}

TEST(Retour, NullPointersAreStatuses) {
    kv::Return r = Celibataire(30000).compute();
    int32_t n = 0;
    double d = 0;
    const char* texte = nullptr;
    kv_return* copie = nullptr;
    for (kv_return* h : {r.handle(), static_cast<kv_return*>(nullptr)}) {
        int32_t* const p = h ? nullptr : &n;  // the return, or everything else
        for (const kv_status s : {kv_set(h, h ? nullptr : "1AJ", 1),
                                  kv_get(h, h ? nullptr : "1AJ", &n),
                                  kv_get(h, "1AJ", p),
                                  kv_get_box(h, 0, 0, p),
                                  kv_get_exceptional(h, 0, 4, p),
                                  kv_exceptional_count(h, p),
                                  kv_exceptional_at(h, 0, p, &n, &n),
                                  kv_exceptional_at(h, 0, &n, p, &n),
                                  kv_exceptional_at(h, 0, &n, &n, p),
                                  kv_get_period(h, p, &n),
                                  kv_get_period(h, &n, p),
                                  kv_get_launch(h, p),
                                  kv_get_indexation(h, h ? nullptr : &d),
                                  kv_get_law(h, nullptr),
                                  kv_check(h, p),
                                  kv_warning(h, 0, h ? nullptr : &texte),
                                  kv_read(h, h ? nullptr : "TOT_PAYER", &n),
                                  kv_read(h, "TOT_PAYER", p),
                                  kv_read_output(h, 0, 0, p),
                                  kv_read_outputs(h, 0, p, 1),
                                  kv_read_text(h, 0, nullptr, 1, nullptr),
                                  kv_read_carry(h, 0, p),
                                  kv_read_entry(h, 0, p),
                                  kv_read_options(h, nullptr),
                                  kv_return_copy(h, h ? nullptr : &copie)})
            EXPECT_EQ(s, KV_NULL);
    }
    for (const kv_status s :
         {kv_set_box(nullptr, 0, 0, 1), kv_set_exceptional(nullptr, 0, 4, 1),
          kv_set_period(nullptr, 20170101, 20171231), kv_set_launch(nullptr, 0), kv_set_indexation(nullptr, 1),
          kv_set_law(nullptr, nullptr), kv_compute(nullptr), kv_return_clear(nullptr), kv_return_create(nullptr)})
        EXPECT_EQ(s, KV_NULL);
    EXPECT_STREQ(kv_message(nullptr), "");
    kv_return_free(nullptr);
}

TEST(Retour, WarningsNameTheirBoxes) {
    kv::Return r;
    EXPECT_TRUE(r.warnings().empty());
    r.set("M", 1).set("C", 1).set("T", 2);
    const auto messages = r.warnings();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0], "M (Mariés) and C (Célibataire): more than one family situation is ticked");
    EXPECT_EQ(messages[1], "T = 2 (Parent isolé): a tick is 0 or 1");
    const char* texte = nullptr;
    Refuse(r, kv_warning(r.handle(), 2, &texte), KV_UNKNOWN, "no warning has the number 2");
}

// A couple with a child: 41 400 + 34 200 taxed; for two parts 22 680 - 11 413 less 1 527 for the child: 9 740, less 66
// % of the gift. Dividends of 3 000: 384 and levies of 516 with the flat tax, 540 more tax and the same levies with the
// scale on 60 % of them.
TEST(Resultats, OfAHouseholdWorkedOutByHand) {
    kv::Return r;
    r.set("M", 1).set("Fm", 1).set("1AJ", 46000).set("1BJ", 38000).set("2DC", 3000).set("7UF", 600).set("AVA", 1);
    r.set("BAR", KV_UNSET).set("ti.5HC", 3).set_launch(KV_LAUNCH_OPTIONS).compute();
    EXPECT_EQ(r["S_NET_A_PAYER"], 10244);
    const kv_options options = r.options();
    EXPECT_EQ(options.compared, 1);
    EXPECT_EQ(options.flat_tax, 10244);
    EXPECT_EQ(options.scale, 10400);
    EXPECT_EQ(options.applied, KV_FLAT_TAX);
    EXPECT_EQ(r["PFU"], 1);
    EXPECT_EQ(r["RN_SAL.c1"], 41400);
    EXPECT_EQ(r.output(kv::find(KV_OUTPUT, "RN_SAL").value(), 2), 34200);
    EXPECT_EQ(r.text("U_DONS_OEUVRES_N"), "66% x 600");
    EXPECT_EQ(r.text("TOT_PAYER"), "");
    EXPECT_EQ(r["F11_6PSS"], 4140);  // 10 % of 41 400
    EXPECT_EQ(r.carry(kv::find(KV_CARRY, "F11_6PSS").value()), 4140);

    // What was set stands, and the computation took it with its totals.
    EXPECT_EQ(r.get("AVA"), 1);
    EXPECT_EQ(r.get("BAR"), KV_UNSET);
    const auto prise = [&](const char* nom) { return r.entry(kv::find(KV_ENTRY, nom).value()); };
    EXPECT_EQ(r.get("8TI"), 0);
    EXPECT_EQ(prise("8TI"), 3);
    EXPECT_EQ(prise("AVA"), 1);
    EXPECT_EQ(prise("PFU"), 0);
    EXPECT_EQ(prise("BAR"), KV_UNSET);
    EXPECT_EQ(r.set_launch(KV_LAUNCH_NORMAL).compute().options().compared, 0);

    char texte[KV_TEXT] = "before";
    std::size_t longueur = 0;
    const int32_t dons = kv::find(KV_OUTPUT, "U_DONS_OEUVRES_N").value();
    EXPECT_EQ(kv_read_text(r.handle(), dons, texte, 9, &longueur), KV_TOO_SMALL);
    EXPECT_EQ(longueur, 9u);
    EXPECT_STREQ(texte, "before");
    EXPECT_EQ(kv_read_text(r.handle(), dons, nullptr, 0, &longueur), KV_TOO_SMALL);
    EXPECT_EQ(kv_read_text(r.handle(), dons, texte, 10, nullptr), KV_OK);
    EXPECT_STREQ(texte, "66% x 600");
}

// Half a year of 40 000: the reference income is that of the period. A married child attached: 5 795, at 2 % of
// indexation 5 911. The options apply only where they are asked for.
TEST(Resultats, FollowTheSettings) {
    kv::Return r = Celibataire(40000);
    EXPECT_EQ(r.compute()["REVENU_REF"], 36000);
    EXPECT_EQ(r.set_period(20170701, 20171231).compute()["REVENU_REF"], 18000);
    kv::Return i = Celibataire(40000);
    for (const auto& [taux, abattement] : {std::pair{-1.0, 5795}, {0.0, 5795}, {2.0, 5911}}) {
        EXPECT_EQ(i.set("M", 1).set("Nm", 1).set_indexation(taux).compute()["ABAT"], abattement) << taux;
        EXPECT_EQ(i.indexation(), taux);
    }
    kv::Return o = Celibataire(60000);
    o.set("2TR", 1000).set("tk.2TR", 1000);
    for (const auto& [lancement, option, credit] : {std::tuple{KV_LAUNCH_NORMAL, 0, 0},
                                                    {KV_LAUNCH_OPTIONS, 0, 0},
                                                    {KV_LAUNCH_FORCED, 1, 128},
                                                    {KV_LAUNCH_FORCED_OPTIONS, 1, 0}}) {
        o.set_launch(lancement).compute();
        EXPECT_EQ(o["PFU"] + o["BAR"], option) << lancement;
        EXPECT_EQ(o["D_CREDIT_PFU2"], credit) << lancement;
        EXPECT_EQ(o.launch(), lancement);
    }
}

// A new resident's ceilings are three times those of the year: a second computation must not read the first one's.
TEST(Resultats, EachComputationIsAFirstOne) {
    kv::Return r = Celibataire(60000);
    r.set("6QW", 1);
    const Figures premiere(r.compute());
    EXPECT_TRUE(Figures(r.compute()) == premiere);
    r.set("1AJ", 90000).set("6RS", 4000).compute();
    EXPECT_FALSE(Figures(r) == premiere);
    EXPECT_TRUE(Figures(r.set("1AJ", 60000).set("6RS", 0).compute()) == premiere);
    // A copy has the results, and goes its own way; they stay those of the last computation.
    kv::Return copie = r;
    EXPECT_TRUE(Figures(copie.set("1AJ", 1)) == premiere);
    EXPECT_EQ(copie.compute()["TOT_R_IMPOS"], 0);
    EXPECT_TRUE(Figures(r) == premiere && r.get("1AJ") == 60000);
    int32_t n = 0;
    EXPECT_EQ(kv_read(copie.clear().handle(), "TOT_PAYER", &n), KV_NOT_COMPUTED);
}

// Handles are independent, the catalogues shared: in a new process the labels are composed by whoever comes first.
TEST(Resultats, TwoThreadsFindWhatOneFinds) {
    const auto calcule = [](int32_t graine) {
        std::vector<int32_t> nets;
        for (int32_t i = 0; i < 40; ++i) {
            kv::Return r;
            r.set("M", i % 2).set("Fm", i % 3).set("1AJ", 1500 * (i + graine)).set("2DC", 100 * i).set("7UF", 10 * i);
            if (i % 5 == 0) r.set("AVA", 1).set_launch(KV_LAUNCH_OPTIONS);
            kv_set(r.handle(), "1ZZ", 1);
            r.compute();
            nets.push_back(r["S_NET_A_PAYER"] - r["S_NET_RESTITUE"]);
            nets.push_back(static_cast<int32_t>(std::strlen(kv::describe(KV_OUTPUT, 7 * i).label)));
        }
        return nets;
    };
    std::vector<int32_t> autres;
    std::thread autre([&] { autres = calcule(20); });
    const auto uns = calcule(3);
    autre.join();
    EXPECT_EQ(uns, calcule(3));
    EXPECT_EQ(autres, calcule(20));
}

TEST(EnCPlusPlus, FailuresAreThrownWithTheirStatus) {
    kv::Return r;
    try {
        r.set("1AJX", 1);
        FAIL();
    } catch (const kv::Error& e) {
        EXPECT_EQ(e.status(), KV_UNKNOWN);
        EXPECT_STREQ(
            e.what(),
            "unknown entry box 1AJX; nearest: 1AJ (Traitements et salaires), 1AJCI (Traitements et salaires, part "
            "exceptionnelle)");
    }
    EXPECT_THROW(kv::describe(KV_ENTRY, -1), kv::Error);
    EXPECT_THROW(r.text("TOT"), kv::Error);
    EXPECT_THROW(kv::Law().set("bareme.tranche3.seuil", 9807).validate(), kv::Error);
}

}  // namespace
