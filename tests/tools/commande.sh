#!/usr/bin/env bash
# The command as a user meets it: what it says of itself, its exit statuses, and names that are no Unicode text.
#   commande.sh KVCALCUL VERSION
set -euo pipefail
kvcalcul=$1 version=$2
travail=$(mktemp -d)
trap 'rm -rf "$travail"' EXIT

statut() {  # statut EXPECTED COMMAND...: its exit status
    local attendu=$1 obtenu=0
    shift
    "$@" >"$travail/sortie" 2>"$travail/erreurs" || obtenu=$?
    [ "$obtenu" -eq "$attendu" ] || { echo "status $obtenu, not $attendu: $*" >&2; exit 1; }
}

statut 0 "$kvcalcul" --version
[ "$(cat "$travail/sortie")" = "kvcalcul $version" ]
statut 0 "$kvcalcul" --help
grep -q 'Exit status: 0 computed; 1 .*; 2' <(tr '\n' ' ' <"$travail/sortie")

echo '{"entries": {"1AJ": 33333}}' >"$travail/bon"
{ cat "$travail/bon"; echo '{"entries": {"1AJ": "x"}}'; } >"$travail/mauvais"
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
