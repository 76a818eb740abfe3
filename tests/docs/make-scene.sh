#!/usr/bin/env bash
# make-scene.sh PROGRAMS SCENE: writes what the documents' commands take for granted: calibration frames, photographs, an
# archive of them, single files, and a profile called "My body" in a file and in the store.
set -euo pipefail
programs=$(realpath "$1")
scene=$2
[ ! -e "$scene/complete" ] || exit 0

rm -rf "$scene" "$scene.set"
mkdir -p "$scene"/{frames,photographs,archive/autumn,settings}
"$programs/tessaly-sample-set" "$scene.set"
cp "$scene.set"/calibration/{bright-30th,bright-60th,dark-one-second}-[123].dng "$scene/frames"
cp "$scene.set"/photographs/{water,houses}.dng "$scene/photographs"
cp "$scene.set/photographs/foliage.dng" "$scene/archive"
touch "$scene/archive/foliage.xmp"
cp "$scene.set/photographs/fabric.dng" "$scene/archive/autumn"
cp "$scene.set/photographs/evening-sky.dng" "$scene/photo.dng"
cp "$scene.set/photographs/studio-paper.dng" "$scene/in.dng"
jq '.name = "My body"' "$scene.set/truth.json" >"$scene/p.json"
touch --date=2020-01-01 "$scene/p.json"
TESSALY_HOME=$scene/settings "$programs/tessaly-cli" profiles import "$scene/p.json" >"$scene/complete"
rm -rf "$scene.set"
