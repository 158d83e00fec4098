#!/usr/bin/env bash
# Makes the files of a version in build/release-files, from what is committed, and tries each from a folder that holds
# nothing else: the sources are built, a host is built against the libraries, the wheel is installed, the page is opened.
#   release.sh   what is built already: release, the wheel, the page
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
racine=$PWD
if [ -n "$(git status --porcelain)" ]; then
    echo "A version is made of what is committed; these files are not:" >&2
    git status --short >&2
    exit 1
fi
version=$(sed -n 's/^project(KVCalcul VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
for ailleurs in python/pyproject.toml:version web/package.json:'"version"'; do
    grep -qE "^ *${ailleurs#*:}( =|:) \"$version\"" "${ailleurs%%:*}" || {
        echo "${ailleurs%%:*} is not of version $version." >&2
        exit 1
    }
done
grep -q "^## $version" CHANGELOG.md || {
    echo "CHANGELOG.md does not say what version $version is." >&2
    exit 1
}
travail=$(mktemp -d)
trap 'wineserver -k 2>/dev/null || true; rm -rf "$travail"' EXIT
fichiers=$racine/build/release-files nom=kvcalcul-$version
rm -rf "$fichiers"
mkdir -p "$fichiers"

# What is packed: files in one order, of one owner, dated by the commit.
paquet() { # paquet FOLDER ARCHIVE: FOLDER as the only one at the top of a .tar.gz
    tar -C "$(dirname "$1")" --sort=name --owner=0 --group=0 --numeric-owner --mtime="@$(git log -1 --format=%ct)" \
        -c "$(basename "$1")" | gzip -9n >"$fichiers/$2"
}
git archive --prefix="$nom/" HEAD | gzip -9n >"$fichiers/$nom-source.tar.gz"
linux=$nom-linux-$(uname -m)
cmake --install build/release --prefix "$travail/$linux" --strip >/dev/null
cp README.md CHANGELOG.md "$travail/$linux"
paquet "$travail/$linux" "$linux.tar.gz"
for arch in i686 x86_64; do
    [ -f "build/windows-$arch/build.ninja" ] || cmake --preset "windows-$arch" -G Ninja >/dev/null
    cmake --build --preset "windows-$arch" -- --quiet
    cmake --install "build/windows-$arch" --prefix "$travail/$nom-windows/$arch" --strip >/dev/null
done
cp README.md CHANGELOG.md "$travail/$nom-windows"
(cd "$travail" && python3 -m zipfile -c "$fichiers/$nom-windows.zip" "$nom-windows")
cp build/python/dist/"$nom"-*.whl "$fichiers"
cp -r build/web "$travail/$nom-page"
paquet "$travail/$nom-page" "$nom-page.tar.gz"
(cd "$fichiers" && sha256sum -- *.tar.gz *.zip *.whl >SHA256SUMS)

# Each from a clean folder. Everything computes the same household: 5 243 to pay, worked out in examples/hote.c.
mkdir "$travail/clean"
cd "$travail/clean"
sha256sum --quiet -c <(sed "s|  |  $fichiers/|" "$fichiers/SHA256SUMS")
attendu='parts 3.00, taxable income 65700, tax 5243, to pay 5243'
essaie() { # essaie WHAT COMMAND...: what it prints has the line
    "${@:2}" | tr -d '\r' | grep -qx "$attendu" || {
        echo "$1: the household does not give what it should." >&2
        exit 1
    }
    echo "tried: $1"
}
for archive in source "linux-$(uname -m)" page; do tar xzf "$fichiers/$nom-$archive.tar.gz"; done
python3 -m zipfile -e "$fichiers/$nom-windows.zip" .

(cd "$nom" && cmake --preset library -G Ninja >/dev/null && cmake --build --preset library -- --quiet && cmake --install build/library --prefix "$travail/clean/built" >/dev/null)
hote() { # hote PREFIX PROGRAM: the host of the example, against an installed library
    cc -std=c11 -I"$1/include/KVCalcul" "$nom/examples/hote.c" -o "$2" "$(find "$1" -name libKVCalcul.so)" \
        -Wl,-rpath,"$(dirname "$(find "$PWD/${1#"$PWD"/}" -name libKVCalcul.so)")"
}
hote built hote_source
essaie "the sources" ./hote_source
hote "$linux" hote_linux
essaie "the Linux library" ./hote_linux
"$linux/bin/kvcalcul" run --json "$nom/examples/couple-deux-enfants.json" >outputs.json
grep -q '"TOT_PAYER": *5243' outputs.json
echo "tried: kvcalcul"
for arch in i686 x86_64; do
    "$arch-w64-mingw32-gcc-posix" -std=c11 -I"$nom-windows/$arch/include/KVCalcul" "$nom/examples/hote.c" -o "hote_$arch.exe" \
        "$(find "$nom-windows/$arch" -name libKVCalcul.dll.a)"
done
cp "$(find "$nom-windows/x86_64" -name KVCalcul.dll)" .
if command -v wine >/dev/null; then
    export WINEPREFIX="$travail/wine" WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=
    essaie "the 64-bit Windows library" wine ./hote_x86_64.exe
else
    echo "Wine is not here: the Windows libraries were linked against, not run."
fi
python3 -m venv env
env/bin/pip install -q --disable-pip-version-check --require-hashes -r "$racine/python/requirements.txt"
env/bin/pip install -q --disable-pip-version-check --no-deps "$fichiers/$nom"-*.whl
env/bin/python - <<'FIN'
import kvcalcul
assert kvcalcul.compute({"M": 1, "Fm": 2, "1AJ": 42000, "1BJ": 31000})["TOT_PAYER"] == 5243
FIN
echo "tried: the wheel"
(cd "$racine/web" && KVPAGE="$travail/clean/$nom-page/" node --test --test-reporter=dot tests/ >"$travail/page" || { cat "$travail/page" && exit 1; })
echo "tried: the page"
cat "$fichiers/SHA256SUMS"
