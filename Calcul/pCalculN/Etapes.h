#pragma once

// The doors of the families: one function for each numbered step, named after its label. A step reads entry boxes and
// earlier outputs and writes outputs; income steps add into theirs and rely on the reset before a pass. Only the driver
// calls them: a step that needs another one asks for it through its context.

class CDataCalcul;

namespace kv {

class Contexte;
struct Saisie;

void NombreParts(Contexte& c);
void RevenusBrut(Contexte& c);
void RevenusSalaires(Contexte& c);
void RentesViageres(Contexte& c);
void RevenusNonSalaries(Contexte& c);
void RevenusExoneres(Contexte& c);
void RevenusMobiliers(Contexte& c);
void RevenusFonciers(Contexte& c);
void RevenusDivers(Contexte& c);
void RevenusBrutQuotient(Contexte& c);
void RevenusTauxForf(Contexte& c);
void RevenusNet(Contexte& c);
void RevenusImposables(Contexte& c);
void CalculImpot(Contexte& c);
void TauxMarginal(Contexte& c);
void RevenusTM(Contexte& c);
void RevenusEtrangers(Contexte& c);
void ImpotApresReductions(Contexte& c);
void RevenuFiscalRef(Contexte& c);
void HautsSalaires(Contexte& c);
void ImpotApresCorrections(Contexte& c);
void CreditDImpot(Contexte& c);
void CSG_CRDS(Contexte& c);
void ImpotAPaye(Contexte& c);
void PlafondPERP(Contexte& c);
void NichesFiscales(Contexte& c);
void Reports(Contexte& c);
void PrelevLib(Contexte& c);
void TauxImposMoyen(Contexte& c);
void ImposTxMarginal(Contexte& c);
void ImposTrancheSup(Contexte& c);
void RevenusNetFrais(Contexte& c);
void Calcul_ISF(Contexte& c);
void TauxPAS(Contexte& c);
void KV_CIMR(Contexte& c);

}  // namespace kv
