#!/usr/bin/env bash
# make-html.sh DOCUMENT: prints a document of docs/ as a page of HTML whose links lead to the other pages. Needs
# cmark-gfm.
set -euo pipefail
document=$1

cat <<'START'
<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>Tessaly</title>
<style>
body { max-width: 46em; margin: 2em auto; padding: 0 1em; font: 1rem/1.5 sans-serif; }
pre { overflow-x: auto; padding: .7em; background: #f2f2f2; }
img { max-width: 100%; }
table { border-collapse: collapse; }
td, th { padding: .3em .8em .3em 0; text-align: left; vertical-align: top; }
@media (prefers-color-scheme: dark) {
  body { color: #ddd; background: #1d1f22; }
  pre { background: #2b2e33; }
  a { color: #7fd6ea; }
}
</style>
</head>
<body>
START
cmark-gfm --extension table "$document" | sed 's/href="\([a-z-]*\)\.md"/href="\1.html"/g'
printf '</body>\n</html>\n'
