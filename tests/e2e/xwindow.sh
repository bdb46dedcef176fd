#!/usr/bin/env bash
# xwindow.sh BUILD: the game in a real window under a virtual X server, driven by a real pointer and keyboard. The
# window's picture is compared with the one that the program draws in memory, and the recorded session, played again
# headless, has to give the same trace.
set -euo pipefail
build=$(readlink -f "$1")
here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
work=$(mktemp -d)
pids=()
cleanup() {
    kill "${pids[@]}" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT
fail() {
    echo "xwindow: $*" >&2
    tail -20 "$work"/trace "$work"/log 2>/dev/null >&2 || true
    exit 1
}

# A server on the first display number that is free.
exec 3>"$work/display"
Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 100); do
    [ -s "$work/display" ] && break
    sleep 0.1
done
[ -s "$work/display" ] || fail "Xvfb didn't start"
export DISPLAY=:$(cat "$work/display") SDL_AUDIODRIVER=dummy

"$build/bin/seawarden" --user "$work/user" --trace "$work/trace" --record "$work/session.script" >"$work/log" 2>&1 &
game=$!
pids+=("$game")

# traced TEXT [TIMES]: waits until the trace holds the text that often.
traced() {
    local text=$1 times=${2:-1}
    for _ in $(seq 200); do
        [ "$(grep -cF -- "$text" "$work/trace" 2>/dev/null || true)" -ge "$times" ] && return 0
        kill -0 "$game" 2>/dev/null || [ "$text" = quit ] || fail "the game ended before: $text"
        sleep 0.1
    done
    fail "the trace never had: $text"
}
window=
for _ in $(seq 100); do
    window=$(xdotool search --onlyvisible --name '^Seawarden' 2>/dev/null | head -1) && [ -n "$window" ] && break
    sleep 0.1
done
[ -n "$window" ] || fail "no window"
eval "$(xdotool getwindowgeometry --shell "$window")"
[ "$WIDTH" = 800 ] && [ "$HEIGHT" = 600 ] || fail "the window is $WIDTH by $HEIGHT"
at() { xdotool mousemove --window "$window" "$1" "$2"; sleep 0.3; }
click() { at "$1" "$2"; xdotool mousedown 1; sleep 0.2; xdotool mouseup 1; sleep 0.3; }

traced 'send 0x3aa2 to=interface'
xdotool windowfocus "$window" 2>/dev/null || true
sleep 0.5

# The picture in the window is the one in memory, but for the last bit of a channel, which the display rounds in its
# own way, and the cursor, which the X server's picture doesn't hold.
at 300 560
import -window "$window" "$work/window.png"
printf 'until send 0x3aa2 to=interface\nframes 20\nmove 300 560\nframes 5\nshot menu\nquit\n' >"$work/shot.script"
"$build/bin/seawarden" --headless --script "$work/shot.script" --shots "$work" --user "$work/user2"
different=$(compare -metric AE -fuzz 1% "$work/window.png" "$work/menu.png" null: 2>&1 || true)
[ "${different%%.*}" = 0 ] || fail "$different pixels of the window differ from the memory's picture"

# The hidden code, and its answer.
xdotool type --delay 120 qiru
traced 'command code=40'
traced 'event code=8'
sleep 0.5
click 400 412
traced 'sound itfButtonClick'

# Single scenarios: sorted by the year, a look into the import, a scenario by a double click, the other side, the next
# grade, and the battle until Escape and yes.
shaded() { traced 'send 0x3aa2 to=interface' "$1"; sleep 0.5; }
click 640 199
shaded 2
click 290 92
click 400 560
shaded 3
click 706 560
shaded 4
at 200 118
xdotool click --repeat 2 --delay 100 1
shaded 5
click 440 308
click 760 519
click 706 560
traced 'command code=10'
traced 'l=100 l=0'
sleep 1
xdotool key Escape
traced 'event code=18'
sleep 0.5
click 314 412
traced 'send 0x2b3e to=logic'
shaded 6
clicks=$(grep -c 'sound itfButtonClick' "$work/trace")

# Quit, no, quit, yes, any key.
click 640 470
traced 'sound itfMenuClick' 2
click 485 412
traced 'sound itfButtonClick' $((clicks + 1))
click 640 470
traced 'sound itfMenuClick' 3
click 314 412
traced 'sound itfButtonClick' $((clicks + 2))
sleep 0.5
click 400 300
kill -0 "$game" || fail "a click ended the closing picture"
xdotool key space
traced quit
wait "$game" || fail "the game ended with status $?"

"$build/bin/seawarden" --headless --script "$work/session.script" --trace "$work/replay" --user "$work/user3" ||
    fail "the recorded session can't be played"
diff "$work/trace" "$work/replay" >&2 || fail "the recorded session gives another trace"
echo "The real window passed"
