#!/usr/bin/env bash
# Draws the pictures of the Add Printer wizard: the watermark of its welcome and
# finish pages (164 by 314) into resources/wizard-watermark.bmp, and the picture
# of its page headers (49 by 49) into resources/wizard-header.bmp. Run by hand
# when a picture changes; the bitmaps are kept in the tree so that a build needs
# no drawing tools.
set -euo pipefail
dir=${1:-$(dirname "$0")/../resources}
blue='#2b5fb4'

# Watermark: a calm blue band, darker at the top, with a printer that hands out
# a sheet, drawn in light lines low on the band.
convert -size 164x314 gradient:"$blue"-'#7c9fd8' \
    -fill none -stroke '#ffffff40' -strokewidth 1 \
    -draw 'line 0,250 164,250' \
    -stroke white -strokewidth 2 -fill '#ffffff30' \
    -draw 'rectangle 52,112 112,150' \
    -fill '#ffffff50' -draw 'roundrectangle 26,146 138,204 8,8' \
    -fill '#ffffff80' -stroke none -draw 'rectangle 40,162 124,168' \
    -fill '#8fe08f' -draw 'circle 122,184 122,180' \
    -fill white -stroke white -strokewidth 2 \
    -draw 'polygon 46,198 118,198 126,246 38,246' \
    -stroke "$blue" -strokewidth 1 \
    -draw 'line 52,212 112,212' -draw 'line 51,220 113,220' \
    -draw 'line 50,228 98,228' \
    -stroke '#ffffff90' -strokewidth 1 -fill none \
    -draw 'line 60,122 104,122' -draw 'line 60,130 104,130' -draw 'line 60,138 92,138' \
    -type TrueColor BMP3:"$dir/wizard-watermark.bmp"

# Header: the same printer, small, in the product's blue on white.
convert -size 49x49 xc:white \
    -fill white -stroke "$blue" -strokewidth 1 \
    -draw 'rectangle 15,5 33,18' \
    -stroke '#9db7e0' -draw 'line 18,9 30,9' -draw 'line 18,12 30,12' -draw 'line 18,15 26,15' \
    -fill "$blue" -stroke "$blue" -draw 'roundrectangle 5,17 43,34 3,3' \
    -fill '#9db7e0' -stroke none -draw 'rectangle 10,22 38,23' \
    -fill '#3cb043' -draw 'rectangle 37,28 39,30' \
    -fill white -stroke '#404040' -draw 'polygon 12,31 36,31 38,44 10,44' \
    -stroke '#9db7e0' -draw 'line 15,36 33,36' -draw 'line 14,40 28,40' \
    -type TrueColor BMP3:"$dir/wizard-header.bmp"

echo "$dir: wizard-watermark.bmp, wizard-header.bmp"
