#!/usr/bin/env bash
# run.sh PROGRAM SCRIPT: plays a script headless in an empty player's folder. A line "# options: …" in the script adds
# options of the program.
set -euo pipefail
program=$1 script=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
read -r -a options < <(sed -n 's/^# options: //p' "$script"; echo)
"$program" --headless --script "$script" --user "$work/user" --shots "$work/shots" --trace "$work/trace" \
    "${options[@]}"
# The same once more gives the same trace.
rm -rf "$work/user"
"$program" --headless --script "$script" --user "$work/user" --trace "$work/again" "${options[@]}"
cmp "$work/trace" "$work/again"
