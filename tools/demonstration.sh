#!/usr/bin/env bash
# demonstration.sh PROGRAMS SAMPLE: the whole main job without a window. Makes a camera with known defects, learns them
# from its calibration frames, repairs its photographs and says how well that went.
set -euo pipefail
programs=$1
sample=$2

# Profiles and settings of this demonstration stay inside its own folder.
export TESSALY_HOME=$sample/home

say() { printf '\n%s\n' "$*"; }
cli() { "$programs/tessaly-cli" --language en "$@"; }

say "1. A camera with known defects: its calibration frames and photographs"
"$programs/tessaly-sample-set" "$sample"
ls "$sample/calibration" "$sample/photographs"

say "2. What the calibration frames tell"
rm -rf "$sample/home" "$sample/photographs/Tessaly Results" "$sample/profile.json"
cli calibrate "$sample/calibration" --name "Sample body" --save --profile "$sample/profile.json" \
  --second-opinion --result "$sample/result.json" --report "$sample/sensor-report.html"
say "What starts included, which is what is certain; and how many of the planted samples it does not cover:"
"$programs/tessaly-sample-report" "$sample" --profile "$sample/profile.json"
say "What the second opinion proposes beside it, which a person has to look at; none of it is included:"
"$programs/tessaly-sample-report" "$sample" --findings "$sample/result.json"
say "The report about the sensor is $sample/sensor-report.html"

say "3. The photographs, repaired with that profile"
cli repair "$sample/photographs" --profile "Sample body"

say "4. How far the samples of each kind of defect are from the undamaged scene, in raw units; what is left of a stripe
   (means of 32 rows); and the grain of the repaired samples beside that of the scene"
"$programs/tessaly-sample-report" "$sample" --repaired "$sample/photographs/Tessaly Results"

say "5. The log"
cat "$sample/photographs/Tessaly Results/"*.csv
say "The repaired copies lie in $sample/photographs/Tessaly Results"
