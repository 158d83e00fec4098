#!/usr/bin/env bash
# Checks the Windows libraries: the 32-bit build that hosts load, then their figures.
#
# Names and calling conventions are read off the 32-bit file. The figures are compared with the native build under Wine:
# Debian's 64-bit Wine runs the 64-bit build of the same library. Without Wine the comparison is left out, and said so.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

for arch in i686 x86_64; do
    [ -f "build/windows-$arch/build.ninja" ] || cmake --preset "windows-$arch" -G Ninja >/dev/null
    cmake --build --preset "windows-$arch" -- --quiet
done
travail=$(mktemp -d)
trap 'wineserver -k 2>/dev/null || true; rm -rf "$travail"' EXIT
dll=build/windows-i686/KVCalcul.dll

echo "Export table of $dll:"
exportes=$(i686-w64-mingw32-objdump -p "$dll" |
    awk '/Ordinal\/Name Pointer/ {table = 1; next} !NF {table = 0} table {print $NF}' | LC_ALL=C sort)
attendus=$(sed -n '/^[A-Za-z]/p' Calcul/pInitCalcul/exports.txt | sed '/^TPeriode/!s/^/_/' | LC_ALL=C sort)
diff <(echo "$attendus") <(echo "$exportes")
echo "$exportes" | column
echo "Libraries it needs: $(i686-w64-mingw32-objdump -p "$dll" | awk '/DLL Name/ {print $3}' | xargs)"
for arch in i686 x86_64; do
    diff <(grep -oE '^KV_PUBLIC .*' interface/kv.h | grep -oE '\bkv_[a-z_]+\(' | tr -d '(' | LC_ALL=C sort) \
        <("$arch-w64-mingw32-objdump" -p "build/windows-$arch/kv.dll" |
            awk '/Ordinal\/Name Pointer/ {table = 1; next} !NF {table = 0} table {print $NF}' | LC_ALL=C sort)
    for bibliotheque in KVCalcul kv; do
        if "$arch-w64-mingw32-objdump" -p "build/windows-$arch/$bibliotheque.dll" |
            grep -qiE 'DLL Name: (libgcc|libstdc|libwinpthread)'; then
            echo "$bibliotheque.dll needs a compiler runtime." >&2
            exit 1
        fi
    done
done
echo "kv.dll exports what kv.h declares, 32 and 64 bits."

retour() { # retour FUNCTION: its first return
    i686-w64-mingw32-objdump -d --no-show-raw-insn --disassemble="$1" "$dll" | awk '!vu && $2 == "ret" {print $2, $3; vu = 1}' | xargs
}
[ "$(retour '_TPeriodeConstructor@4')" = 'ret $0x4' ] && [ "$(retour '_TPeriodeDestructor@4')" = 'ret $0x4' ] ||
    {
        echo "The period functions do not clean their arguments (stdcall)." >&2
        exit 1
    }
[ "$(retour _KV_Calcul_AffecteCaseEntree)" = 'ret' ] && [ "$(retour _KV_Calcul_LireCaseSortie)" = 'ret' ] ||
    {
        echo "The session functions clean their arguments: they are not cdecl." >&2
        exit 1
    }
echo "Calling conventions: stdcall for the period functions, cdecl for the others."

# Hosts that find the installed library and link against its import library.
for arch in i686 x86_64; do
    cmake --install "build/windows-$arch" --prefix "$travail/$arch" >/dev/null
    cmake -G Ninja -S tests/installation -B "$travail/hotes-$arch" -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-$arch.cmake" \
        -DCMAKE_PREFIX_PATH="$travail/$arch" -DEXEMPLES="$PWD/examples" -DCMAKE_BUILD_TYPE=Release >/dev/null
    cmake --build "$travail/hotes-$arch" -- --quiet
done
echo "Hosts link against the installed import library, 32 and 64 bits."

if ! command -v wine >/dev/null; then
    echo "Wine is not here: the figures were not compared with the native build."
    exit 0
fi
natif=build/release
cc -std=c11 -I. examples/hote.c -o "$travail/hote" "$natif/libKVCalcul.so" -Wl,-rpath,"$PWD/$natif"
cc -std=c99 -Iinterface examples/foyer.c -o "$travail/foyer" "$natif/libkv.so" -Wl,-rpath,"$PWD/$natif"
cp "$travail/x86_64/bin/"*.dll "$travail/hotes-x86_64"
export WINEPREFIX="$travail/wine" WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=
comptes=0
for exemple in examples/*.json; do
    # The boxes of the return, as NAME=VALUE.
    boxes=$(grep -oE '"[A-Za-z0-9]+": -?[0-9]+' "$exemple" | tr -d '" ' | tr ':' '=')
    # shellcheck disable=SC2086  # one argument per box
    diff <("$travail/hote" $boxes) <(wine "$travail/hotes-x86_64/hote_c.exe" $boxes 2>/dev/null | tr -d '\r') ||
        {
            echo "$exemple: the Windows library gives other figures." >&2
            exit 1
        }
    comptes=$((comptes + 1))
done
diff <("$travail/foyer") <(wine "$travail/hotes-x86_64/foyer_c.exe" 2>/dev/null | tr -d '\r') ||
    {
        echo "kv.dll gives other figures." >&2
        exit 1
    }
echo "$comptes example returns and the household of kv.h give the same outputs under Wine and natively."
