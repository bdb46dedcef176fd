#!/usr/bin/env bash
# bad_input.sh PROGRAM: wrong options, a missing data folder, broken resources and scripts. Each gives one clear line and
# its exit status; nothing crashes.
set -uo pipefail
program=$1
root=$(dirname "$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

# check NAME STATUS TEXT COMMAND...: the exit status, and a text that the output must hold.
check() {
    local name=$1 status=$2 text=$3 got
    shift 3
    timeout 60 "$@" >"$work/out" 2>&1
    got=$?
    if [ "$got" -ne "$status" ]; then
        echo "$name: status $got, not $status"
        cat "$work/out"
        failed=1
    elif [ -n "$text" ] && ! grep -qF -- "$text" "$work/out"; then
        echo "$name: the output lacks: $text"
        cat "$work/out"
        failed=1
    fi
}
# broken NAME FILE CONTENT STATUS TEXT: a run with one file of the player hiding the game's.
broken() {
    local name=$1 file=$2 content=$3 status=$4 text=$5
    rm -rf "$work/user"
    mkdir -p "$(dirname "$work/user/$file")"
    printf '%b' "$content" >"$work/user/$file"
    check "$name" "$status" "$text" "$program" --headless --script "$work/short.script" --user "$work/user"
}
printf 'frames 30\nquit\n' >"$work/short.script"
game=("$program" --user "$work/user")
resource=resource/txt_res

check "unknown option" 2 "--nonsense" "$program" --nonsense
check "bad size" 2 "--size" "$program" --size 0x7
check "no data folder" 1 "nowhere" "${game[@]}" --data "$work/nowhere" --headless --script "$work/short.script"
check "no script" 1 "missing.script" "${game[@]}" --headless --script "$work/missing.script"
check "no display" 1 "--headless" env -u DISPLAY -u WAYLAND_DISPLAY SDL_VIDEODRIVER= "${game[@]}"
printf 'frames 2\n\nfly 3\n' >"$work/wrong.script"
check "wrong command" 1 "wrong.script(3)" "${game[@]}" --headless --script "$work/wrong.script"
printf 'frames 2\nexpect never\n' >"$work/fails.script"
check "failed script" 1 "fails.script(2)" "${game[@]}" --headless --script "$work/fails.script"

broken "unknown keyword" $resource/itfdlg.ini 'MainDlg {\nWIDGET, 1 }' 1 'itfdlg.ini(2)'
broken "no section" $resource/itfdlg.ini 'Other { DIALOG, "", 0, 0, 1, 1 }' 1 'no section MainDlg'
broken "no menu" $resource/itfdlg.ini 'MainDlg { DIALOG, "", 0, 0, 9, 9 }' 1 'MainDlg'
broken "early end" $resource/itfdlg.ini 'MainDlg { DIALOG, "", 0, 0' 1 'Error code: 1'
broken "broken names" $resource/itfnames.ini 'SpriteMap {\n itfA "a }' 1 'itfnames.ini(2)'
broken "broken picture" resource/images/itf/mainmenu.png 'no picture' 0 'mainmenu.png'
broken "broken sound" resource/sound/shade.wav 'RIFF' 0 ''
broken "broken font" $resource/menu.fnt 'texture' 0 'menu.fnt'
broken "broken texts" $resource/texts.ini '16, "a"\nx, "b"\n' 0 'texts.ini(2)'
broken "broken profile" profile.ini '\0\0\0[[[' 0 ''
exit $failed
