#!/usr/bin/env bash
# Installs the built libraries to a scratch prefix, builds the example hosts against them, and runs them. Then the
# libraries alone, for a library directory of several levels, found through pkg-config.
#   verifie.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
construction=$1 sources=$2
travail=$(mktemp -d)
trap 'rm -rf "$travail"' EXIT
cmake --install "$construction" --prefix "$travail/prefixe" >/dev/null
cmake -G Ninja -S "$sources/tests/installation" -B "$travail/hotes" -DCMAKE_PREFIX_PATH="$travail/prefixe" \
    -DEXEMPLES="$sources/examples" -DCMAKE_BUILD_TYPE=Release ${3:+-DCMAKE_EXE_LINKER_FLAGS="$3"} >/dev/null
cmake --build "$travail/hotes" >/dev/null
# 3 parts; 65 700 taxable: 8 297 for two parts less the cap of 3 054, no relief; the tool says the same.
"$travail/hotes/hote_c" | tee "$travail/c"
grep -qx 'parts 3.00, taxable income 65700, tax 5243, to pay 5243' "$travail/c"
# The deferred salary of 8 000 keeps its share of the deduction, 800, and is taxed apart. Next year's ceilings: 10 % of
# 54 000 less 5 400; 10 % of the social-security ceiling, 39 732, which is more than 10 % of 38 000 less 3 800.
"$travail/hotes/hote_cpp" | tee "$travail/cpp"
grep -qx 'RQ_REV_EXCEP 7200' "$travail/cpp"
grep -qx 'F11_6PSS 4860' "$travail/cpp"
grep -qx 'F11_6PTS 3973' "$travail/cpp"
# 5 243 less 66 % of 600, then less 75 %; 10 % of the social-security ceiling, 39 228, for next year.
"$travail/hotes/foyer_c" >"$travail/foyer_c.txt"
diff - "$travail/foyer_c.txt" <<'FIN'
tax 4847, net salary of the second declarant 27900, gifts 66% x 600, next year's ceiling 3923
tax 4793, net salary of the second declarant 27900, gifts 75% x 600, next year's ceiling 3923
FIN
# 9 740 less 396; 384 with the flat tax, 540 with the scale, and 516 of levies. Of the 8 000, 7 200 at 30 %.
"$travail/hotes/foyer_cpp" >"$travail/foyer_cpp.txt"
diff - <(head -3 "$travail/foyer_cpp.txt") <<'FIN'
flat tax 10244, scale 10400: flat tax
to pay 10244, net salary of the second declarant 34200, gifts 66% x 600, next year's ceiling 4140
with the deferred salary 2160 more
FIN
if "$travail/hotes/hote_c" 1ZZ=3 2>/dev/null; then exit 1; fi
"$travail/prefixe/bin/kvcalcul" --version | grep -qxE 'kvcalcul [0-9]+(\.[0-9]+){2}'

# Nothing but the compiler is looked for, and the flags are those of the directories.
cmake -S "$sources" --preset library -G Ninja -B "$travail/seule" -DCMAKE_INSTALL_LIBDIR=lib/machine/abi \
    -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON -DCMAKE_DISABLE_FIND_PACKAGE_nlohmann_json=ON \
    -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON >/dev/null
niveaux=$travail/ailleurs/lib/machine/abi
mkdir -p "$niveaux/pkgconfig"
cp -r "$travail/prefixe/include" "$travail/ailleurs"
find "$travail/prefixe" \( -name 'libKVCalcul.so*' -o -name 'libkv.so*' \) -exec cp -P {} "$niveaux" \;
cp "$travail/seule/"{kvcalcul,kv}.pc "$niveaux/pkgconfig"
compile() { # compile EXAMPLE PACKAGE: built through pkg-config
    # shellcheck disable=SC2046  # several flags
    cc "$sources/examples/$1.c" -o "$travail/$1" $(PKG_CONFIG_PATH=$niveaux/pkgconfig pkg-config --cflags --libs "$2")
    LD_LIBRARY_PATH=$niveaux "$travail/$1"
}
compile hote kvcalcul | diff - "$travail/c"
compile foyer kv | diff - "$travail/foyer_c.txt"
