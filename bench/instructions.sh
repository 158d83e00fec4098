#!/usr/bin/env bash
# Instructions a row, from a table to a table on one thread, and how many of them are the computation.
#   instructions.sh KVCALCUL
set -euo pipefail
kvcalcul=$1
travail=$(mktemp -d)
trap 'rm -rf "$travail"' EXIT

compte() { # compte ROWS [OPTION]: the instructions of a run
    "$kvcalcul" population "$1" -o "$travail/population.csv" 2>/dev/null
    valgrind --tool=callgrind --callgrind-out-file=/dev/null "${@:2}" "$kvcalcul" table "$travail/population.csv" -o /dev/null \
        --threads 1 --quiet --outputs TOT_PAYER,S_NET_A_PAYER,TOT_IMPOT,TOT_R_IMPOS,F_NB_PARTS_ALL 2>&1 |
        sed -n 's/.*Collected : \([0-9]*\).*/\1/p'
}
tout=$((($(compte 10000) - $(compte 2000)) / 8000))
calcul=$((($(compte 10000 --toggle-collect=kv_compute_columns) - $(compte 2000 --toggle-collect=kv_compute_columns)) / 8000))
echo "Instructions a row: $tout, of which $calcul compute and $((tout - calcul)) read and write."
