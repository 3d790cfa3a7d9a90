#!/usr/bin/env bash
# Runs every recipe of the manual, as it is printed there, on a demo day: manual_recipes.sh DRAVIK_CLI MANUAL_FOLDER
set -euo pipefail
program=$(realpath "$1")
manual=$(realpath "$2")
if ! command -v jq >/dev/null; then
    echo "jq is not installed: skipped"
    exit 77
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin" "$work/day" "$work/papers"
ln -s "$program" "$work/bin/dravik-cli"
export PATH="$work/bin:$PATH" CARD="$work/card" DAY="$work/day/12" DAYS="$work/day" PAPERS="$work/papers"
dravik-cli demo --takes 12 "$CARD"
mkdir "$DAY"

# The blocks of a page, one script each.
recipes() { awk -v to="$work/$2-" '/^```sh$/ { on = 1; file = sprintf("%s%02d.sh", to, ++n); next } /^```$/ { on = 0 } on { print > file }' "$manual/$1"; }
recipes command-line.md cli
recipes after-a-crash.md crash

count=0
for recipe in "$work"/cli-*.sh "$work"/crash-*.sh; do
    echo "--- $(cat "$recipe")"
    bash -eu -o pipefail "$recipe"
    count=$((count + 1))
done
echo "$count recipes"
# Any block that the line above did not take for one would go untried.
[ "$count" -eq "$(cat "$manual/command-line.md" "$manual/after-a-crash.md" | grep -c '^ *```sh')" ] || {
    echo "the pages have another number of recipes"
    exit 1
}

# What they promise.
changed=0
cmp -s "$CARD/12-T01.WAV" "$DAY/12-T01.WAV" || changed=$?
[ "$changed" -eq 1 ] || { # 2: one of them is missing
    echo "the tape name was not written"
    exit 1
}
[ "$(dravik-cli scan --json "$DAY" | jq -r '[.groups[].tape] | unique | join(",")')" = A003 ]
[ "$(find "$DAY/polys" -name '*_merge.wav' | wc -l)" -ge 1 ]
[ "$(find "$DAY/listen" -name '*.mp3' | wc -l)" -ge 1 ]
[ "$(dravik-cli scan --json "$DAY" | jq '[.groups[] | select(.circled)] | length')" -eq "$(find "$DAY/listen" -name '*.mp3' | wc -l)" ]
[ -s "$PAPERS/12_SoundReport.pdf" ] && [ -s "$PAPERS/12_SoundReport.csv" ]
