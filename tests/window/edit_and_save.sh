#!/usr/bin/env bash
# Starts the built program on a display of its own, with a copy of real recordings; edits a scene with keys alone, saves,
# quits, and reads the file back with the command line program.
#   edit_and_save.sh DRAVIK DRAVIK_CLI SAMPLES
# Exit code 77: something that it needs is not here, and nothing was tested.
set -euo pipefail
dravik=$1 cli=$2 samples=$3

for tool in Xvfb openbox xdotool python3; do
    command -v "$tool" >/dev/null || {
        echo "SKIPPED: $tool is not installed"
        exit 77
    }
done
source=$samples/recorder_a_poly_mono
[ -d "$source" ] || {
    echo "SKIPPED: the sample recordings are not here"
    exit 77
}

work=$(mktemp -d)
display_pid='' manager_pid='' program_pid=''
cleanup() {
    for pid in $program_pid $manager_pid $display_pid; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

fail() {
    echo "FAILED: $*"
    cat "$work/program.log" || true
    exit 1
}

# Digest of the audio alone.
audio() {
    python3 - "$1" <<'PY'
import hashlib, struct, sys
data = open(sys.argv[1], "rb").read()
at = 12
while data[at:at + 4] != b"data":
    at += 8 + struct.unpack("<I", data[at + 4:at + 8])[0] + data[at + 4] % 2
print(hashlib.sha256(data[at + 8:at + 8 + struct.unpack("<I", data[at + 4:at + 8])[0]]).hexdigest())
PY
}

mkdir "$work/day" "$work/home"
cp "$source"/*.[wW][aA][vV] "$work/day"
chmod u+w "$work/day"/*
file=$(find "$work/day" -type f | LC_ALL=C sort | head -n 1)
before=$(audio "$file")

Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp 3>"$work/display" 2>"$work/xvfb.log" &
display_pid=$!
for _ in $(seq 100); do
    [ -s "$work/display" ] && break
    sleep 0.1
done
DISPLAY=:$(cat "$work/display")
# Its own folder for sockets as well: a Dravik that runs already would take the files over.
export DISPLAY TMPDIR=$work/home HOME=$work/home XDG_CONFIG_HOME=$work/home XDG_CACHE_HOME=$work/home QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY
openbox >/dev/null 2>&1 &
manager_pid=$!
# A window that is mapped while the window manager takes the display over can stay unmapped.
for _ in $(seq 100); do
    xdotool get_desktop >/dev/null 2>&1 && break
    sleep 0.1
done

"$dravik" --verbose "$work/day" >"$work/program.log" 2>&1 &
program_pid=$!
window=''
for _ in $(seq 150); do
    window=$(xdotool search --onlyvisible --class dravik 2>/dev/null | head -n 1) || true
    [ -n "$window" ] && break
    kill -0 "$program_pid" 2>/dev/null || fail "the program ended by itself"
    sleep 0.2
done
[ -n "$window" ] || fail "no window came up"
# The window manager may still be starting.
active=''
for _ in $(seq 50); do
    xdotool windowactivate "$window" 2>/dev/null || true
    active=$(xdotool getactivewindow 2>/dev/null) || true
    [ "$active" = "$window" ] && break
    sleep 0.2
done
[ "$active" = "$window" ] || fail "the window did not get the keyboard"
sleep 1

scene="E2E 7"
xdotool key --delay 60 alt+2 ctrl+Home      # the first take of the table
sleep 0.5
xdotool key --delay 60 alt+3 Tab ctrl+a     # the editor's second field is the scene
xdotool type --delay 40 "$scene"
xdotool key --delay 60 ctrl+s

saved=''
for _ in $(seq 100); do
    saved=$("$cli" show --json "$file" | python3 -c 'import json,sys; print(json.load(sys.stdin)["scene"])' 2>/dev/null || true)
    [ "$saved" = "$scene" ] && break
    sleep 0.2
done
[ "$saved" = "$scene" ] || fail "the file's scene is \"$saved\""

xdotool key --delay 60 ctrl+q
for _ in $(seq 50); do
    kill -0 "$program_pid" 2>/dev/null || break
    sleep 0.1
done
kill -0 "$program_pid" 2>/dev/null && fail "the program did not quit"
wait "$program_pid" || fail "the program ended with an error"
program_pid=''

after=$(audio "$file")
[ "$before" = "$after" ] || fail "the audio has changed"
echo "The scene was edited, saved and read back; the audio is as it was."
