#!/usr/bin/env bash
# Long works of the command: many returns in CSV and in JSON, whole, in parts, interrupted, and where nothing can be written.
#   table.sh KVCALCUL
set -euo pipefail
kvcalcul=$1
travail=$(mktemp -d)
trap 'rm -rf "$travail"' EXIT
cd "$travail"
figures=TOT_PAYER,S_NET_A_PAYER,TOT_R_IMPOS,CO_19.c2,F11_6FL

statut() { # statut EXPECTED COMMAND...: its exit status
    local attendu=$1 obtenu=0
    shift
    "$@" >sortie 2>erreurs || obtenu=$?
    [ "$obtenu" -eq "$attendu" ] || {
        echo "status $obtenu, not $attendu: $*" >&2
        cat erreurs >&2
        exit 1
    }
}
refuse() { # refuse MESSAGE COMMAND...: bad input, and the message that says so
    local message=$1
    shift
    statut 2 "$@"
    grep -qF -- "$message" erreurs || {
        echo "no \"$message\" in: $(cat erreurs)" >&2
        exit 1
    }
}

# Households worked out by hand. 30 000 less 10 %, 14 % above 9807. A couple with two children, 60 000: 54 000 over three
# parts, 14 % of 8193 each. What is no box passes through; a row that can't be computed says why and harms no other.
printf '\xef\xbb\xbfid;M;Fm;1AJ;note\r\n7;;;30000;"a ""b"""\r\n8;1;2;60000;x\r\n9;;;12,5;"y;z"\r\n10;;;30000.00;\r\n11;;\r\n12;;;9999999999;\r\n' >main.csv
statut 1 "$kvcalcul" table main.csv -o resultat.csv --outputs TOT_IMPOT,F_NB_PARTS_ALL
cat >attendu.csv <<'FIN'
id;note;TOT_IMPOT;F_NB_PARTS_ALL;status
7;"a ""b""";2407;100;
8;x;3441;300;
9;"y;z";;;"row 3: 1AJ: ""12,5"" is not a 32-bit integer"
10;;2407;100;
11;;;;row 5: 3 fields instead of 5
12;;;;"row 6: 1AJ: ""9999999999"" is not a 32-bit integer"
FIN
cmp resultat.csv attendu.csv
grep -qx '6 rows, 3 of them not computed' erreurs
statut 1 "$kvcalcul" table --quiet --outputs TOT_IMPOT,F_NB_PARTS_ALL <main.csv
cmp sortie attendu.csv
[ ! -s erreurs ]
echo '{"bareme.tranche2.taux": 20}' >reforme.json
statut 1 "$kvcalcul" table main.csv --law reforme.json --launch forced --outputs TOT_IMPOT
grep -q '^7;"a ""b""";3439;$' sortie

# Marks within a field are letters; one that opens and is never closed takes what follows, and says so.
printf 'id,note,1AJ\n1,5" disk,30000\n2,"open,30000\n3,x,1\n' >guillemets.csv
statut 1 "$kvcalcul" table guillemets.csv --quiet --outputs TOT_IMPOT
sed -n 2p sortie | grep -qx '1,"5"" disk",2407,'
tail -1 sortie | grep -q 'row 2: a quote is never closed$'

# Headers that can't be meant.
entete() { echo "$1" >entete.csv; }
entete id,1AJX
refuse 'column 2 "1AJX": unknown entry box 1AJX; nearest: 1AJ' "$kvcalcul" table entete.csv --outputs TOT_PAYER
entete 1aj
refuse 'nearest: 1AJ' "$kvcalcul" table entete.csv --outputs TOT_PAYER
entete 'id, fm'
refuse 'column 2 " fm"' "$kvcalcul" table entete.csv --outputs TOT_PAYER
for nom in m ' M' quotients.4.1AJ ti_1AW 'case 1AJ'; do
    entete "$nom,1AJ"
    refuse 'a column that is no box needs another name' "$kvcalcul" table entete.csv --outputs TOT_PAYER
done
entete '1st,region,1AJ'
statut 0 "$kvcalcul" table entete.csv --outputs TOT_PAYER
entete 'id|1AJX'
refuse 'needs another name' "$kvcalcul" table entete.csv --outputs TOT_PAYER
entete 'id,region'
refuse 'no column is a box' "$kvcalcul" table entete.csv --outputs TOT_PAYER
printf '1AJ,id\r30000,1\r' >entete.csv
refuse 'is not UTF-8 text' "$kvcalcul" table entete.csv --outputs TOT_PAYER
printf '1\0A\0J\0\n\0' >entete.csv
refuse 'is not UTF-8 text' "$kvcalcul" table entete.csv --outputs TOT_PAYER
entete ti.1AJ
refuse 'box 1AJ has no amount in "ti"' "$kvcalcul" table entete.csv --outputs TOT_PAYER
entete quotient.4.1AX
refuse 'unknown entry box 1AX' "$kvcalcul" table entete.csv --outputs TOT_PAYER
entete 1AJ,1AJ
refuse 'column 2 "1AJ": stands twice' "$kvcalcul" table entete.csv --outputs TOT_PAYER
entete id,1AJ,id
refuse 'would be called "id"' "$kvcalcul" table entete.csv --outputs TOT_PAYER
entete id,1AJ
refuse 'unknown figure TOT_PAYRE; nearest: TOT_PAYER' "$kvcalcul" table entete.csv --outputs TOT_PAYRE
refuse 'TOT_PAYER stands twice' "$kvcalcul" table entete.csv --outputs TOT_PAYER,TOT_PAYER
refuse 'has no header' "$kvcalcul" table /dev/null --outputs TOT_PAYER
refuse 'absent.csv: cannot be read' "$kvcalcul" table absent.csv --outputs TOT_PAYER
refuse 'is read and written at once' "$kvcalcul" table main.csv -o main.csv --outputs TOT_PAYER
refuse 'is read and written at once' "$kvcalcul" table -o main.csv --outputs TOT_PAYER <main.csv
refuse 'standard input: cannot be read' "$kvcalcul" table --outputs TOT_PAYER <&-
for nombre in 0 -1 x 99999999999999999999; do refuse 'is not a whole number' "$kvcalcul" population -- $nombre; done
refuse '--law: is empty' "$kvcalcul" table main.csv --outputs TOT_PAYER --law ''
for part in 0/2 3/2 1/0 1 1/2x; do refuse 'is not i/n' "$kvcalcul" table main.csv --outputs TOT_PAYER --shard "$part"; done
refuse 'launch is one of' "$kvcalcul" table main.csv --outputs TOT_PAYER --launch other

# A made-up population: the same for the same seed, and nothing in it that can't be true.
statut 0 "$kvcalcul" population 10000 --seed 16 -o population.csv
statut 0 "$kvcalcul" population 500 --seed 16
cmp <(head -501 population.csv | cut -d, -f1,3-) <(cut -d, -f1,3- sortie)
! cmp -s sortie <("$kvcalcul" population 500)
awk -F, 'NR > 1 { poids += $2 } END { exit !(poids > 37999999 && poids < 38000001) }' population.csv
awk -F, 'NR == 1 { split($0, noms) } NR > 1 {
    printf "{\"entries\": {"
    for (i = j = 3; i <= NF; ++i) if ($i != "") printf "%s\"%s\": %s", (j++ > 3 ? ", " : ""), noms[i], $i
    print "}}"
}' sortie >population.jsonl
statut 0 "$kvcalcul" batch population.jsonl
[ ! -s erreurs ] || {
    echo "warnings about the population: $(head -3 erreurs)" >&2
    exit 1
}

# The same bytes for any number of threads, from a pipe, in parts put together, and as batch has it, whose order is that of
# the lines.
statut 0 "$kvcalcul" table population.csv -o un.csv --threads 1 --outputs $figures
for threads in 2 7; do
    statut 0 "$kvcalcul" table --threads $threads --outputs $figures <population.csv
    cmp sortie un.csv
    statut 0 "$kvcalcul" table population.csv -o part$threads.csv --outputs $figures --shard 2/$threads
    cmp <(tail -n +2 part$threads.csv) <(awk -v n=$threads 'NR > 1 && (NR - 2) % n == 1' un.csv)
done
statut 0 "$kvcalcul" batch population.jsonl --threads 1
mv sortie lot.jsonl
statut 0 "$kvcalcul" batch population.jsonl --threads 3 -o lot3.jsonl
cmp lot.jsonl lot3.jsonl
cmp <(sed 's/.*"S_NET_A_PAYER":\(-*[0-9]*\).*/\1/; s/^{.*/0/' lot.jsonl) <(awk -F, 'NR > 1 && NR <= 501 { print $4 }' un.csv)

# Killed, or cut anywhere, and gone on with: the same bytes. Without --resume the result is written anew.
"$kvcalcul" table population.csv -o reprise.csv --threads 1 --outputs $figures 2>/dev/null &
until [ -s reprise.csv ]; do sleep 0.01; done
kill -9 $! 2>/dev/null || true
wait $! 2>/dev/null || true
statut 0 "$kvcalcul" table population.csv -o reprise.csv --resume --outputs $figures
cmp reprise.csv un.csv
for octets in 0 10 100 101 102 103 100000 "$(stat -c %s un.csv)"; do
    head -c "$octets" un.csv >reprise.csv
    statut 0 "$kvcalcul" table population.csv -o reprise.csv --resume --outputs $figures
    cmp reprise.csv un.csv
done
statut 0 "$kvcalcul" table population.csv -o neuve.csv --resume --outputs $figures
statut 0 "$kvcalcul" table population.csv -o neuve.csv --outputs $figures
cmp neuve.csv un.csv
head -c 100 attendu.csv >reprise.csv
statut 1 "$kvcalcul" table main.csv -o reprise.csv --resume --outputs TOT_IMPOT,F_NB_PARTS_ALL
cmp reprise.csv attendu.csv
refuse 'is not the result of such a run' "$kvcalcul" table population.csv -o reprise.csv --resume --outputs $figures
refuse 'has more rows than' "$kvcalcul" table population.csv -o un.csv --resume --outputs $figures --shard 1/2
head -100 un.csv >reprise.csv
refuse 'its last row is not that of' "$kvcalcul" table population.csv -o reprise.csv --resume --outputs $figures --shard 1/2
echo 'precious notes' >reprise.csv
refuse 'is not the result of such a run' "$kvcalcul" table population.csv -o reprise.csv --resume --outputs $figures
cut -d, -f11 population.csv >anonyme.csv
refuse 'needs a column that passes through' "$kvcalcul" table anonyme.csv -o reprise.csv --resume --outputs $figures
refuse 'needs a file' "$kvcalcul" table population.csv --resume --outputs $figures

# A full disk and a reader that leaves are told of, not waited for.
for travail_long in "table population.csv --outputs $figures" "batch population.jsonl" "population 5000"; do
    refuse '/dev/full: cannot be written' "$kvcalcul" $travail_long -o /dev/full
    [ "$({
        trap '' PIPE
        "$kvcalcul" $travail_long 2>erreurs || echo "$?" >code
    } | head -c 1 | wc -c)" -eq 1 ]
    [ "$(cat code)" -eq 2 ]
    grep -q 'standard output: cannot be written' erreurs
    rm code
done
