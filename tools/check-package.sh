#!/usr/bin/env bash
# check-package.sh BUILD_FOLDER: makes the Debian package of a release build and looks at what a user would get: every
# file in its place, the command line runs from there, the desktop entry is well-formed.
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/setup.sh
build=$(realpath "$1")
unpacked=$build/unpacked

rm -rf "$unpacked" "$build"/tessaly_*.deb
quietly "$build/package.log" cpack --config "$build/CPackConfig.cmake" -B "$build"
dpkg-deb --extract "$build"/tessaly_*.deb "$unpacked"

expected="usr/bin/tessaly-cli usr/share/doc/tessaly/README.md"
if [ -x "$build/tessaly" ]; then
  expected+=" usr/bin/tessaly usr/share/applications/tessaly.desktop"
  expected+=" usr/share/icons/hicolor/scalable/apps/tessaly.svg"
fi
diff <(tr ' ' '\n' <<<"$expected" | sort) <(cd "$unpacked" && find . -type f -printf '%P\n' | sort)

"$unpacked/usr/bin/tessaly-cli" --version
desktop-file-validate packaging/tessaly.desktop
dpkg-deb --field "$build"/tessaly_*.deb Depends | grep -q libicu
echo "The package is complete: $(basename "$build"/tessaly_*.deb)"
