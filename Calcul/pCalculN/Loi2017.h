#pragma once

#include "Calcul/pCalculN/LigneLoi.h"

// The law of 2017: every amount, rate, ceiling, share and age that a rule compares or multiplies with, once.
//
// A rule of law is one row: lines of the return that follow the same rule read the same row, and equal figures of
// different rules stay apart. What follows from a row is no row: the constants of the scale, what a couple has twice,
// half of an amount for a child in alternating residence, the rest to 100 %. Rows ".annee" and ".suivante" are the two
// figures of a rule whose rate of the following year applies in some launches.
//
// What stays in the tables of the families: which boxes a line reads, their order, the years that choose a box of next
// year's return, the number of years of a spread reduction, lines imputed at 100 %.

namespace kv {

/// The year whose income is taxed.
inline constexpr std::int32_t anneeDesRevenus = 2017;

// clang-format off
inline constexpr LigneLoi lignesLoi[] = {
    // ---- The progressive scale: what exceeds a threshold, per part, bears the rate of its bracket.
    Pourcent("bareme.tranche1.taux", 0, "CGI art. 197 I-1"),
    Euros("bareme.tranche2.seuil", 9807, "CGI art. 197 I-1"),
    Pourcent("bareme.tranche2.taux", 14, "CGI art. 197 I-1"),
    Euros("bareme.tranche3.seuil", 27086, "CGI art. 197 I-1"),
    Pourcent("bareme.tranche3.taux", 30, "CGI art. 197 I-1"),
    Euros("bareme.tranche4.seuil", 72617, "CGI art. 197 I-1"),
    Pourcent("bareme.tranche4.taux", 41, "CGI art. 197 I-1"),
    Euros("bareme.tranche5.seuil", 153783, "CGI art. 197 I-1"),
    Pourcent("bareme.tranche5.taux", 45, "CGI art. 197 I-1"),

    // ---- Household parts beyond those of the declarants; half of them for a child in alternating residence.
    Nombre("parts.enfant", 0.5, "CGI art. 194 I"),
    Nombre("parts.enfantMajore", 1, "CGI art. 194 I"),
    Nombre("parts.rangMajore", 3, "CGI art. 194 I"),
    Nombre("parts.veufAvecCharges", 1, "CGI art. 194 I"),
    Nombre("parts.parentIsole", 0.5, "CGI art. 194 II"),
    Nombre("parts.seul", 0.5, "CGI art. 195-1"),
    Nombre("parts.ancienCombattant", 0.5, "CGI art. 195"),
    Nombre("parts.invalide", 0.5, "CGI art. 195"),
    Nombre("parts.enfantInvalide", 0.5, "CGI art. 195-2"),

    // ---- The cap on what the parts beyond the base parts save.
    Indexe("quotientFamilial.plafond.demiPart", 1527, "CGI art. 197 I-2"),
    Indexe("quotientFamilial.plafond.demiPartMajoree", 3050, "CGI art. 197 I-2"),
    Indexe("quotientFamilial.plafond.parentIsole", 3602, "CGI art. 197 I-2"),
    Indexe("quotientFamilial.plafond.seul", 912, "CGI art. 197 I-2"),
    Indexe("quotientFamilial.veuf", 1701, "CGI art. 197 I-2"),

    // ---- The low-tax relief: a ceiling less a part of the tax. The reduction for modest incomes.
    Indexe("decote.plafond.seul", 1177, "CGI art. 197 I-4 a"),
    Indexe("decote.plafond.couple", 1939, "CGI art. 197 I-4 a"),
    Pourcent("decote.part", 75, "CGI art. 197 I-4 a"),
    Pourcent("revenusModestes.taux", 20, "CGI art. 197 I-4 b"),
    Indexe("revenusModestes.plafondPlein", 18685, "CGI art. 197 I-4 b"),
    Indexe("revenusModestes.plafond", 20705, "CGI art. 197 I-4 b"),
    Indexe("revenusModestes.parPart", 7474, "CGI art. 197 I-4 b"),
    Indexe("revenusModestes.degression", 2020, "CGI art. 197 I-4 b"),

    // ---- Salaries, pensions, annuities.
    Pourcent("salaires.deduction.taux", 10, "CGI art. 83-3°"),
    Indexe("salaires.deduction.plancher", 430, "CGI art. 83-3°"),
    Indexe("salaires.deduction.plancherMajore", 947, "CGI art. 83-3°"),
    Indexe("salaires.deduction.plafond", 12305, "CGI art. 83-3°"),
    Pourcent("pensions.abattement.taux", 10, "CGI art. 158-5 a"),
    Indexe("pensions.abattement.plancher", 383, "CGI art. 158-5 a"),
    Indexe("pensions.abattement.plafond", 3752, "CGI art. 158-5 a"),
    Pourcent("pensions.capital.abattement", 10, "CGI art. 163 bis II"),
    Pourcent("pensions.capital.taux", 7.5, "CGI art. 163 bis II"),
    Pourcent("rentes.moinsDe50ans", 70, "CGI art. 158-6"),
    Pourcent("rentes.de50a59ans", 50, "CGI art. 158-6"),
    Pourcent("rentes.de60a69ans", 40, "CGI art. 158-6"),
    Pourcent("rentes.plusDe69ans", 30, "CGI art. 158-6"),

    // ---- Capital and property income.
    Pourcent("mobiliers.dividendes.abattement", 40, "CGI art. 158-3"),
    Pourcent("mobiliers.majoration", 25, "CGI art. 158-7"),
    Pourcent("mobiliers.2FA.taux", 24),
    Pourcent("mobiliers.2EE.taux", 15),
    Euros("assuranceVie.abattement", 4600, "CGI art. 125-0 A"),
    Pourcent("assuranceVie.taux", 7.5, "CGI art. 125-0 A"),
    Pourcent("pfu.taux", 12.8, "CGI art. 200 A"),
    Pourcent("pfu.assuranceVie.taux", 7.5, "CGI art. 200 A"),
    Pourcent("foncier.micro.abattement", 30, "CGI art. 32"),

    // ---- Business income.
    Pourcent("micro.agricole.abattement", 87, "CGI art. 64 bis"),
    Pourcent("micro.ventes.abattement", 71, "CGI art. 50-0"),
    Pourcent("micro.services.abattement", 50, "CGI art. 50-0"),
    Pourcent("micro.nonCommercial.abattement", 34, "CGI art. 102 ter"),
    Euros("micro.abattement.plancher", 305, "CGI art. 50-0, 64 bis, 102 ter"),
    Pourcent("benefices.sansCentre.majoration", 25, "CGI art. 158-7"),
    Indexe("deficits.agricoles.plafond", 108904, "CGI art. 156 I-1°"),
    Pourcent("autoEntrepreneur.ventes.taux", 1, "CGI art. 151-0"),
    Pourcent("autoEntrepreneur.services.taux", 1.7, "CGI art. 151-0"),
    Pourcent("autoEntrepreneur.nonCommercial.taux", 2.2, "CGI art. 151-0"),

    // ---- Charges and allowances.
    Pourcent("charges.pensions.majoration", 25, "CGI art. 158-7"),
    Indexe("charges.accueil.plafond", 3445, "CGI art. 156 II-2° ter"),
    Euros("charges.grossesReparations.plafond", 25000, "CGI art. 156 II-2° quater"),
    Pourcent("csg.capital.deductible.annee", 5.1, "CGI art. 154 quinquies II"),
    Pourcent("csg.capital.deductible.suivante", 6.8, "CGI art. 154 quinquies II"),
    Indexe("abattements.enfantMarie", 5795, "CGI art. 196 B"),
    Annees("abattements.personnesAgees.age", 65, "CGI art. 157 bis"),
    Indexe("abattements.personnesAgees.revenuPlein", 14900, "CGI art. 157 bis"),
    Indexe("abattements.personnesAgees.revenu", 24000, "CGI art. 157 bis"),
    Indexe("abattements.personnesAgees.montantPlein", 2376, "CGI art. 157 bis"),
    Indexe("abattements.personnesAgees.montant", 1188, "CGI art. 157 bis"),

    // ---- Retirement savings: a part of the professional income, between one and several social-security ceilings.
    Pourcent("epargneRetraite.taux", 10, "CGI art. 163 quatervicies"),
    Nombre("epargneRetraite.plafonds", 8, "CGI art. 163 quatervicies"),
    Nombre("epargneRetraite.nouveauResident", 4, "CGI art. 163 quatervicies"),
    Euros("plafondSecuriteSociale.annee", 39228, "CSS art. L241-3"),
    Euros("plafondSecuriteSociale.suivante", 39732, "CSS art. L241-3"),

    // ---- Non-residents: the minimum rate of the tax, that of overseas income, and what is not collected.
    Pourcent("nonResidents.tauxMinimum", 20, "CGI art. 197 A"),
    Pourcent("nonResidents.tauxMinimumOutremer", 14.4, "CGI art. 197 A"),
    Euros("nonResidents.recouvrement", 305),

    // ---- Overseas residents: the abatement on the tax.
    Pourcent("outremer.antillesReunion.taux", 30, "CGI art. 197 I-3"),
    Euros("outremer.antillesReunion.plafond", 5100, "CGI art. 197 I-3"),
    Pourcent("outremer.guyaneMayotte.taux", 40, "CGI art. 197 I-3"),
    Euros("outremer.guyaneMayotte.plafond", 6700, "CGI art. 197 I-3"),

    // ---- Taxes at proportional rates, by the output that bears them.
    Pourcent("corrections.CO_TNS.taux", 12.8, "CGI art. 39 quindecies"),
    Pourcent("corrections.CO_18.taux", 18),
    Pourcent("corrections.CO_19.taux", 19),
    Pourcent("corrections.CO_22_5.taux", 22.5),
    Pourcent("corrections.CO_24.taux", 24),
    Pourcent("corrections.CO_30.taux", 30),
    Pourcent("corrections.CO_41.taux", 41),
    Pourcent("corrections.CO_50.taux", 50),
    Euros("agentsAssurance.tranche1.seuil", 23000, "CGI art. 151 septies A"),
    Pourcent("agentsAssurance.tranche1.taux", 2, "CGI art. 151 septies A"),
    Euros("agentsAssurance.tranche2.seuil", 107000, "CGI art. 151 septies A"),
    Pourcent("agentsAssurance.tranche2.taux", 0.6, "CGI art. 151 septies A"),
    Euros("agentsAssurance.tranche3.seuil", 200000, "CGI art. 151 septies A"),
    Pourcent("agentsAssurance.tranche3.taux", 2.6, "CGI art. 151 septies A"),

    // ---- The contribution on high incomes; an exceptional year is smoothed.
    Euros("hautsRevenus.tranche1.seuil", 250000, "CGI art. 223 sexies I"),
    Pourcent("hautsRevenus.tranche1.taux", 3, "CGI art. 223 sexies I"),
    Euros("hautsRevenus.tranche2.seuil", 500000, "CGI art. 223 sexies I"),
    Pourcent("hautsRevenus.tranche2.taux", 4, "CGI art. 223 sexies I"),
    Nombre("hautsRevenus.lissage.seuil", 1.5, "CGI art. 223 sexies II"),
    Nombre("hautsRevenus.lissage.coefficient", 2, "CGI art. 223 sexies II"),

    // ---- Social levies on property and capital income.
    Pourcent("prelevementsSociaux.csg", 9.9, "CSS art. L136-8"),
    Pourcent("prelevementsSociaux.csgAnterieure", 8.2, "CSS art. L136-8"),
    Pourcent("prelevementsSociaux.prelevements", 6.8),
    Pourcent("prelevementsSociaux.crds", 0.5, "Ordonnance 96-50 art. 19"),
    Pourcent("prelevementsSociaux.deductible", 6.8, "CGI art. 154 quinquies II"),

    // ---- CSG on income that bore none at source, and its deductible part.
    Pourcent("csg.activite.annee", 7.5, "CSS art. L136-8"),
    Pourcent("csg.activite.suivante", 9.2, "CSS art. L136-8"),
    Pourcent("csg.activite.deductible.annee", 5.1, "CGI art. 154 quinquies I"),
    Pourcent("csg.activite.deductible.suivante", 6.8, "CGI art. 154 quinquies I"),
    Pourcent("csg.8PH", 9.2, "CSS art. L136-8"),
    Pourcent("csg.8PH.deductible", 6.8, "CGI art. 154 quinquies I"),
    Pourcent("csg.pensions.annee", 6.6, "CSS art. L136-8"),
    Pourcent("csg.pensions.suivante", 8.3, "CSS art. L136-8"),
    Pourcent("csg.pensions.deductible.annee", 4.2, "CGI art. 154 quinquies I"),
    Pourcent("csg.pensions.deductible.suivante", 5.9, "CGI art. 154 quinquies I"),
    Pourcent("csg.remplacement", 6.2, "CSS art. L136-8"),
    Pourcent("csg.remplacement.deductible", 3.8, "CGI art. 154 quinquies I"),
    Pourcent("csg.tauxReduit", 3.8, "CSS art. L136-8"),
    Pourcent("csg.tauxReduit.deductible", 3.8, "CGI art. 154 quinquies I"),
    Pourcent("casa", 0.3, "CASF art. L14-10-4"),
    Pourcent("gainsSalaries.contribution", 10, "CSS art. L137-14"),
    Pourcent("carriedInterest.contribution", 30, "CSS art. L137-18"),

    // ---- Withholding: below this reference income per part, a household whose return is not taxed is told of its rate.
    Indexe("prelevementSource.revenuModeste", 25000),

    // ---- Collection and refund.
    Euros("recouvrement.impot", 61, "CGI art. 1657-1 bis"),
    Euros("recouvrement.solde", 12, "CGI art. 1657"),
    Euros("recouvrement.prelevementsSociaux", 61, "CGI art. 1657-1 bis"),
    Euros("restitution.minimum", 8, "CGI art. 1965 L"),

    // ---- The global cap on tax advantages, by the year whose rules they follow.
    Euros("niches.2013.plafond", 10000, "CGI art. 200-0 A"),
    Euros("niches.2013.plafondMajore", 18000, "CGI art. 200-0 A"),
    Euros("niches.2012.plafond", 18000, "CGI art. 200-0 A"),
    Pourcent("niches.2012.taux", 4, "CGI art. 200-0 A"),
    Euros("niches.2011.plafond", 18000, "CGI art. 200-0 A"),
    Pourcent("niches.2011.taux", 6, "CGI art. 200-0 A"),
    Euros("niches.2010.plafond", 20000, "CGI art. 200-0 A"),
    Pourcent("niches.2010.taux", 8, "CGI art. 200-0 A"),
    Euros("niches.2009.plafond", 25000, "CGI art. 200-0 A"),
    Pourcent("niches.2009.taux", 10, "CGI art. 200-0 A"),

    // ---- Reductions, by the box of their main line. First those imputed first.
    Pourcent("reductions.7UL.taux", 76, "CGI art. 199 decies H"),
    Euros("reductions.7UL.plafond", 6250, "CGI art. 199 decies H"),
    Pourcent("reductions.7UD.taux", 75, "CGI art. 200-1 ter"),
    Euros("reductions.7UD.plafond.annee", 531, "CGI art. 200-1 ter"),
    Euros("reductions.7UD.plafond.suivante", 536, "CGI art. 200-1 ter"),
    Pourcent("reductions.7UM.taux", 50, "CGI art. 199 vicies A"),
    Euros("reductions.7UM.plafond", 5000, "CGI art. 199 vicies A"),
    Pourcent("reductions.7MY.taux", 50, "CGI art. 199 terdecies-0 C"),
    Pourcent("reductions.7MX.taux", 30, "CGI art. 199 terdecies-0 C"),
    Euros("reductions.7MY.plafond", 5000, "CGI art. 199 terdecies-0 C"),
    Pourcent("reductions.7UC.taux", 50, "CGI art. 200 decies A"),
    Euros("reductions.7UC.plafond", 1000, "CGI art. 200 decies A"),
    Pourcent("reductions.7EN.taux", 48, "CGI art. 199 unvicies"),
    Pourcent("reductions.7GN.taux", 36, "CGI art. 199 unvicies"),
    Pourcent("reductions.7FN.taux", 30, "CGI art. 199 unvicies"),
    Euros("reductions.7EN.plafond", 18000, "CGI art. 199 unvicies"),
    Pourcent("reductions.7EN.plafondRevenu", 25, "CGI art. 199 unvicies"),
    Pourcent("reductions.7FL.taux", 38, "CGI art. 199 terdecies-0 A"),
    Euros("reductions.7FL.plafond", 12000, "CGI art. 199 terdecies-0 A"),
    Pourcent("reductions.7FM.taux", 38, "CGI art. 199 terdecies-0 A"),
    Euros("reductions.7FM.plafond", 12000, "CGI art. 199 terdecies-0 A"),
    Pourcent("reductions.7FH.taux", 25, "CGI art. 199 terdecies-0 B"),
    Euros("reductions.7FH.plafond", 20000, "CGI art. 199 terdecies-0 B"),
    Pourcent("reductions.7WN.taux", 25, "CGI art. 199 octodecies"),
    Euros("reductions.7WN.plafond", 30500, "CGI art. 199 octodecies"),
    Pourcent("reductions.7CD.taux", 25, "CGI art. 199 quindecies"),
    Euros("reductions.7CD.plafond", 10000, "CGI art. 199 quindecies"),
    Pourcent("reductions.7GZ.taux", 25, "CGI art. 199 septies"),
    Euros("reductions.7GZ.plafond", 1525, "CGI art. 199 septies"),
    Euros("reductions.7GZ.parEnfant", 300, "CGI art. 199 septies"),
    Pourcent("reductions.7GQ.taux", 18, "CGI art. 199 terdecies-0 A"),
    Euros("reductions.7GQ.plafond", 12000, "CGI art. 199 terdecies-0 A"),
    Pourcent("reductions.7FQ.taux", 18, "CGI art. 199 terdecies-0 A"),
    Euros("reductions.7FQ.plafond", 12000, "CGI art. 199 terdecies-0 A"),
    Pourcent("reductions.7NZ.taux", 18, "CGI art. 199 duovicies"),
    Euros("reductions.7NZ.plafond", 20000, "CGI art. 199 duovicies"),

    // Accounting expenses, children in education by level, donations.
    Euros("reductions.7FF.plafond", 915, "CGI art. 199 quater B"),
    Euros("reductions.7EA.montant", 61, "CGI art. 199 quater F"),
    Euros("reductions.7EC.montant", 153, "CGI art. 199 quater F"),
    Euros("reductions.7EF.montant", 183, "CGI art. 199 quater F"),
    Pourcent("reductions.7UF.taux", 66, "CGI art. 200"),
    Pourcent("reductions.7UF.plafondRevenu", 20, "CGI art. 200"),
    Euros("reductions.7UH.plafond", 15000, "CGI art. 200"),

    // Subscriptions to the capital of small companies, before 2012 and since.
    Pourcent("reductions.7CF.taux", 18, "CGI art. 199 terdecies-0 A"),
    Euros("reductions.7CF.plafond", 50000, "CGI art. 199 terdecies-0 A"),
    Euros("reductions.7CL.plafond", 20000, "CGI art. 199 terdecies-0 A"),

    // Forests bought; works, by the year whose rules they follow.
    Pourcent("reductions.7UN.taux", 18, "CGI art. 199 decies H"),
    Euros("reductions.7UN.plafond", 5700, "CGI art. 199 decies H"),
    Pourcent("reductions.7TE.taux", 25, "CGI art. 199 decies H"),
    Pourcent("reductions.7TF.taux", 25, "CGI art. 199 decies H"),
    Pourcent("reductions.7TG.taux", 22, "CGI art. 199 decies H"),
    Pourcent("reductions.7TH.taux", 18, "CGI art. 199 decies H"),
    Pourcent("reductions.7TI.taux", 18, "CGI art. 199 decies H"),

    // Tourist residences: new ones in rural zones, works.
    Pourcent("reductions.7XN.taux", 25, "CGI art. 199 decies E"),
    Pourcent("reductions.7UY.taux", 25, "CGI art. 199 decies E"),
    Pourcent("reductions.7XV.taux", 20, "CGI art. 199 decies E"),
    Pourcent("reductions.7UZ.taux", 20, "CGI art. 199 decies E"),
    Euros("reductions.7XN.plafond", 50000, "CGI art. 199 decies E"),
    Pourcent("reductions.7XX.taux", 20),
    Euros("reductions.7XX.plafond", 22000),

    // Rental investments at intermediate rents: a first scheme, then for nine or six years.
    Euros("reductions.locatifIntermediaire.plafond", 300000, "CGI art. 199 novovicies"),
    Pourcent("reductions.7EL.taux", 29, "CGI art. 199 novovicies"),
    Pourcent("reductions.7EK.taux", 18, "CGI art. 199 novovicies"),
    Pourcent("reductions.7QP.taux", 29, "CGI art. 199 novovicies"),
    Pourcent("reductions.7QO.taux", 23, "CGI art. 199 novovicies"),
    Pourcent("reductions.7QN.taux", 18, "CGI art. 199 novovicies"),
    Pourcent("reductions.7QM.taux", 12, "CGI art. 199 novovicies"),

    // New rental housing, by the year whose rules the investment follows: 2009, 2010, 2011, 2012.
    Euros("reductions.locatifNeuf.plafond", 300000, "CGI art. 199 septvicies"),
    Pourcent("reductions.7HS.taux", 40, "CGI art. 199 septvicies"),
    Pourcent("reductions.7HR.taux", 25, "CGI art. 199 septvicies"),
    Pourcent("reductions.7HW.taux", 40, "CGI art. 199 septvicies"),
    Pourcent("reductions.7HV.taux", 25, "CGI art. 199 septvicies"),
    Pourcent("reductions.7ZB.taux", 6, "CGI art. 199 septvicies"),
    Pourcent("reductions.7NM.taux", 40, "CGI art. 199 septvicies"),
    Pourcent("reductions.7NO.taux", 36, "CGI art. 199 septvicies"),
    Pourcent("reductions.7NC.taux", 25, "CGI art. 199 septvicies"),
    Pourcent("reductions.7NA.taux", 22, "CGI art. 199 septvicies"),
    Pourcent("reductions.7NI.taux", 15, "CGI art. 199 septvicies"),
    Pourcent("reductions.7NF.taux", 13, "CGI art. 199 septvicies"),
    Pourcent("reductions.7ZC.taux", 6, "CGI art. 199 septvicies"),
    Pourcent("reductions.7ZA.taux", 5, "CGI art. 199 septvicies"),
    Pourcent("reductions.7JM.taux", 36, "CGI art. 199 septvicies"),
    Pourcent("reductions.7JN.taux", 24, "CGI art. 199 septvicies"),
    Pourcent("reductions.7JD.taux", 22, "CGI art. 199 septvicies"),
    Pourcent("reductions.7JA.taux", 13, "CGI art. 199 septvicies"),
    Pourcent("reductions.7JF.taux", 6, "CGI art. 199 septvicies"),
    Pourcent("reductions.7ZK.taux", 5, "CGI art. 199 septvicies"),
    Pourcent("reductions.7ZI.taux", 4, "CGI art. 199 septvicies"),

    // Furnished letting, by the year whose rules the investment follows.
    Euros("reductions.meuble.plafond", 300000, "CGI art. 199 sexvicies"),
    Pourcent("reductions.7IR.taux", 25, "CGI art. 199 sexvicies"),
    Pourcent("reductions.7IP.taux", 25, "CGI art. 199 sexvicies"),
    Pourcent("reductions.7IJ.taux", 18, "CGI art. 199 sexvicies"),
    Pourcent("reductions.7ID.taux", 11, "CGI art. 199 sexvicies"),
    Pourcent("reductions.7JT.taux", 11, "CGI art. 199 sexvicies"),

    // Natural heritage; restored buildings, with a ceiling of one year or of four.
    Euros("reductions.7KC.plafond", 2200, "CGI art. 199 octovicies"),
    Euros("reductions.7KD.plafond", 1800, "CGI art. 199 octovicies"),
    Euros("reductions.7KE.plafond", 1800, "CGI art. 199 octovicies"),
    Pourcent("reductions.7SY.taux", 30, "CGI art. 199 tervicies"),
    Pourcent("reductions.7SX.taux", 22, "CGI art. 199 tervicies"),
    Euros("reductions.7SY.plafond", 100000, "CGI art. 199 tervicies"),
    Euros("reductions.7TX.plafond", 400000, "CGI art. 199 tervicies"),

    // ---- Overseas investments: the three rooms, as a part of the income or as an amount, with retrocession and
    // without.
    Pourcent("investissementsOutremer.enveloppe1.taux", 15, "CGI art. 199 undecies D"),
    Euros("investissementsOutremer.enveloppe1.plafond", 40000, "CGI art. 199 undecies D"),
    Euros("investissementsOutremer.enveloppe1.sansRetrocession", 300000, "CGI art. 199 undecies D"),
    Pourcent("investissementsOutremer.enveloppe2.taux", 13, "CGI art. 199 undecies D"),
    Euros("investissementsOutremer.enveloppe2.plafond", 36000, "CGI art. 199 undecies D"),
    Euros("investissementsOutremer.enveloppe2.sansRetrocession", 270000, "CGI art. 199 undecies D"),
    Pourcent("investissementsOutremer.enveloppe3.taux", 11, "CGI art. 199 undecies D"),
    Euros("investissementsOutremer.enveloppe3.plafond", 30600, "CGI art. 199 undecies D"),
    Euros("investissementsOutremer.enveloppe3.sansRetrocession", 229500, "CGI art. 199 undecies D"),
    Euros("investissementsOutremer.remboursement.plafond", 229500),

    // Retrocession to the operating company, by the part that it receives, from 50 % to 70 %: what the investor keeps,
    // what is retroceded for what is kept, and the room of the retroceded part.
    Pourcent("retrocession.r50.taux", 50), Nombre("retrocession.r50.conservee", 1),
    Nombre("retrocession.r50.retrocedee", 1), Euros("retrocession.r50.plafond", 40000),
    Pourcent("retrocession.r53.taux", 47.37), Nombre("retrocession.r53.conservee", 9),
    Nombre("retrocession.r53.retrocedee", 10), Euros("retrocession.r53.plafond", 34000),
    Pourcent("retrocession.r56.taux", 44), Nombre("retrocession.r56.conservee", 11),
    Nombre("retrocession.r56.retrocedee", 14), Euros("retrocession.r56.plafond", 38945),
    Pourcent("retrocession.r60.taux", 40), Nombre("retrocession.r60.conservee", 1),
    Nombre("retrocession.r60.retrocedee", 1.5), Euros("retrocession.r60.plafond", 60000),
    Pourcent("retrocession.r62.taux", 37.5), Nombre("retrocession.r62.conservee", 3),
    Nombre("retrocession.r62.retrocedee", 5), Euros("retrocession.r62.plafond", 51000),
    Pourcent("retrocession.r65.taux", 35), Nombre("retrocession.r65.conservee", 7),
    Nombre("retrocession.r65.retrocedee", 13), Euros("retrocession.r65.plafond", 74286),
    Pourcent("retrocession.r66.taux", 34), Nombre("retrocession.r66.conservee", 17),
    Nombre("retrocession.r66.retrocedee", 33), Euros("retrocession.r66.plafond", 59400),
    Pourcent("retrocession.r70.taux", 30), Nombre("retrocession.r70.conservee", 3),
    Nombre("retrocession.r70.retrocedee", 7), Euros("retrocession.r70.plafond", 93333),

    // ---- Credits. Home employment: a ceiling raised in the first year and by dependants and age, or for disability.
    Pourcent("credits.7DB.taux", 50, "CGI art. 199 sexdecies"),
    Euros("credits.7DB.plafond", 12000, "CGI art. 199 sexdecies"),
    Euros("credits.7DB.plafondPremiereAnnee", 15000, "CGI art. 199 sexdecies"),
    Euros("credits.7DB.plafondInvalide", 20000, "CGI art. 199 sexdecies"),
    Euros("credits.7DB.majoration", 1500, "CGI art. 199 sexdecies"),
    Euros("credits.7DB.majorationMaximum", 3000, "CGI art. 199 sexdecies"),
    Annees("credits.7DB.age", 65, "CGI art. 199 sexdecies"),
    Pourcent("credits.3VE.taux", 45, "CGI art. 244 bis B"),
    Pourcent("credits.3VE.tauxOption", 12.8, "CGI art. 244 bis B"),
    Pourcent("credits.3UV.taux", 30),
    Pourcent("credits.3UV.tauxOption", 12.8),
    Pourcent("credits.7UO.taux", 40, "CGI art. 238 bis-0 AB"),
    Pourcent("credits.4TQ.taux", 2.5),
    Pourcent("credits.7WJ.taux", 25, "CGI art. 200 quater A"),
    Euros("credits.7WJ.plafond", 5000, "CGI art. 200 quater A"),
    Euros("credits.7WJ.parCharge", 400, "CGI art. 200 quater A"),
    Pourcent("credits.7WL.taux", 40, "CGI art. 200 quater A"),
    Pourcent("credits.transitionEnergetique.taux", 30, "CGI art. 200 quater"),
    Euros("credits.transitionEnergetique.plafond", 8000, "CGI art. 200 quater"),
    Euros("credits.transitionEnergetique.parCharge", 400, "CGI art. 200 quater"),
    Pourcent("credits.7WR.taux", 40),
    Pourcent("credits.gardeEnfants.taux", 50, "CGI art. 200 quater B"),
    Euros("credits.gardeEnfants.plafond", 2300, "CGI art. 200 quater B"),
    Pourcent("credits.cotisationsSyndicales.taux", 66, "CGI art. 199 quater C"),
    Pourcent("credits.cotisationsSyndicales.plafondRevenu", 1, "CGI art. 199 quater C"),
    Pourcent("credits.pretsEtudiants.taux", 25, "CGI art. 200 terdecies"),
    Euros("credits.pretsEtudiants.plafond", 1000, "CGI art. 200 terdecies"),
    Annees("credits.pretsEtudiants.annees", 5, "CGI art. 200 terdecies"),
    Euros("credits.pretsEtudiants.plafondAnterieurs", 6000, "CGI art. 200 terdecies"),
    Pourcent("credits.forets.taux", 18, "CGI art. 200 quindecies"),
    Pourcent("credits.forets.tauxGroupement", 25, "CGI art. 200 quindecies"),
    Euros("credits.forets.plafondTravaux", 6250, "CGI art. 200 quindecies"),
    Euros("credits.forets.plafondGestion", 2000, "CGI art. 200 quindecies"),
    Pourcent("credits.7VX.taux", 40, "CGI art. 200 quaterdecies"),
    Pourcent("credits.7VV.taux", 15, "CGI art. 200 quaterdecies"),
    Pourcent("credits.7VT.taux", 10, "CGI art. 200 quaterdecies"),
    Euros("credits.7VX.plafond", 3750, "CGI art. 200 quaterdecies"),
    Euros("credits.7VX.plafondInvalide", 7500, "CGI art. 200 quaterdecies"),
    Euros("credits.7VX.parCharge", 500, "CGI art. 200 quaterdecies"),

    // ---- Wealth tax: the rates that stand beside the figures of the host.
    Pourcent("isf.tranche1.taux", 0, "CGI art. 885 U"),
    Pourcent("isf.tranche2.taux", 0.5, "CGI art. 885 U"),
    Pourcent("isf.tranche3.taux", 0.7, "CGI art. 885 U"),
    Pourcent("isf.tranche4.taux", 1, "CGI art. 885 U"),
    Pourcent("isf.tranche5.taux", 1.25, "CGI art. 885 U"),
    Pourcent("isf.tranche6.taux", 1.5, "CGI art. 885 U"),
    Pourcent("isf.pme.taux", 50, "CGI art. 885-0 V bis"),
    Pourcent("isf.dons.taux", 75, "CGI art. 885-0 V bis A"),
};
// clang-format on

/// Thresholds that ascend: the brackets of the scales.
inline constexpr const char* seuilsCroissants[][4] = {
    {"bareme.tranche2.seuil", "bareme.tranche3.seuil", "bareme.tranche4.seuil", "bareme.tranche5.seuil"},
    {"revenusModestes.plafondPlein", "revenusModestes.plafond"},
    {"abattements.personnesAgees.revenuPlein", "abattements.personnesAgees.revenu"},
    {"agentsAssurance.tranche1.seuil", "agentsAssurance.tranche2.seuil", "agentsAssurance.tranche3.seuil"},
    {"hautsRevenus.tranche1.seuil", "hautsRevenus.tranche2.seuil"},
};

}  // namespace kv
