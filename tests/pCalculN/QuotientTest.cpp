#include "tests/Cas.h"

namespace {

using kv::CaseQuotient;

// CGI art. 163-0 A: the tax on an exceptional income is its coefficient times the extra tax of its quotient.
TEST(Quotient, ExceptionalSalary) {
    const struct {
        const char* titre;
        std::int32_t salaire, frais, exceptionnel, imposable, impot;
    } cas[] = {
        // Deduction 5000 shared 1/5, 4/5: 9000 and 36000. Tax 5093; on 36000 + 2250, 5768; 5093 + 4 x 675.
        {"within a bracket", 40000, 0, 9000, 36000, 7793},
        // Deduction 3800, share 1000. Tax on 25200: 2155; on 27450: 2528; 2155 + 4 x 373.
        {"across two brackets", 28000, 0, 9000, 25200, 3647},
        // Actual expenses shared 2500, 10000. Tax on 30000: 3293; on 30000 + 1875: 3856; 3293 + 4 x 563.
        {"actual expenses", 40000, 12500, 7500, 30000, 5545},
        // 12305 on 128000: share 961, 9039 and 106656. Tax on 106656: 30034; on + 2259: 30961; 30034 + 4 x 927.
        {"deduction at its ceiling", 118000, 0, 9039, 106656, 33742},
        // Tax on 2250: 0.
        {"no other income", 0, 0, 9000, 0, 0},
    };
    for (const auto& c : cas) {
        for (const std::int32_t coefficient : {4, 0}) {  // 0 stands for 4
            SCOPED_TRACE(testing::Message() << c.titre << ", " << coefficient);
            const auto r = Retour{{"1AJ", c.salaire}, {"1AK", c.frais}}.Quotient("1AJ", coefficient, 10000).Calcule();
            EXPECT_EQ(r["RQ_REV_EXCEP"], c.exceptionnel);
            EXPECT_EQ(r["RQ_REV_QN_AUTRE"], 0);  // the only category
            EXPECT_EQ(r["TOT_R_BRUT"], c.imposable + c.exceptionnel);
            EXPECT_EQ(r["TOT_R_IMPOS"], c.imposable);
            EXPECT_EQ(r["TOT_IMPOT"], c.impot);
            EXPECT_EQ(r["REVENU_REF"], c.imposable + c.exceptionnel / 4);
            EXPECT_EQ(r["REV_REF_C"], c.imposable + c.exceptionnel);
            EXPECT_EQ(r.E("1AJ"), c.salaire);
        }
    }
}

TEST(Quotient, SeveralCoefficientsAndPersons) {
    // Deduction 5500, shares 1000 and 500; quotients 9000 / 4 + 4500 / 2 = 4500. Tax on 36000: 5093; on 40500: 6443.
    // Half of the 1350 to each: 5093 + 4 x 675 + 2 x 675.
    const auto deux = Retour{{"1AJ", 40000}}.Quotient("1AJ", 4, 10000).Quotient("1AJ", 2, 5000).Calcule();
    EXPECT_EQ(deux["RQ_REV_EXCEP"], 13500);
    EXPECT_EQ(deux["TOT_IMPOT"], 9143);
    EXPECT_EQ(deux["REVENU_REF"], 40500);

    // Each declarant's own deduction: 9000 and 4500, 36000 and 18000. Tax on 54000: 4814 (7560 - 2745.96); on
    // 54000 + 3375: 5799 (17212.50 - 11413.48); 4814 + 4 x 985.
    const auto couple =
        Retour{{"M", 1}, {"1AJ", 40000}, {"1BJ", 20000}}.Quotient("1AJ", 4, 10000).Quotient("1BJ", 4, 5000).Calcule();
    EXPECT_EQ(couple["RQ_REV_EXCEP"], 13500);
    EXPECT_EQ(couple["TOT_IMPOT"], 8754);

    // Expenses of 20000 for 5000 + 5000: nothing exceptional is left.
    const auto deficit = Retour{{"1AJ", 5000}, {"1AK", 20000}, {"2TR", 50000}}.Quotient("1AJ", 4, 5000).Calcule();
    EXPECT_EQ(deficit["RQ_REV_EXCEP"], 0);
    EXPECT_EQ(deficit["TOT_R_IMPOS"], 40000);

    // A dependant's salary at the minimum deduction of 430 on 2000: share 215.
    const auto enfant = Retour{{"1DJ", 1000}, {"2TR", 5000}}.Quotient("1DJ", 4, 1000).Calcule();
    EXPECT_EQ(enfant["RQ_REV_EXCEP"], 785);
    EXPECT_EQ(enfant["TOT_R_IMPOS"], 5785);

    // The share counts all that bears the deduction: 10000 of 40000 for 4000, 10000 of 37000 for 3700.
    const struct {
        CaseQuotient exceptionnel;
        CaseEntree ordinaire;
        std::int32_t autre;
        std::vector<CaseEntree> autres;
    } assiettes[] = {
        {"1AJ", "1AJ", 10000, {"1AP", "1AF", "1GB"}},
        {"1BJ", "1BJ", 10000, {"1BP", "1BF", "1HB"}},
        {"1CJ", "1CJ", 10000, {"1DJ", "1EP", "1CF", "1DF", "1EF", "1FF", "1LB", "1FJA", "1FPD"}},
        {"1AS", "1AS", 7000, {"1AZ", "1AO", "1AL"}},
        {"1BS", "1BS", 7000, {"1BZ", "1BO", "1BL"}},
        {"1CS", "1CS", 7000, {"1DS", "1EO", "1CL", "1DL", "1EL", "1FL", "1FSA", "1FOB", "1FZD"}},
    };
    for (const auto& a : assiettes) {
        for (const CaseEntree box : a.autres) {
            Retour retour{{a.ordinaire, 20000}, {box, a.autre}};
            EXPECT_EQ(retour.Quotient(a.exceptionnel, 4, 10000).Calcule()["RQ_REV_EXCEP"], 9000)
                << kv::entree::lignes[box.numero].nom;
        }
    }
}

// Deferred pensions and property income come in under boxes of their own; the reference income counts them whole.
TEST(Quotient, PensionsAndProperty) {
    const struct {
        CaseQuotient box;
        CaseEntree ordinaire;
        std::int32_t reference;
    } pensions[] = {{"AAQ", "1AS", 27000}, {"BAQ", "1BS", 27000}, {"1AS", "1AS", 20250}, {"1BZ", "1BS", 20250}};
    for (const auto& p : pensions) {
        SCOPED_TRACE(p.box.numero);
        Retour retour{{"M", 1}};
        retour.Data().Entree[p.ordinaire] = 20000;
        const auto r = retour.Quotient(p.box, 4, 10000).Calcule();  // allowance 3000, a third of it
        EXPECT_EQ(r["RN_PEN_DECL"], 30000);
        EXPECT_EQ(r["RQ_REV_EXCEP"], 9000);
        EXPECT_EQ(r["TOT_R_IMPOS"], 18000);
        EXPECT_EQ(r["REVENU_REF"], p.reference);
    }
    const struct {
        CaseQuotient box;
        std::int32_t reference;
    } foncier[] = {{"RAQ", 18000}, {"4BA", 12000}};
    for (const auto& f : foncier) {
        const auto r = Retour{{"4BA", 10000}}.Quotient(f.box, 4, 8000).Calcule();
        EXPECT_EQ(r["RD_FON"], 18000);
        EXPECT_EQ(r["RQ_REV_EXCEP"], 8000);
        EXPECT_EQ(r["REVENU_REF"], f.reference);
    }
}

// Exceptional dividends bear their share of the allowance, of the expenses and of the earlier deficits.
TEST(Quotient, InvestmentIncome) {
    // clang-format off
    Cas cas[] = {
        {"allowance", Retour{{"2DC", 2000}}.Quotient("2DC", 4, 1000), {{"RQ_REV_EXCEP", 600}, {"TOT_R_IMPOS", 1200}}},
        {"expenses x 600 / 1800", Retour{{"2DC", 2000}, {"2CA", 300}}.Quotient("2DC", 4, 1000),
         {{"RQ_REV_EXCEP", 500}, {"TOT_R_IMPOS", 1000}}},
        {"deficits x 500 / 1500", Retour{{"2DC", 2000}, {"2CA", 300}, {"2AR", 150}}.Quotient("2DC", 4, 1000),
         {{"RQ_REV_EXCEP", 450}, {"TOT_R_IMPOS", 900}}},
        // 4400 + 100 - 1200 - 1000 = 2300 in all.
        {"deficits x 600 / 2300",
         Retour{{"2DC", 2000}, {"2GO", 400}, {"2CH", 1000}, {"2AR", 190}}.Quotient("2DC", 4, 1000),
         {{"RQ_REV_EXCEP", 550}, {"TOT_R_IMPOS", 1560}}},
        {"interest and insurance", Retour{{"2TR", 400}}.Quotient("2TR", 4, 600).Quotient("2TS", 4, 50),
         {{"RQ_REV_EXCEP", 650}, {"TOT_R_IMPOS", 400}}},
    };
    // clang-format on
    VerifieCas(cas);
    EXPECT_EQ((Retour{{"BAR", 1}}.Quotient("2DC", 4, 1000).CalculeOptions()["RQ_REV_EXCEP"]), 600);
    EXPECT_EQ((Retour{{"PFU", 1}}.Quotient("2DC", 4, 1000).CalculeOptions()["RQ_REV_EXCEP"]), 1000);
}

// Business profits without an approved centre count for 125 %, rounded once for furnished letting (253, not 252).
TEST(Quotient, BusinessIncomeForEachPerson) {
    const struct {
        CaseQuotient box[3];
        std::int32_t montant;
    } montants[] = {
        {{"5HC", "5IC", "5JC"}, 4000}, {{"5HI", "5II", "5JI"}, 4000}, {{"5KC", "5LC", "5MC"}, 2000},
        {{"5KI", "5LI", "5MI"}, 1000}, {{"5NC", "5OC", "5PC"}, 800},  {{"5NI", "5OI", "5PI"}, 400},
        {{"5NA", "5OA", "5PA"}, 300},  {{"5NM", "5OM", "5PM"}, 100},  {{"5NK", "5OK", "5PK"}, 101},
        {{"5KM", "5LM", "5MM"}, 101},  {{"5QC", "5RC", "5SC"}, 600},  {{"5QI", "5RI", "5SI"}, 200},
        {{"5JG", "5RF", "5SF"}, 300},  {{"5SN", "5NS", "5OS"}, 200},
    };
    const Attendu attendus[] = {
        {"RQ_REV_QN_BA", 9000},   {"RQ_REV_QN_BIC_P", 3250}, {"RQ_REV_QN_BIC_NP", 800 + 500 + 400 + 253},
        {"RQ_REV_QN_BNC_P", 850}, {"RQ_REV_QN_BNC_NP", 550}, {"RQ_REV_QN_AUTRE", 1600},
        {"RQ_REV_EXCEP", 17203},  {"TOT_R_BRUT", 17203},     {"TOT_R_IMPOS", 0},
    };
    for (std::size_t k = 0; k < 3; ++k) {
        SCOPED_TRACE(k);
        Retour retour;
        for (const auto& m : montants) retour.Quotient(m.box[k], 4, m.montant);
        retour.Quotient("4BA", 4, 1500).Quotient("3VG", 4, 70).Quotient("3UA", 4, 30);
        test::Verifie(retour.Calcule(), attendus);
    }
}

// What an exceptional income changes, whatever the box it is entered for.
TEST(Quotient, EveryBox) {
    const auto menage = [] {
        return Retour{{"M", 1},      {"Fm", 1},     {"1AJ", 30000}, {"1BJ", 20000}, {"1CJ", 9000}, {"1AS", 8000},
                      {"1BO", 5000}, {"2DC", 3000}, {"2TS", 200},   {"2TR", 700},   {"2CA", 90},   {"4BA", 5000},
                      {"5HC", 4000}, {"5II", 900},  {"5NK", 600},   {"5SC", 2500},  {"5SN", 300},  {"6DE", 800}};
    };
    const auto neutre = menage().Calcule();
    for (std::size_t k = 0; k < kv::casesMarquees<kv::entree::Quotient>.size(); ++k) {
        const CaseEntree box = kv::casesMarquees<kv::entree::Quotient>[k];
        SCOPED_TRACE(kv::entree::lignes[box.numero].nom);
        const auto quotient = [&](std::int32_t coefficient, std::int32_t montant) {
            return menage().Quotient(CaseQuotient::Numero(static_cast<int>(k)), coefficient, montant).Calcule();
        };
        EXPECT_TRUE(test::MemesSorties(quotient(4, 0).Data(), neutre.Data()));

        Retour retour = menage();
        retour.Data().Entree[box == "AAQ"   ? CaseEntree("1AS")
                             : box == "BAQ" ? CaseEntree("1BS")
                             : box == "RAQ" ? CaseEntree("4BA")
                                            : box] += 7000;
        const auto ordinaire = retour.Calcule();
        const auto entier = quotient(1, 7000);
        EXPECT_EQ(entier["TOT_R_BRUT"], ordinaire["TOT_R_BRUT"]);
        EXPECT_NEAR(entier["TOT_IMPOT"], ordinaire["TOT_IMPOT"], 2);

        // The scale is progressive: the quotient lowers the tax, to the rounding of each share.
        const auto quart = quotient(4, 7000);
        EXPECT_EQ(quart["TOT_R_IMPOS"] + quart["RQ_REV_EXCEP"], ordinaire["TOT_R_IMPOS"]);
        EXPECT_LE(quart["TOT_IMPOT"], ordinaire["TOT_IMPOT"] + 4);
        EXPECT_GT(quart["TOT_IMPOT"], neutre["TOT_IMPOT"]);
    }
}

}  // namespace
