#!/bin/bash
# Renders the pictures, fonts and sounds of data/ from their sources in this folder.
# usage: art/build.sh [SEAWARDEN-FONTMAKER]
# Needs rsvg-convert, ImageMagick and python3. The font tool is looked for in build/release/bin when it isn't given.
set -euo pipefail
cd "$(dirname "$0")"
fontmaker=${1:-../build/release/bin/seawarden-fontmaker}
images=../data/resource/images
texts=../data/resource/txt_res
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export FONTCONFIG_FILE=$PWD/fonts/fonts.conf
mkdir -p $images/itf $images/pic ../data/resource/video $texts

# expand SVG [NAME=VALUE...]: the SVG on stdout; a line @name@ becomes the file name=FILE or svg/name.inc,
# every other @NAME@ its value.
expand() {
    local file=$1 setting
    local script=(-e '/^@defs@$/{r svg/defs.inc' -e 'd}')
    shift
    for setting in "$@"; do
        if [[ $setting == [a-z]* ]]; then
            script+=(-e "/^@${setting%%=*}@\$/{r svg/${setting#*=}" -e 'd}')
        else
            script+=(-e "s|@${setting%%=*}@|${setting#*=}|g")
        fi
    done
    sed "${script[@]}" "svg/$file.svg"
}

# sizes W H: the settings that a frame of that size needs
sizes() {
    local n
    echo "W=$1 H=$2 WS=$(($1 - 13)) HS=$(($2 - 13))"
    for n in 2 3 4 6 7 8 11; do echo "W$n=$(($1 - n)) H$n=$(($2 - n))"; done
}

# solid OUT SVG [NAME=VALUE...]: a picture without transparency, which the game dithers
solid() {
    local out=$1
    shift
    expand "$@" | rsvg-convert -o "$work/solid.png"
    convert "$work/solid.png" -background black -alpha remove -alpha off -strip -define png:compression-level=9 "PNG24:$images/$out"
}

# cut OUT SVG [NAME=VALUE...]: a picture with transparent parts
cut_out() {
    local out=$1
    shift
    expand "$@" | rsvg-convert -o "$work/cut.png"
    convert "$work/cut.png" -strip -define png:compression-level=9 "PNG32:$images/$out"
}

# closing OUT SCENE CAPTION: a closing picture
closing() {
    expand still scene="$2" Y1=570 LINE1="$3" LINE2= | rsvg-convert -o "$work/closing.png"
    convert "$work/closing.png" -alpha remove -alpha off -strip -type TrueColor -orient TopLeft -compress RLE "$images/pic/$1.tga"
    # The rows come top down, which this byte of the head has to say.
    printf '\x20' | dd of="$images/pic/$1.tga" bs=1 seek=17 conv=notrunc status=none
}

button_pair() {
    solid "itf/$1up.png" button $(sizes "$2" "$3") TOP=#2a4370 BOTTOM=#14223e LIGHT=#5f7fb4 LINE=#33496f
    solid "itf/$1down.png" button $(sizes "$2" "$3") TOP=#0c1526 BOTTOM=#1c2f52 LIGHT=#060a14 LINE=#8a6a30
}

arrow_pair() {
    solid "itf/$1.png" arrow TURN="$2" FACE=#1c2c4c LIGHT=#4a648f MARK=#f0d48c
    solid "itf/$1a.png" arrow TURN="$2" FACE=#0a1224 LIGHT=#04070f MARK=#fff2c0
}

check_pair() {
    solid "itf/$1.png" check $(sizes "$2" 32) mark="mark_$3.inc"
    solid "itf/$1set.png" check $(sizes "$2" 32) mark="mark_$3set.inc"
}

step_pair() {
    solid "itf/$1.png" step TURN="$2" TOP=#2a4370 BOTTOM=#14223e LIGHT=#5f7fb4 MARK=#f0d48c
    solid "itf/$1a.png" step TURN="$2" TOP=#0c1526 BOTTOM=#1c2f52 LIGHT=#060a14 MARK=#fff2c0
}

solid itf/mainmenu.png mainmenu
solid itf/fade.png fade
solid itf/fade2.png fade2 scene=scene_night.inc
solid itf/logo.png logo
button_pair bt 140 32
arrow_pair arrup 0
arrow_pair arrdown 180
arrow_pair arrleft 270
arrow_pair arrright 90
solid itf/thumb.png thumb $(sizes 18 30) BRASS=brassH 'GRIP=M5,11.5 H13 M5,14.5 H13 M5,17.5 H13'
solid itf/horthumb.png thumb $(sizes 30 18) BRASS=brass 'GRIP=M11.5,5 V13 M14.5,5 V13 M17.5,5 V13'
solid itf/progressempty.png progress FILL=#16213a TICKS=0.6
solid itf/progressfull.png progress 'FILL=url(#lit)' TICKS=0.35
solid itf/message.png box $(sizes 480 288) plate=plate_msg.inc
solid itf/messagepaper.png paper $(sizes 428 164)
solid itf/edit.png box $(sizes 440 204) plate=plate_none.inc
solid itf/editpaper.png paper $(sizes 396 72)
solid itf/editfield.png field $(sizes 396 32)
solid itf/dialog.png box $(sizes 800 600) plate=plate_none.inc
solid itf/dialogtitle.png plate $(sizes 752 44)
solid itf/filelist.png table $(sizes 752 420) columns=plate_none.inc
solid itf/folderfield.png field $(sizes 516 32)
solid itf/filefield.png field $(sizes 352 32)
solid itf/scenariolist.png table $(sizes 752 204) columns=columns_scenarios.inc
solid itf/scenariosheet.png sheet $(sizes 752 248)
solid itf/orders.png paper $(sizes 752 158)
solid itf/sidea.png side $(sizes 372 256) STAFF=15 DROP=0
solid itf/sideb.png side $(sizes 372 256) STAFF=357 DROP=0
solid itf/nation.png plate $(sizes 206 36)
solid itf/ships.png table $(sizes 356 148) columns=columns_ships.inc
solid itf/stepfield.png field $(sizes 168 32)
check_pair command 206 ring
check_pair option 300 box
step_pair stepleft 0
step_pair stepright 180
cut_out itf/select.png band FILL=#3a639c LINE=#d9b45a
cut_out itf/selectwait.png band FILL=#7a5420 LINE=#a5742a
solid itf/tab.png button $(sizes 180 32) TOP=#2a4370 BOTTOM=#14223e LIGHT=#5f7fb4 LINE=#33496f
solid itf/helpicons.png help HEADING='In Battle' page=help_battle.inc TAB=34
solid itf/helpitf1.png help HEADING='Menus and Lists' page=help_front.inc TAB=234
solid itf/credits.png credits
button_pair btwide 160 32
solid itf/winart.png win
solid itf/loseart.png lose
solid itf/record.png record
solid itf/figures.png table $(sizes 752 361) columns=columns_figures.inc
solid itf/status.png box $(sizes 640 416) plate=plate_none.inc
solid itf/statustitle.png plate $(sizes 592 44)
solid itf/statussidea.png side $(sizes 292 142) STAFF=15 DROP=44
solid itf/statussideb.png side $(sizes 292 142) STAFF=277 DROP=44
solid itf/statusname.png plate $(sizes 272 36)
solid itf/statusorders.png paper $(sizes 592 138)
python3 portraits.py | rsvg-convert -o "$work/portraits.png"
convert "$work/portraits.png" -alpha remove -alpha off -strip "PNG24:$images/itf/leaders.png"
cut_out cursor.png cursor
cut_out icon.png icon

closing evening scene_sunset.inc 'Fair winds, Captain'
closing harbour scene_night.inc 'The harbour lights are burning for you'
closing morning scene_dawn.inc 'Until the next watch'

mkdir -p $images/intro
solid intro/card.png card
solid intro/fleet.png still scene=scene_sunset.inc Y1=558 LINE1='The battle line puts to sea' 'LINE2=Guns that reach beyond the eye'
solid intro/deep.png still scene=scene_deep.inc Y1=558 LINE1='The hunters lie below' 'LINE2=Silent, blind and patient'
solid intro/balloon.png still scene=scene_dawn.inc Y1=558 LINE1='And one man watches from above' 'LINE2=The first to see, the last to land'
solid intro/title.png title

# Flags: what flags.ini and the code name.
mkdir -p $images/../textures
for flag in svg/flags/*.svg; do
    name=$(basename "$flag" .svg)
    solid "../textures/$name.png" "flags/$name" hoist=flags/hoist.inc
done

for style in fontstyles/*.font; do
    name=$(basename "$style" .font)
    "$fontmaker" "$style" "$texts/$name.fnt" $images
    texture=$images/itf/fonts/$name.png
    convert "$texture" -strip -define png:compression-level=9 "PNG32:$texture"
done

python3 sounds.py ../data/resource
