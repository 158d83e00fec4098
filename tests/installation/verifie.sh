#!/usr/bin/env bash
# Installs the built library to a scratch prefix, builds two hosts against it, and runs them.
#   verifie.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
construction=$1 sources=$2
travail=$(mktemp -d)
trap 'rm -rf "$travail"' EXIT
cmake --install "$construction" --prefix "$travail/prefixe" >/dev/null
cmake -G Ninja -S "$sources/tests/installation" -B "$travail/hotes" -DCMAKE_PREFIX_PATH="$travail/prefixe" \
      -DEXEMPLES="$sources/examples" -DCMAKE_BUILD_TYPE=Release ${3:+-DCMAKE_EXE_LINKER_FLAGS="$3"} >/dev/null
cmake --build "$travail/hotes" >/dev/null
pkgconf=$(find "$travail/prefixe" -name kvcalcul.pc)
grep -q '^Libs: .*-lKVCalcul' "$pkgconf"

# 3 parts; 65 700 taxable: 8 297 for two parts less the cap of 3 054, no relief; the tool says the same.
"$travail/hotes/hote_c" | tee "$travail/c"
grep -qx 'parts 3.00, taxable income 65700, tax 5243, to pay 5243' "$travail/c"
# Salaries 92 000 less 9 200; the deferred salary keeps its share of the deduction, 800, and is taxed apart.
"$travail/hotes/hote_cpp" | tee "$travail/cpp"
grep -qx 'RQ_REV_EXCEP 7200' "$travail/cpp"
grep -qx 'quotients kept: 1' "$travail/cpp"
if "$travail/hotes/hote_c" 1ZZ=3 2>/dev/null; then exit 1; fi
