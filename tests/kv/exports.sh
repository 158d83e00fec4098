#!/usr/bin/env bash
# The library exports what kv.h declares and nothing else, under a name of its own, and the tests call all of it.
#   exports.sh LIBRARY HEADER TESTS
set -euo pipefail
declares=$(grep -oE '^KV_PUBLIC .*' "$2" | grep -oE '\bkv_[a-z_]+\(' | tr -d '(' | LC_ALL=C sort)
exportes=$(nm -D --defined-only "$1" | awk '{print $3}' | LC_ALL=C sort)
diff <(echo "$declares") <(echo "$exportes") && echo "$(echo "$exportes" | wc -l) functions, as declared"
readelf -d "$1" | grep -q 'SONAME.*\[libkv\.so\.1\]'
for nom in $declares; do
    grep -qw "$nom" "$3"/*.cpp || {
        echo "$nom is not tested" >&2
        exit 1
    }
done
