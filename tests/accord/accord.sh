#!/usr/bin/env bash
# Builds the library in every way that this machine can, and compares what each build finds on random returns: all outputs,
# columns, texts, entries and boxes of next year, as one number.
#   accord.sh [RETURNS] [BUILD...]
# shellcheck disable=SC2317  # the functions are called by eval
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
nombre=${1:-10000}
demandes=" ${*:2} "

# A build: how it is configured, then how its program is run, or a reason why it can't be.
configure() { # configure NAME OPTIONS...
    local dossier=build/agree/$1
    if [ ! -f "$dossier/build.ninja" ]; then
        cmake -G Ninja -S . -B "$dossier" -DKV_TOOLS=OFF -DKV_TESTS=OFF -DCMAKE_BUILD_TYPE=Debug "${@:2}" >/dev/null || return
    fi
    cmake --build "$dossier" --target kv_accord -- --quiet >/dev/null && programme=("$dossier/kv_accord")
}
preset() {
    [ -f "build/$1/build.ninja" ] || cmake --preset "$1" -G Ninja >/dev/null || return
    cmake --build "build/$1" --target kv_accord -- --quiet >/dev/null && programme=("build/$1/kv_accord")
}
sous_wine() { # sous_wine PRESET: a 64-bit Wine alone does not run 32-bit programs
    command -v wine >/dev/null || { raison="Wine is not here" && return 1; }
    command -v "${1#windows-}-w64-mingw32-g++-posix" >/dev/null || { raison="its compiler is not here" && return 1; }
    preset "$1" || return
    programme=(env WINEDEBUG=-all "WINEDLLOVERRIDES=mscoree,mshtml=" WINEPREFIX="$PWD/build/agree/wine"
        wine "build/$1/kv_accord.exe")
    "${programme[@]}" 1 2>/dev/null | grep -q returns || { raison="this Wine does not run it" && return 1; }
}
a_clang() { command -v clang++-19 >/dev/null || { raison="clang++-19 is not here" && return 1; }; }

declare -A constructions=(
    ["gcc"]='preset release'
    ["gcc-O0"]='configure gcc-O0 -DCMAKE_CXX_FLAGS_DEBUG=-O0'
    ["clang"]='a_clang && configure clang -DCMAKE_CXX_COMPILER=clang++-19 -DCMAKE_C_COMPILER=clang-19 -DCMAKE_CXX_FLAGS_DEBUG=-O2'
    ["clang-O0"]='a_clang && configure clang-O0 -DCMAKE_CXX_COMPILER=clang++-19 -DCMAKE_C_COMPILER=clang-19 -DCMAKE_CXX_FLAGS_DEBUG=-O0'
    ["sanitizers"]='preset sanitize'
    ["32-bit"]='en_32_bits && configure 32-bit "-DCMAKE_CXX_FLAGS=-m32 -msse2 -mfpmath=sse" -DCMAKE_C_FLAGS=-m32 -DCMAKE_CXX_FLAGS_DEBUG=-O2'
    ["windows-64"]='sous_wine windows-x86_64'
    ["windows-32"]='sous_wine windows-i686'
    ["wasm"]='en_wasm'
)
en_32_bits() {
    echo 'int main() {}' | g++ -m32 -x c++ - -o /dev/null 2>/dev/null || { raison="the 32-bit C++ library is not here" && return 1; }
}
en_wasm() {
    a_clang && command -v node >/dev/null && [ -d /usr/include/wasm32-wasi/c++ ] ||
        { raison="its compiler or Node is not here" && return 1; }
    preset wasm || return
    programme=(node --no-warnings tests/accord/wasm.mjs build/wasm/kv_accord.wasm)
}

declare -A trouves programmes
ecart=0
for nom in gcc gcc-O0 clang clang-O0 sanitizers 32-bit windows-64 windows-32 wasm; do
    [ "$demandes" = "  " ] || [ "$nom" = gcc ] || [[ $demandes == *" $nom "* ]] || continue
    raison="it does not build"
    if ! eval "${constructions[$nom]}"; then
        printf '%-12s not compared: %s\n' "$nom" "$raison"
        [ "$raison" != "it does not build" ] || ecart=1
        continue
    fi
    trouves[$nom]=$("${programme[@]}" "$nombre" | tr -d '\r') || trouves[$nom]="it fails"
    programmes[$nom]=${programme[*]}
    printf '%-12s %s\n' "$nom" "${trouves[$nom]}"
    [ "${trouves[$nom]}" != "${trouves[gcc]}" ] || continue
    ecart=1
    # The first return of which they think otherwise, and the figures.
    premier=$(diff <(${programmes[gcc]} --each "$nombre" 1) <(${programmes[$nom]} --each "$nombre" 1 | tr -d '\r') |
        sed -n 's/^[<>] \([0-9]*\) .*/\1/p' | head -1) || true
    [ -z "$premier" ] || diff <(${programmes[gcc]} --show "$premier" 1) <(${programmes[$nom]} --show "$premier" 1 | tr -d '\r') || true
done
exit $ecart
