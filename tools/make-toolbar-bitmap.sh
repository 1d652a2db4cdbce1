#!/usr/bin/env bash
# Draws the toolbar's button images (16 by 15 each, magenta where transparent)
# into resources/toolbar.bmp. Run by hand when a button changes; the bitmap is
# kept in the tree so that a build needs no drawing tools.
set -euo pipefail
out=${1:-$(dirname "$0")/../resources/toolbar.bmp}
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
cell() { convert -size 16x15 xc:magenta +antialias "$@" "$tmp/$(printf %02d $n).png"; n=$((n + 1)); }
n=0
# Refresh: a round arrow.
cell -fill none -stroke '#1c6e2c' -strokewidth 2 -draw 'arc 2,2 13,13 300,210' \
     -fill '#1c6e2c' -stroke none -draw 'polygon 9,0 14,4 9,7'
# Large icons: four big squares.
cell -fill '#2b5fb4' -draw 'rectangle 1,1 6,6' -draw 'rectangle 9,1 14,6' \
     -draw 'rectangle 1,8 6,13' -draw 'rectangle 9,8 14,13'
# Small icons: a grid of small squares and lines.
cell -fill '#2b5fb4' -draw 'rectangle 1,2 3,4' -draw 'rectangle 1,9 3,11' \
     -draw 'rectangle 8,2 10,4' -draw 'rectangle 8,9 10,11' \
     -fill '#404040' -draw 'rectangle 4,3 6,3' -draw 'rectangle 4,10 6,10' \
     -draw 'rectangle 11,3 14,3' -draw 'rectangle 11,10 14,10'
# List: small squares with lines in one column.
cell -fill '#2b5fb4' -draw 'rectangle 1,1 3,3' -draw 'rectangle 1,6 3,8' -draw 'rectangle 1,11 3,13' \
     -fill '#404040' -draw 'rectangle 5,2 13,2' -draw 'rectangle 5,7 13,7' -draw 'rectangle 5,12 13,12'
# Details: a table with a heading row.
cell -fill white -stroke '#404040' -draw 'rectangle 0,1 15,13' \
     -fill '#9db7e0' -stroke none -draw 'rectangle 1,2 14,4' \
     -stroke '#404040' -draw 'line 1,7 14,7' -draw 'line 1,10 14,10' -draw 'line 6,2 6,12'
# Options: a window with check marks.
cell -fill white -stroke '#404040' -draw 'rectangle 1,1 14,13' \
     -fill '#2b5fb4' -stroke none -draw 'rectangle 2,2 13,3' \
     -stroke '#1c6e2c' -strokewidth 2 -fill none -draw 'polyline 3,8 5,10 9,5' \
     -stroke '#404040' -strokewidth 1 -draw 'line 10,9 12,9'
# Disconnect: a broken plug line.
cell -stroke '#404040' -strokewidth 2 -draw 'line 0,7 5,7' -draw 'line 10,7 15,7' \
     -fill '#c23b22' -stroke none -draw 'rectangle 4,4 6,10' -draw 'rectangle 9,4 11,10'
# Log off: a door with an arrow.
cell -fill '#b07a3c' -stroke '#404040' -draw 'rectangle 2,1 9,13' \
     -fill '#1c6e2c' -stroke none -draw 'polygon 8,7 12,4 12,6 15,6 15,8 12,8 12,10'
# Help: a question mark on a blue disc.
cell -fill '#2b5fb4' -draw 'circle 7,7 7,0' \
     -fill white -font DejaVu-Sans-Bold -pointsize 12 -gravity center -annotate +0+0 '?'
convert "$tmp"/*.png +append -type TrueColor BMP3:"$out"
echo "$out: $n buttons"
