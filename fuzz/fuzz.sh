#!/usr/bin/env bash
# Feeds arbitrary input to the launches, to what reads returns, reforms and tables, and to the links of the page, the time
# shared among them, beginning with the inputs that are kept in fuzz/corpus.
#   fuzz.sh SECONDS
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
cibles=(lancements declarations lois tables)
secondes=$((($1 + ${#cibles[@]}) / (${#cibles[@]} + 1)))
for cible in "${cibles[@]}"; do
    mkdir -p "build/fuzz/corpus/$cible" "build/fuzz/found"
    journal=build/fuzz/$cible.log
    if ! "build/fuzz/kv_fuzz_$cible" -max_total_time="$secondes" -max_len=4096 -len_control=10 -artifact_prefix=build/fuzz/found/ \
        "build/fuzz/corpus/$cible" "fuzz/corpus/$cible" >"$journal" 2>&1; then
        tail -40 "$journal" >&2
        exit 1
    fi
    echo "$cible: $(grep -oE '^#[0-9]+' "$journal" | tail -1 | tr -d '#') tried"
done
node --no-warnings fuzz/liens.mjs "$secondes" fuzz/corpus/declarations
