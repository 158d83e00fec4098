#!/usr/bin/env bash
# The library exports the names of the list and nothing else.
#   exports.sh LIBRARY LIST
set -euo pipefail
attendus=$(sed -n '/^[A-Za-z]/p' "$2" | while read -r nom; do
    echo "$nom"
    case $nom in TPeriode*) ;; *) echo "_$nom" ;; esac
done | LC_ALL=C sort)
exportes=$(nm -D --defined-only "$1" | awk '{print $3}' | LC_ALL=C sort)
diff <(echo "$attendus") <(echo "$exportes") && echo "$(echo "$exportes" | wc -l) names, as listed"
