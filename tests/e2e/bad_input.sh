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
check "no home" 1 "--user" env -u HOME -u XDG_DATA_HOME "$program" --headless --script "$work/short.script"
: >"$work/empty.script"
check "empty script" 1 "empty.script is empty" "${game[@]}" --headless --script "$work/empty.script"
printf '\xef\xbb\xbf# nothing\n' >"$work/nothing.script"
check "script without commands" 1 "no command" "${game[@]}" --headless --script "$work/nothing.script"
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
broken "broken escape" $resource/texts.ini '16, "a"\n17, "x\\z"\n18, "c"\n' 0 'texts.ini(2)'
broken "broken profile" profile.ini '\0\0\0[[[' 0 ''
# A file that can't be played at its rate is told where a device asks for it. A window and a device that nobody sees
# and hears do.
wav='RIFF\x2c\0\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x01\0\0\0\x01\0\0\0\x01\0\x08\0data\x08\0\0\0abcdefgh'
broken "hostile sound, unheard" resource/sound/shade.wav "$wav" 0 ''
check "hostile sound" 0 'shade.wav: a rate of 1 frames' env SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy "${game[@]}" \
    --script "$work/short.script"

# A player's folder that nothing can be written to, also for somebody whom rights don't hold back.
rm -rf "$work/user"
mkdir -m 555 "$work/user"
weak=()
[ "$(id -u)" -ne 0 ] || weak=(setpriv --bounding-set=-all)
if [ "$(id -u)" -ne 0 ] || "${weak[@]}" true 2>/dev/null; then
    check "unwritable folder" 0 "can't be read and written" "${weak[@]}" "${game[@]}" --headless \
        --script "$work/short.script"
fi
chmod 755 "$work/user"

# A scenario that breaks between its briefing and the battle leads back to the menu, with the message about it. The
# briefing's picture goes into a pipe, where the program waits while the file is broken.
rm -rf "$work/user" "$work/data"
cp -r "$root/data" "$work/data"
find "$work/data/scenarios" -name '*.sc' ! -name pellan_roads.sc -delete
mkdir "$work/shots"
mkfifo "$work/shots/briefing.png"
{
    exec 3<"$work/shots/briefing.png"
    printf 'SWSC' >"$work/data/scenarios/pellan_roads.sc"
    cat <&3 >/dev/null
} &
breaker=$!
printf '%s\n' 'until send 0x3aa2' 'item MainDlg 10 1' 'frames 20' 'row ScenSelDlg 10 0 double' 'frames 20' 'shot briefing' \
    'refuse send 0x3aad' 'control ScenBriefDlg 30' 'until command code=10' 'until event code=20' 'frames 5' \
    'control MessageBoxDlg 10' 'frames 5' 'item MainDlg 10 1' 'frames 5' 'quit' >"$work/breaks.script"
check "scenario broken behind the briefing" 0 'Battle: scenarios\pellan_roads.sc: a file of 4 bytes' "${game[@]}" --data "$work/data" \
    --headless --script "$work/breaks.script" --shots "$work/shots"
kill "$breaker" 2>/dev/null
wait

# without NAME FILE STATUS TEXT SCRIPT: a run of the script with a copy of the game's data that lacks a file.
data=$root/data
without() {
    local name=$1 file=$2 status=$3 text=$4 script=$5
    rm -rf "$work/user" "$work/data"
    cp -r "$data" "$work/data"
    rm -r "${work:?}/data/resource/$file"
    printf '%b' "until send 0x3aa2\n$script" >"$work/without.script"
    check "$name" "$status" "$text" "${game[@]}" --data "$work/data" --headless --script "$work/without.script"
}
yes='item MainDlg 10 10\nframes 5\ncontrol MessageBoxYesNoDlg 10\nframes 5\n'
leave="${yes}key space\nuntil quit\n"
without "no closing pictures" images/pic 0 '' "${yes}until quit\n"
without "no clip" video/seawardenintro.ani 0 'there is no clip' "item MainDlg 10 8\nframes 20\n$leave"
without "no picture of the clip" images/intro/card.png 0 'card.png' "item MainDlg 10 8\nframes 40\nkey a\nframes 5\n$leave"
# What fails in the middle of a run is told, and the menu comes back.
again='until failure interface\nuntil event code=0\nuntil send 0x3aa2\nframes 3\nquit\n'
without "no sprite" images/itf/btup.png 0 'btup.png' "item MainDlg 10 10\n$again"
without "no credits" txt_res/itfCredits.txt 0 'itfCredits.txt' "item MainDlg 10 7\n$again"
exit $failed
