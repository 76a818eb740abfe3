#!/usr/bin/env bash
# make-pictures.sh PROGRAMS: draws the pictures of the guide anew, from the sample set: a part of a photograph before and
# after its repair, and a light frame. Needs ImageMagick and jq.
set -euo pipefail
programs=$(realpath "$1")
cd "$(dirname "$0")/.."
pictures=$PWD/docs/pictures
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TESSALY_HOME=$work/home

cli() { "$programs/tessaly-cli" --language en "$@"; }

# draw DNG PICTURE OPTION…: its samples, four of a mosaic's cell as one point, drawn as the options of ImageMagick say.
draw() {
  local file=$1 picture=$2 size
  shift 2
  size=$(cli inspect "$file" | jq --raw-output '"\(.rawWidth)x\(.rawHeight)"')
  cli samples "$file" --output "$work/plane.bin"
  /usr/bin/convert -size "$size" -depth 16 -endian LSB "gray:$work/plane.bin" -filter box "$@" \
    -depth 8 -define png:exclude-chunks=date,time "$pictures/$picture"
}

# The part around a shadow of dust and a column.
part=(-crop 140x96+500+310 +repage -resize '50%' -level '2.1%,3.1%' -scale '600%')

mkdir -p "$pictures"
"$programs/tessaly-sample-set" "$work/set"
cli repair-file "$work/set/photographs/studio-paper.dng" "$work/repaired.dng" --profile "$work/set/truth.json" >/dev/null
draw "$work/set/photographs/studio-paper.dng" before.png "${part[@]}"
draw "$work/repaired.dng" after.png "${part[@]}"
draw "$work/set/calibration/bright-30th-1.dng" light-frame.png -resize '50%' -auto-level -level '0%,115%'
