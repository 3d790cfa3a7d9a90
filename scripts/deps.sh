#!/usr/bin/env bash
# Installs what Dravik is built, tested and checked with, as far as it is missing.
#
#   scripts/deps.sh [build] [test] [checks] [clang] [package] [proof]     (the first four when none is named)
#
# Or source it and call: dravik_install SET...
# Only Debian and Ubuntu are known by their package names. On another system the names are printed as a hint, and the
# build goes on: cmake says what it does not find.

# The packages of a set, one a line.
dravik_packages() {
    case "$1" in
        build) # what the program is made of
            printf '%s\n' g++ cmake ninja-build pkg-config ccache mold \
                libfmt-dev libutf8proc-dev libsndfile1-dev libmpg123-dev libavformat-dev libavcodec-dev libavutil-dev \
                libsoxr-dev libmp3lame-dev qt6-base-dev qt6-svg-dev libsdl2-dev libspdlog-dev fonts-dejavu-core libcli11-dev \
                librsvg2-bin nlohmann-json3-dev \
                qt6-tools-dev qt6-l10n-tools # compile the catalogues of texts, and bring them up to date
            ;;
        test) # libraries of tests and benchmarks, and the programs that judge the files we make
            printf '%s\n' libgtest-dev libgmock-dev libpcre2-dev libbenchmark-dev openssl python3 \
                ffmpeg sox sndfile-programs mediainfo poppler-utils qpdf jq pulseaudio pulseaudio-utils \
                xvfb xauth openbox xdotool # a display, a window manager and keys for the window's end-to-end test
            ;;
        package) # what package.sh packs with
            printf '%s\n' dpkg-dev file xz-utils git lintian
            ;;
        proof) printf '%s\n' mmdebstrap ;; # a fresh system for tools/prove_package
        checks) printf '%s\n' clang-format-14 shellcheck codespell desktop-file-utils appstream man-db zsh fish ;;
        clang) # clang-tidy and the fuzz targets; Debian 12 has it in its security archive
            printf '%s\n' clang-22 clang-tidy-22 libclang-rt-22-dev
            ;;
        *)
            echo "deps.sh: there is no set of packages named $1" >&2
            return 2
            ;;
    esac
}

# Packages of the given sets that are not installed, one a line.
dravik_missing() {
    local set package
    for set in "$@"; do
        for package in $(dravik_packages "$set"); do
            case "$(dpkg -s "$package" 2>/dev/null)" in
                *"Status: install ok installed"*) ;;
                *) echo "$package" ;;
            esac
        done
    done
}

# apt-get as root, asking nothing, waiting for another one that is running.
dravik_apt_get() {
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Not root and no sudo here. Have this run by an administrator: apt-get $*" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -y -q -o DPkg::Lock::Timeout=300 "$@" </dev/null
}

# Fetches the package lists, at most once a run.
dravik_update_lists() {
    if [ -z "${dravik_lists_updated-}" ]; then
        dravik_apt_get update || echo "The package lists could not be fetched; going on with the ones that are here." >&2
        dravik_lists_updated=yes
    fi
}

# Installs what is missing of the given sets. Fails when that cannot be done. Everything it prints goes to standard error.
dravik_install() {
    local missing
    if ! command -v dpkg >/dev/null || ! command -v apt-get >/dev/null; then
        local set
        echo "Not a Debian or Ubuntu system: nothing is installed. Needed, by their Debian names:" >&2
        for set in "$@"; do
            echo "  $set: $(dravik_packages "$set" | tr '\n' ' ')" >&2
        done
        return 0
    fi
    mapfile -t missing < <(dravik_missing "$@")
    if [ ${#missing[@]} -eq 0 ]; then return 0; fi
    echo "Installing: ${missing[*]}" >&2
    dravik_update_lists >&2
    dravik_apt_get install --no-install-recommends "${missing[@]}" >&2
}

# Is every package of the sets installed, or could apt-get install it? Prints those that it does not know.
dravik_unavailable() {
    local missing package
    if ! command -v apt-get >/dev/null; then return 0; fi
    mapfile -t missing < <(dravik_missing "$@")
    if [ ${#missing[@]} -eq 0 ]; then return 0; fi
    dravik_update_lists >&2
    for package in "${missing[@]}"; do
        # A package that is only named by others has a policy without a candidate.
        if ! apt-cache policy "$package" 2>/dev/null | grep -q '^  Candidate: [^(]'; then echo "$package"; fi
    done
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
    set -euo pipefail
    for set in "$@"; do
        if ! dravik_packages "$set" >/dev/null; then
            sed -n '2,8s/^# \{0,1\}//p' "$0" >&2
            exit 2
        fi
    done
    if [ $# -eq 0 ]; then set -- build test checks clang; fi
    dravik_install "$@"
fi
