#!/usr/bin/env bash
# check-package.sh BUILD_FOLDER: makes the Debian packages of a release build and looks at what a user would get: every
# file in its place, the command line runs from there, manual pages and the entries for desktop and software centres are
# well-formed, lintian finds no error.
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/setup.sh
build=$(realpath "$1")

SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH

# contents PACKAGE: the files that it must contain, one a line.
contents() {
  local share=usr/share
  printf '%s\n' "usr/bin/$1" "$share/man/man1/$1.1.gz" "$share/doc/$1/"{changelog.gz,copyright}
  case $1 in
    tessaly-cli)
      printf '%s\n' "$share/doc/$1/"{README,recipes}.md "$share/bash-completion/completions/tessaly-cli" \
        "$share/zsh/vendor-completions/_tessaly-cli" "$share/fish/vendor_completions.d/tessaly-cli.fish"
      (cd docs && printf "$share/doc/$1/%s\n" schemas/*.json)
      ;;
    tessaly)
      printf '%s\n' "$share/applications/tessaly.desktop" "$share/metainfo/example.tessaly.tessaly.metainfo.xml" \
        "$share/icons/hicolor/scalable/apps/tessaly.svg" \
        "$share/doc/$1/html/"{guide.html,recipes.html,files-on-disk.html,candidates.png} \
        "$share/doc/$1/html/pictures/"{before,after,light-frame}.png
      printf "$share/icons/hicolor/%sx%s/apps/tessaly.png\n" {16,24,32,48,64,128,256,512}{,}
      ;;
  esac
}

# The icons have the sizes that their folders promise.
check_icons() {
  local size
  for size in 16 24 32 48 64 128 256 512; do
    file "$1/usr/share/icons/hicolor/${size}x$size/apps/tessaly.png" | grep -q " $size x $size,"
  done
}

# A page that man would complain about is none; it complains on standard error and ends with 0.
check_page() {
  local complaints
  complaints=$(man --warnings -E UTF-8 -l -Tutf8 -Z "$1" 2>&1 >/dev/null)
  [ -z "$complaints" ] || { echo "$1: $complaints" >&2; return 1; }
}

check_package() {
  local package=$1 unpacked=$build/unpacked/$1
  mkdir -p "$unpacked"
  dpkg-deb --extract "$build/${package}"_*.deb "$unpacked"
  diff <(contents "$package" | sort) <(cd "$unpacked" && find . -type f -printf '%P\n' | sort)
  check_page "$unpacked/usr/share/man/man1/$package.1.gz"
  dpkg-deb --field "$build/${package}"_*.deb Depends | grep -q libicu
}

packages=(tessaly-cli)
[ ! -x "$build/tessaly" ] || packages+=(tessaly)

rm -rf "$build/unpacked" "$build"/tessaly*.deb
quietly "$build/package.log" cpack --config "$build/CPackConfig.cmake" -B "$build"
for package in "${packages[@]}"; do
  check_package "$package"
done
"$build/unpacked/tessaly-cli/usr/bin/tessaly-cli" --version
bash -n completions/tessaly-cli.bash
zsh -n completions/tessaly-cli.zsh
fish --no-execute completions/tessaly-cli.fish
if [ -x "$build/tessaly" ]; then
  check_icons "$build/unpacked/tessaly"
  desktop-file-validate packaging/tessaly.desktop
  quietly "$build/metainfo.log" appstreamcli validate --no-net packaging/example.tessaly.tessaly.metainfo.xml
fi
quietly "$build/lintian.log" lintian --allow-root --fail-on error "$build"/tessaly*.deb
echo "The packages are complete: $(cd "$build" && echo tessaly*.deb)"
