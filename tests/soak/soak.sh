#!/usr/bin/env bash
# soak.sh BUILD INPUTS [SEED]: random players use the whole program headless, one seed behind the other from SEED on (1),
# until INPUTS inputs have gone through. A crash, a failed assertion, a leak, a line of the debug output or a window left
# over ends it; the script that repeats it is printed and kept in BUILD/soak.
set -euo pipefail
build=$(readlink -f "$1") inputs=$2 seed=${3:-1}
each=2500
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    mkdir -p "$build/soak"
    cp "$work/script" "$build/soak/seed-$seed.script"
    cat "$work/script"
    echo "soak: seed $seed: $1" >&2
    tail -40 "$work/log" >&2
    echo "The script above is $build/soak/seed-$seed.script; play it with: seawarden --headless --seed $seed --script FILE" >&2
    exit 1
}

done=0
while [ "$done" -lt "$inputs" ]; do
    "$build/bin/soak_player" "$seed" "$each" >"$work/script"
    rm -rf "$work/user" "$work/trace"
    status=0
    timeout 300 "$build/bin/seawarden" --headless --seed "$seed" --script "$work/script" --user "$work/user" \
        --trace "$work/trace" >"$work/log" 2>&1 || status=$?
    played=$each
    if [ "$status" -eq 1 ] && grep -q 'script([0-9]*): the program has ended' "$work/log"; then
        # The player found the way out. What he did up to there counts.
        line=$(sed -n 's/.*script(\([0-9]*\)): the program has ended.*/\1/p' "$work/log" | head -1)
        played=$(head -n "$line" "$work/script" | grep -vc '^frames' || true)
        grep -qx quit "$work/trace" || fail "it ended without a quit"
        grep -q 'Sanitizer\|runtime error' "$work/log" && fail "the sanitizer found something"
    elif [ "$status" -ne 0 ]; then
        fail "status $status"
    fi
    # An event that names no scenario is told, one that has nothing to show over a battle, and a file that can't
    # be imported.
    grep '^debug' "$work/trace" | grep -vE -m1 "^debug \"(Status: can't open |Battle: event -?[0-9]+ has nothing to show|Import: .*)\"$" >>"$work/log" &&
        fail "a line of the debug output"
    grep -m1 '^failure' "$work/trace" >>"$work/log" && fail "an exception"
    done=$((done + played))
    seed=$((seed + 1))
done
echo "Soak: $done inputs of random players passed"
