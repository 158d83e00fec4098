#!/usr/bin/env bash
# The command as a user meets it: what it says of itself, its exit statuses, and names that are no Unicode text.
#   commande.sh KVCALCUL VERSION PROJECT
set -euo pipefail
kvcalcul=$1 version=$2 projet=$3
travail=$(mktemp -d)
trap 'rm -rf "$travail"' EXIT

statut() { # statut EXPECTED COMMAND...: its exit status
    local attendu=$1 obtenu=0
    shift
    "$@" >"$travail/sortie" 2>"$travail/erreurs" || obtenu=$?
    [ "$obtenu" -eq "$attendu" ] || {
        echo "status $obtenu, not $attendu: $*" >&2
        exit 1
    }
}

statut 0 "$kvcalcul" --version
[ "$(cat "$travail/sortie")" = "kvcalcul $version" ]
statut 0 "$kvcalcul" --help
grep -q 'Exit status: 0 computed; 1 .*; 2' <(tr '\n' ' ' <"$travail/sortie")

echo '{"entries": {"1AJ": 33333}}' >"$travail/bon"
{
    cat "$travail/bon"
    echo '{"entries": {"1AJ": "x"}}'
} >"$travail/mauvais"
statut 0 "$kvcalcul" run "$travail/bon"
statut 1 "$kvcalcul" batch "$travail/mauvais"
statut 2 "$kvcalcul" run "$travail/mauvais"
statut 2 "$kvcalcul" run --nothing "$travail/bon"

# A reform over the law of the year: 33333 less 10 %, of which 2914 at 31 % instead of 30.
echo '{"bareme.tranche3.taux": 31}' >"$travail/reforme"
statut 0 "$kvcalcul" run --json --law "$travail/reforme" "$travail/bon"
grep -q '"law":{"year":2017,"changes":{"bareme.tranche3.taux":31}},.*"TOT_IMPOT":3322' "$travail/sortie"
statut 0 "$kvcalcul" batch --law "$travail/reforme" "$travail/bon"
grep -q '"TOT_IMPOT":3322' "$travail/sortie"
statut 0 "$kvcalcul" run --law "$travail/reforme" --compare "$travail/bon"
grep -q 'TOT_IMPOT  *3293  *3322  *+29' "$travail/sortie"
statut 0 "$kvcalcul" law decote
[ "$(wc -l <"$travail/sortie")" -eq 3 ]
echo '{"bareme.tranche3.tauxx": 31}' >"$travail/reforme"
statut 2 "$kvcalcul" batch --law "$travail/reforme" "$travail/bon"
statut 2 "$kvcalcul" run --compare "$travail/bon"
statut 2 "$kvcalcul" run --law "$travail/absente" "$travail/bon"

# What would change the tax: gifts of 600 take off 396; a euro of salary costs 14 % of 90 cents; where collection begins, a
# euro more costs 61.
echo '{"entries": {"1AJ": 33333, "7UF": 600}}' >"$travail/dons"
statut 0 "$kvcalcul" effects "$travail/dons"
grep -qE '^Montant net .* \(net\): 2897$' "$travail/sortie"
grep -qE '^7UF +600 +3293 +\(\+396\) +\+100: +2831 +\(-66\)  Dons' "$travail/sortie"
statut 0 "$kvcalcul" effects "$travail/dons" TOT_IMPOT --json
grep -q '"figure":"TOT_IMPOT",.*"value":3293,.*"name":"7UF",.*"without":3293,"change":100,"changed":3293}\]' "$travail/sortie"
statut 2 "$kvcalcul" effects "$travail/dons" TOT_IMPOTS
statut 0 "$kvcalcul" curve "$travail/bon" --box 1AJ --to 40000 --step 10000 --output TOT_IMPOT --svg "$travail/courbe.svg"
[ "$(sed -n 5p "$travail/sortie")" = 30000,2407,0.080233,0.268600 ] # 17193 at 14 %; of 9000 more 86 at 14, 8914 at 30 %
python3 -c 'import sys, xml.etree.ElementTree as e; e.parse(sys.argv[1])' "$travail/courbe.svg"
statut 0 "$kvcalcul" curve "$travail/bon" --box 1AJ --to 40000 --step 10000 --svg -
grep -q '+61.*€</text>' "$travail/sortie"
statut 0 "$kvcalcul" breaks "$travail/bon" --box 1AJ --from 27000 --to 29000 --output TOT_IMPOT
[ "$(head -1 "$travail/sortie")" = from,to,rate,value ]
tail -1 "$travail/sortie" | grep -qE '^[0-9]+,29000,0\.126[0-9]{6},'
statut 2 "$kvcalcul" breaks "$travail/bon" --box 1AJX --to 10
grep -q 'nearest: 1AJ' "$travail/erreurs"
statut 2 "$kvcalcul" curve "$travail/bon" --box 1AJ --from 10 --to 1 --step 1
# Why: every level by hand, and what another return or another law changes.
statut 0 "$kvcalcul" explain "$travail/dons"
grep -qx '2897  Montant net à payer, négatif : restitution (net)' "$travail/sortie"
grep -q '^ *- 396  Réductions' "$travail/sortie"
grep -q '^ *taux: 66 % ' "$travail/sortie"
grep -q '^ *+ 600  Dons .*(7UF)$' "$travail/sortie"
grep -q '^ *+ 2419  tranche au-dessus de 9807 par part = 14 % de 17279$' "$travail/sortie"
statut 0 "$kvcalcul" explain "$travail/dons" TOT_IMPOT --depth 1 --json
grep -q '^{"version":1,"box":"TOT_IMPOT",.*"terms":\[{"box":"I_BAREME",.*"rule":"deeper"' "$travail/sortie"
statut 0 "$kvcalcul" explain --diff "$travail/bon" "$travail/dons"
grep -qx '3293 -> 2897 (-396)  Montant net à payer, négatif : restitution (net)' "$travail/sortie"
grep -q '^ *- 0 -> 396 (+396)  Réductions' "$travail/sortie"
echo '{"bareme.tranche3.taux": 31}' >"$travail/reforme"
statut 0 "$kvcalcul" explain --diff "$travail/bon" "$travail/bon" --law "$travail/reforme" --json
grep -q '^{"version":1,.*"before":3293,"after":3322,' "$travail/sortie"
statut 2 "$kvcalcul" explain "$travail/dons" TOT_IMPOTS
statut 0 "$kvcalcul" run --trace "$travail/bon"
grep -q ' : *-> 1AJ : 33333$' "$travail/erreurs"
grep -q 'to pay *3293' "$travail/sortie"

# What the boxes mean: the document is that of this build, a search shows blocks, an unknown box its neighbours.
statut 0 "$kvcalcul" boxes --markdown
cmp "$travail/sortie" "$projet/docs/boxes.md" || {
    echo "docs/boxes.md: kvcalcul boxes --markdown >docs/boxes.md" >&2
    exit 1
}
statut 0 "$kvcalcul" boxes "SALAIRES traitements"
grep -qx '1BJ  Traitements et salaires' "$travail/sortie"
statut 0 "$kvcalcul" boxes
[ "$(wc -l <"$travail/sortie")" -eq $((2128 + 2288 + 736)) ]
statut 2 "$kvcalcul" boxes zzzz
echo '{"entries": {"1AJX": 1}}' >"$travail/inconnue"
statut 2 "$kvcalcul" run "$travail/inconnue"
grep -q 'unknown entry box 1AJX; nearest: 1AJ (Traitements et salaires)' "$travail/erreurs"

# Warnings stand in the result; in a batch they go to standard error with the line.
{
    cat "$travail/bon"
    echo '{"entries": {"C": 1, "M": 1}}'
} >"$travail/douteux"
statut 0 "$kvcalcul" batch "$travail/douteux"
grep -q ':2: warning: M .* and C .*: more than one family situation' "$travail/erreurs"
[ "$(wc -l <"$travail/erreurs")" -eq 1 ]
grep -q '"warnings":\["M ' "$travail/sortie"

# The schema accepts every example, and refuses what the reader of returns refuses.
"$kvcalcul" schema >"$travail/schema.json"
"$kvcalcul" boxes --json >"$travail/boxes.json"
for python in python3 /usr/bin/python3; do
    "$python" -c 'import jsonschema' 2>/dev/null && break
done
"$python" - "$travail/schema.json" "$travail/boxes.json" "$projet"/examples/*.json <<'FIN'
import json, sys
import jsonschema
schema, boites = json.load(open(sys.argv[1])), json.load(open(sys.argv[2]))
jsonschema.Draft202012Validator.check_schema(schema)
valide = jsonschema.Draft202012Validator(schema)
for exemple in sys.argv[3:]:
    valide.validate(json.load(open(exemple)))
bon = {"entries": {"1AJ": 1}, "ti": {"1AW": 5}, "quotients": {"1AJ": {"4": 10}}, "launch": "forced", "indexation": 1.5,
       "period": ["2017-01-01", "31/12/2017"]}
valide.validate(bon)
for faux in ({}, {"entries": {"1ZZ": 1}}, {"entries": {"1AJ": 1.5}}, {"entries": {"1AJ": 2**31}}, {"entries": {}, "x": 1},
             {"entries": {}, "ti": {"1AJ": 1}}, {"entries": {}, "quotients": {"1AJ": {"04": 1}}},
             {"entries": {}, "launch": "other"}, {"entries": {}, "period": ["2017-01-01"]}):
    assert not valide.is_valid(faux), faux
assert len(boites) == 2128 + 2288 + 736
assert all(b["label"] and b["kind"] and b["person"] and b["group"] for b in boites)
assert [b["number"] for b in boites if b["catalogue"] == "output"] == list(range(2288))
FIN

# A program and a temporary directory whose names are no Unicode text: a computation like any other.
programme=$travail/$(printf 'caf\xe9')
cp "$kvcalcul" "$programme"
mkdir -p "$programme.d/KV_TEMP"
touch "$programme.d/KV_TEMP/$(printf 'caf\xe9').inf"
for commande in "$kvcalcul" "$programme"; do
    TMPDIR=$programme.d statut 0 "$commande" run --json "$travail/bon"
    grep -q '"TOT_IMPOT":3293' "$travail/sortie"
    [ ! -s "$travail/erreurs" ]
done
