#!/usr/bin/env bash
# Installs the built library to a scratch prefix, builds two hosts against it, and runs them. Then the library alone, for
# a library directory of several levels, found through pkg-config.
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
if "$travail/hotes/hote_c" 1ZZ=3 2>/dev/null; then exit 1; fi
"$travail/prefixe/bin/kvcalcul" --version | grep -qxE 'kvcalcul [0-9]+(\.[0-9]+){2}'

# Nothing but the compiler is looked for, and the flags are those of the directories.
cmake -S "$sources" --preset library -G Ninja -B "$travail/seule" -DCMAKE_INSTALL_LIBDIR=lib/machine/abi \
      -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON -DCMAKE_DISABLE_FIND_PACKAGE_nlohmann_json=ON \
      -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON >/dev/null
niveaux=$travail/ailleurs/lib/machine/abi
mkdir -p "$niveaux/pkgconfig"
cp -r "$travail/prefixe/include" "$travail/ailleurs"
find "$travail/prefixe" -name 'libKVCalcul.so*' -exec cp -P {} "$niveaux" \;
cp "$travail/seule/kvcalcul.pc" "$niveaux/pkgconfig"
# shellcheck disable=SC2046  # several flags
cc "$sources/examples/hote.c" -o "$travail/hote" $(PKG_CONFIG_PATH=$niveaux/pkgconfig pkg-config --cflags --libs kvcalcul)
LD_LIBRARY_PATH=$niveaux "$travail/hote" | diff - "$travail/c"
