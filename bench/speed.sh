#!/usr/bin/env bash
# Counts the instructions of a launch over the returns of bench/returns, against the counts of bench/instructions.txt: a
# busy machine changes nothing to them. More than 3 % above is an error; as much below asks for new counts.
#   speed.sh KVCALCUL [--write]
set -euo pipefail
outil=$(realpath "$1")
cd "$(dirname "${BASH_SOURCE[0]}")"
travail=$(mktemp -d)
trap 'rm -rf "$travail"' EXIT
tolerance=3

compte() { # compte RETURN LAUNCHES: the instructions of so many launches of one return
    for ((i = 0; i < $2; ++i)); do cat "$1"; done >"$travail/returns"
    valgrind --tool=callgrind --callgrind-out-file=/dev/null --toggle-collect=kv_compute "$outil" batch "$travail/returns" \
        -o /dev/null --threads 1 --quiet 2>&1 | sed -n 's/.*Collected : \([0-9]*\).*/\1/p'
}

compilateur=$(readelf -p .comment "$outil" | grep -oE 'GCC: .*' | head -1)
for retour in returns/*.json; do
    # The first launches also fill what all share.
    instructions=$((($(compte "$retour" 12) - $(compte "$retour" 2)) / 10))
    [ "$instructions" -gt 0 ] || { echo "$retour could not be computed." >&2 && exit 1; }
    echo "$(basename "$retour" .json) $instructions"
done >"$travail/counts"
if [ "${2:-}" = --write ]; then
    { echo "# $compilateur" && cat "$travail/counts"; } >instructions.txt
    cat instructions.txt
    exit
fi
if ! grep -qxF "# $compilateur" instructions.txt; then
    echo "Another compiler counted bench/instructions.txt: these are not compared." >&2
    cat "$travail/counts"
    exit
fi
join <(sort instructions.txt) <(sort "$travail/counts") |
    awk -v tolerance=$tolerance '
        {
            ratio = $3 / $2
            printf "%-24s %9d instructions, %.3f of before\n", $1, $3, ratio
            if (ratio > 1 + tolerance / 100) lents = lents " " $1
            if (ratio < 1 - tolerance / 100) rapides = rapides " " $1
        }
        END {
            if (rapides) print "Faster: ./kv speed --write keeps it so for" rapides "."
            if (lents) print "Slower by more than " tolerance " %:" lents "."
            exit lents != ""
        }'
[ "$(wc -l <"$travail/counts")" -eq "$(grep -vc '^#' instructions.txt)" ] || {
    echo "The returns of bench/returns are not those of bench/instructions.txt: ./kv speed --write counts them." >&2
    exit 1
}
