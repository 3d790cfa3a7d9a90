#!/usr/bin/env bash
# Installs what is missing, builds everything with assertions and debug symbols, and runs every test.
# Ends with ctest's own summary; fails when a test fails or none is found.
set -euo pipefail

case "${1-}" in
    "") ;;
    *)
        echo "usage: scripts/test.sh    install, build and run every test; takes no arguments" >&2
        if [ "$1" = "-h" ] || [ "$1" = "--help" ]; then exit 0; else exit 2; fi
        ;;
esac

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/deps.sh
. "$root/scripts/deps.sh"
dravik_install build test

cd "$root"
cmake --preset dev
cmake --build --preset dev
exec ctest --preset dev --parallel "$(nproc)" --no-tests=error
