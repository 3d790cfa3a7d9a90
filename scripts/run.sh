#!/usr/bin/env bash
# Installs what is missing, builds Dravik, and opens a folder of recordings in its window.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/run.sh [FOLDER]

Installs what is missing (Debian, Ubuntu), builds Dravik and opens FOLDER in its window.
Without FOLDER, makes a demo recording day first and opens that; it stays in
$XDG_CACHE_HOME/dravik/demo-day (or ~/.cache/dravik/demo-day).
Without a display, lists the takes and draws the window into a picture instead.
TEXT
}

folder=
case "${1-}" in
    -h | --help)
        usage
        exit 0
        ;;
    --) shift ;;
    -*)
        usage >&2
        exit 2
        ;;
esac
if [ $# -gt 1 ]; then
    usage >&2
    exit 2
fi
if [ $# -eq 1 ]; then
    case "$1" in
        /*) folder=$1 ;;
        *) folder=$PWD/$1 ;;
    esac
    if [ ! -e "$folder" ]; then
        echo "There is no $folder" >&2
        exit 1
    fi
fi

# The steps are told on standard error: standard output is for the list of takes and the picture's path.
step() { echo "==> $*" >&2; }

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
log=$root/build/run.log
mkdir -p "$root/build"
: >"$log"

# Runs a command with its output in the log, and shows the log's end when it fails.
logged() {
    if ! "$@" >>"$log" 2>&1; then
        tail -n 60 "$log" >&2
        echo "==> That failed. The whole log is in $log" >&2
        exit 1
    fi
}

# shellcheck source=scripts/deps.sh
. "$root/scripts/deps.sh"
step "Looking for what the build needs"
dravik_install build || {
    echo "==> The packages above could not be installed." >&2
    exit 1
}

cd "$root"
step "Building Dravik (the first time takes a minute or two)"
logged cmake --preset release -DDRAVIK_BENCH=OFF
# The codecs are a module that the programs load by themselves when they meet their first AIFF, FLAC or MP3.
logged cmake --build --preset release --target dravik dravik-cli dravik_media
cli=$root/build/release/bin/dravik-cli

if [ -z "$folder" ]; then
    cache=${XDG_CACHE_HOME:-${HOME:?is needed to know where to put the demo day}/.cache}/dravik
    folder=$cache/demo-day
    if [ ! -d "$folder" ]; then
        step "Making a demo recording day in $folder"
        mkdir -p "$cache"
        # Under another name until it is whole, so that a run that was stopped leaves no half of a day behind.
        rm -rf "$cache/demo-day.unfinished"
        logged "$cli" demo "$cache/demo-day.unfinished"
        mv -T "$cache/demo-day.unfinished" "$folder"
    fi
fi

has_display() {
    [ "$(uname)" = Darwin ] || [ -n "${WAYLAND_DISPLAY-}" ] || [ -n "${DISPLAY-}" ]
}

if has_display; then
    step "Opening $folder"
    exec "$root/build/release/bin/dravik" "$folder"
fi

step "There is no display here: the takes in $folder, and a picture of the window"
"$cli" scan "$folder"
picture=$root/build/window.png
QT_QPA_PLATFORM=offscreen "$root/build/release/bin/dravik" --picture "$picture" "$folder" >>"$log" 2>&1 || {
    tail -n 20 "$log" >&2
    exit 1
}
echo "$picture"
