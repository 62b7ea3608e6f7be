#!/bin/sh
# Draws the about box's picture (250 x 38, and twice that for high-density screens): a PIC in a DIP
# package, a trace running out of it, and the name. Run from this directory after a change.
set -e
draw() {
    s=$1 out=$2
    convert -size $((250 * s))x$((38 * s)) xc:none \
        -draw "scale $s,$s
               fill #b8b8b8
               rectangle 8,3 11,8   rectangle 17,3 20,8   rectangle 26,3 29,8   rectangle 35,3 38,8   rectangle 44,3 47,8
               rectangle 8,30 11,35 rectangle 17,30 20,35 rectangle 26,30 29,35 rectangle 35,30 38,35 rectangle 44,30 47,35
               fill #2a2a3a roundrectangle 4,8 52,30 2,2
               fill #ffffff circle 4,19 4,23
               fill #6a6a80 circle 11,25 11,26.6
               fill none stroke #c00000 stroke-width 1.2
               polyline 52,19 60,19 64,12 68,26 72,19 236,19
               stroke none fill #c00000 circle 238,19 240.5,19" \
        -font DejaVu-Sans-Bold -pointsize $((13 * s)) -fill '#00002a' -annotate +$((80 * s))+$((15 * s)) 'QUILLBAY' \
        -font DejaVu-Sans -pointsize $((9 * s)) -fill '#505050' -annotate +$((80 * s))+$((33 * s)) 'PicBasic Pro  ·  PicBasic' \
        PNG32:"$out"
}
draw 1 about.png
draw 2 about@2x.png
