#!/usr/bin/env bash
# Everything that a change must pass, with how long each part takes. What this machine can't have is left out, and said.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
durees=()

partie() { # partie VERB [ARGUMENT...]
    local debut=$SECONDS etat=0
    echo "=== ./kv $*"
    ./kv "$@" || etat=$?
    durees+=("$(printf '%4d s  ./kv %s' $((SECONDS - debut)) "$*")")
    if [ $etat -eq 3 ] && [ "$1" = windows ]; then # its compiler can't be installed
        echo "The Windows libraries were not checked."
    elif [ $etat -ne 0 ]; then
        echo "./kv $* failed." >&2
        exit $etat
    fi
}

partie test
partie test sanitize
partie test threads
partie lint
partie python
partie web test
partie windows
partie agree 1000 gcc sanitizers windows-64 wasm
partie fuzz 30
partie speed
printf '%s\n' "" "${durees[@]}" "$(printf '%4d s  in all' $SECONDS)"
