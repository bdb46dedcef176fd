#!/usr/bin/env bash
# textures.sh PROGRAM: pictures made by another program go through seawarden-tf and look the same behind it; the bytes
# of a texture file are at their places; what goes wrong is told with the file's name, and nothing is left half written.
set -uo pipefail
tool=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failed=0

fail() {
    echo "$1"
    failed=1
}
# same NAME WANTED GOT
same() { [ "$2" = "$3" ] || fail "$1: '$3', not '$2'"; }
# check NAME STATUS TEXT COMMAND...: the exit status, and a text that the output must hold.
check() {
    local name=$1 status=$2 text=$3 got
    shift 3
    timeout 60 "$@" >out.txt 2>&1
    got=$?
    [ "$got" -eq "$status" ] || fail "$name: status $got, not $status: $(cat out.txt)"
    [ -z "$text" ] || grep -qF -- "$text" out.txt || fail "$name: the output lacks '$text': $(cat out.txt)"
}
# patch FILE PLACE BYTES: the bytes, as \xHH, are put over those at that place.
patch() { printf '%b' "$3" | dd of="$1" bs=1 seek="$2" conv=notrunc status=none; }
# difference A B: the mean difference of two pictures, seen from so far away that dots melt, in thousandths of white.
difference() {
    convert "$1" -alpha off -resize 25% small_a.png && convert "$2" -alpha off -resize 25% small_b.png
    compare -metric MAE small_a.png small_b.png null: 2>&1 | sed 's/.*(\(.*\))/\1/' | awk '{printf "%d", $1 * 1000}'
}

# There and back.
convert -size 256x128 -seed 7 plasma:red-blue -blur 2 -fill white -draw 'rectangle 20,10 90,60' BMP3:flag.bmp
check "convert" 0 "" "$tool" convert flag.bmp flag.tf
same "header" "00 00 00 00 00 00 07 00 00 01 00 00 80 00 00 00" "$(od -An -tx1 -N16 flag.tf | xargs)"
convert flag.bmp -flop other.png
[ "$(difference flag.bmp other.png)" -gt 50 ] || fail "the comparison sees no difference"
place=16
for level in 0 1 2 3 4 5 6; do
    width=$((256 >> level)) height=$((128 >> level))
    check "export $level" 0 "" "$tool" export flag.tf $level level.png
    same "size of level $level" "$width $height" "$(identify -format '%w %h' level.png)"
    convert flag.bmp -scale ${width}x$height! scaled.png
    # A step of 5 bits is 32 thousandths, and in the smallest levels few pixels are left to even it out.
    [ "$(difference level.png scaled.png)" -le 30 ] || fail "level $level: $(difference level.png scaled.png)"
    read -r low high < <(od -An -tu1 -j$place -N2 flag.tf)
    word=$((low + high * 256))
    same "first pixel of level $level" "$((word >> 11 << 3)) $((word >> 3 & 252)) $((word << 3 & 248))" \
        "$(convert level.png -crop 1x1+0+0 -depth 8 rgb:- | od -An -tu1 | xargs)"
    place=$((place + width * height * 2))
done
same "length" $place "$(stat -c %s flag.tf)"
check "info" 0 "6: 4 by 2, 16 bytes at $((place - 16))" "$tool" info flag.tf
check "smaller" 0 "" "$tool" convert flag.bmp small.tf --size 64x32
"$tool" export small.tf 0 small.png && convert flag.bmp -scale 64x32! scaled.png
[ "$(difference small.png scaled.png)" -le 30 ] || fail "smaller: another picture"
mkdir -p far/away && ln -s far/away link
convert flag.bmp -flop BMP3:far/flag.bmp
"$tool" convert link/../flag.bmp far.tf && "$tool" export far.tf 0 far.png
[ "$(difference far.png other.png)" -le 30 ] || fail "behind a link: another picture"
check "darker" 0 "87 %" "$tool" convert flag.bmp dark.tf --size 20x10

# TGAs.
convert flag.bmp -crop 100x150+0+0 -scale 100x150! BMP3:face.bmp
convert face.bmp -compress none +dither -colors 200 -type Palette BMP3:mapped.bmp
convert face.bmp -compress none +dither -colors 16 -type Palette BMP3:four.bmp
convert face.bmp -compress none plain.tga
for source in face.bmp mapped.bmp four.bmp plain.tga; do
    convert $source -auto-orient wanted.png
    [ $source = plain.tga ] || {
        check "TGA of $source" 0 "" "$tool" bmp2tga $source made.tga
        convert made.tga -auto-orient seen.png
        same "TGA of $source" 0 "$(compare -metric AE wanted.png seen.png null: 2>&1)"
    }
    check "portrait of $source" 0 "" "$tool" bmp2tga $source made.tga --portrait
    convert made.tga -auto-orient -alpha off seen.png
    same "portrait of $source" 0 "$(compare -metric AE wanted.png seen.png null: 2>&1)"
done

# The last row's padding may be missing: 52 bytes a row, of which 50 are pixels.
length=$(($(stat -c %s four.bmp) - 2))
head -c $length four.bmp >unpadded.bmp
patch unpadded.bmp 2 "$(printf '\\x%x\\x%x' $((length & 255)) $((length >> 8)))"
check "without padding" 0 "" "$tool" bmp2tga unpadded.bmp made.tga
convert -size 1x2 xc:teal BMP3:two.bmp
head -c $(($(stat -c %s two.bmp) - 1)) two.bmp >unpadded.bmp
patch unpadded.bmp 2 "$(printf '\\x%x' $(($(stat -c %s two.bmp) - 1)))"
check "a texture without padding" 0 "" "$tool" convert unpadded.bmp made.tf

# What can't be done. The folder "made" stays as it is, with a file that would be replaced.
mkdir made
echo old >made/old
# refuse NAME TEXT COMMAND...: exit status 1, and nothing has changed.
refuse() {
    local name=$1 text=$2
    shift 2
    check "$name" 1 "$text" "$@"
    same "$name: files" old "$(ls made)"
    same "$name: content" old "$(cat made/old)"
}
convert face.bmp BMP3:- | head -c 20000 >cut.bmp
convert face.bmp -type TrueColor rich.bmp # a newer header
convert face.bmp -compress RLE packed.tga
head -c 3000 plain.tga >cut.tga
head -c 40000 flag.tf >cut.tf
cp flag.tf more.tf && echo >>more.tf
cp flag.tf wrong.tf && patch wrong.tf 5 '\x3'
: >empty
refuse "no such file" "none.bmp: can't be opened: No such file" "$tool" convert none.bmp made/old
refuse "folder" "made: is a folder" "$tool" convert made made/old
refuse "into a folder" "made: is a folder" "$tool" convert flag.bmp made
refuse "below a file" "made/old/x.tf: can't be written" "$tool" convert flag.bmp made/old/x.tf
refuse "no folder" "nowhere/x.tf: can't be written" "$tool" convert flag.bmp nowhere/x.tf
refuse "device" "/dev/null: isn't a file" "$tool" convert flag.bmp /dev/null
refuse "empty" "empty: is no BMP" "$tool" convert empty made/old
refuse "texture for a BMP" "flag.tf: is no BMP" "$tool" convert flag.tf made/old
refuse "cut BMP" "cut.bmp: has 20000 bytes, but" "$tool" bmp2tga cut.bmp made/old
refuse "newer header" "rich.bmp: has more than the plain header" "$tool" convert rich.bmp made/old
refuse "palette" "mapped.bmp: has 8 bits" "$tool" convert mapped.bmp made/old
refuse "larger" "can only be made smaller" "$tool" convert flag.bmp made/old --size 512x128
refuse "wrong size" "flag.bmp: is 256 by 128 pixels; a portrait" "$tool" bmp2tga flag.bmp made/old --portrait
refuse "packed TGA" "packed.tga: " "$tool" bmp2tga packed.tga made/old --portrait
refuse "cut TGA" "cut.tga: ends within" "$tool" bmp2tga cut.tga made/old --portrait
refuse "no level" "flag.tf: has no level 7 of 16 bits, but 0 to 6" "$tool" export flag.tf 7 made/old
refuse "no 8-bit level" "but none" "$tool" export flag.tf 0 made/old --8bit
refuse "cut texture" "cut.tf: ends" "$tool" export cut.tf 0 made/old
refuse "wrong format" "wrong.tf: is no texture file: its pixel format is 3" "$tool" export wrong.tf 0 made/old
printf '\0\1\1\0\0\1\0\x20\0\0\0\0\x64\0\x96\0\x8\0' >deep_map.tga && cat flag.tf >>deep_map.tga
printf '\0\0\2\0\0\0\0\0\0\0\0\0\x64\0\x96\0\x20\x8' >bare.tga
cp face.bmp gap.bmp && printf 'gap!' >>gap.bmp
patch gap.bmp 2 '\x02\xb0' && patch gap.bmp 10 '\x3a'
cp four.bmp short.bmp && patch short.bmp 28 '\x18'
cp mapped.bmp mapless.bmp && patch mapless.bmp 10 '\x36\x0'
truncate -s 4G huge.bmp huge.tf
cp flag.tf 'back\slash.tf'
mkfifo pipe
refuse "colour map" "deep_map.tga: has a palette of 32 bits" "$tool" bmp2tga deep_map.tga made/old --portrait
refuse "no pixels" "bare.tga: ends within" "$tool" bmp2tga bare.tga made/old --portrait
refuse "gap" "gap.bmp: has a palette that its 24 bits" "$tool" bmp2tga gap.bmp made/old
refuse "cut by its depth" "short.bmp: ends within" "$tool" bmp2tga short.bmp made/old
refuse "no palette" "mapless.bmp: has no palette" "$tool" bmp2tga mapless.bmp made/old
refuse "no palette in a portrait" "mapless.bmp: has no palette" "$tool" bmp2tga mapless.bmp made/old --portrait
refuse "huge BMP" "huge.bmp: has 4294967296 bytes" "$tool" bmp2tga huge.bmp made/old
refuse "huge texture" "huge.tf: has 4294967296 bytes" "$tool" info huge.tf
refuse "pipe" "pipe: isn't a file" "$tool" bmp2tga pipe made/old
refuse "no name to write to" '"": can'"'"'t be written' "$tool" convert flag.bmp ''
refuse "no name to read" '"": can'"'"'t be opened' "$tool" convert '' made/old
refuse "backslash" 'back\slash.tf: has a backslash' "$tool" info 'back\slash.tf'
refuse "backslash to write to" 'made/a\b: has a backslash' "$tool" convert flag.bmp 'made/a\b'
# shellcheck disable=SC2016
refuse "full output" "can't be written" bash -c '"$1" info flag.tf >/dev/full' - "$tool"
refuse "info of a cut file" "cut.tf: ends within that level" "$tool" info cut.tf
refuse "info of a long file" "more.tf: 1 bytes follow" "$tool" info more.tf

# A full disk: a small one where mounting is allowed, else a limit on the length of files.
# shellcheck disable=SC2016
{
    echo '#!/usr/bin/env bash'
    if unshare -m mount -t tmpfs none made 2>/dev/null; then
        echo '[ -n "${INSIDE:-}" ] || INSIDE=1 exec unshare -m "$0" "$@"'
        echo 'mount -t tmpfs -o size=16k none made && cp old made/old && "$@"'
        echo 'status=$?; [ "$(ls made)" = old ] && cmp old made/old && exit $status'
    else
        echo "trap '' XFSZ; ulimit -f 8; exec \"\$@\""
    fi
} >full
chmod +x full
cp made/old old
for command in "convert flag.bmp made/old" "export flag.tf 0 made/old" "bmp2tga flag.bmp made/old"; do
    # shellcheck disable=SC2086
    refuse "full disk: $command" "made/old: can't be written: " ./full "$tool" $command
done

# A folder that nothing can be written to, also for somebody whom rights don't hold back.
weak=()
[ "$(id -u)" -ne 0 ] || weak=(setpriv --bounding-set=-all)
if "${weak[@]}" true 2>/dev/null; then
    chmod 555 made
    refuse "read-only folder" "made/new.tf: can't be written: Permission denied" "${weak[@]}" "$tool" \
        convert flag.bmp made/new.tf
    chmod 755 made
fi

check "help" 0 "seawarden-tf bmp2tga" "$tool" --help
for command in info convert export bmp2tga; do
    check "help for $command" 0 "usage: seawarden-tf $command" "$tool" $command --help
    check "no arguments for $command" 2 "usage: seawarden-tf $command" "$tool" $command
done
check "unknown command" 2 '"fly"' "$tool" fly
check "bad size" 2 "--size" "$tool" convert flag.bmp made/old --size 64
check "bad level" 2 '"-1"' "$tool" export flag.tf -1 made/old
exit $failed
