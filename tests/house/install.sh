#!/usr/bin/env bash
# install.sh BUILD SOURCE - installs the programs into a folder of its own and runs the host there on a sample: the programs
# find each other and their libraries without the build folder.
set -euo pipefail

folder=$(mktemp -d -t install.XXXXXX)
trap 'rm -rf "$folder"' EXIT
cmake --install "$1" --prefix "$folder/prefix" >/dev/null
printf 'open %s\nwait 6\nclose all\n' "$2/samples/poster.psd" >"$folder/script"
"$folder/prefix/bin/velorant-host" --state "$folder/state" --script "$folder/script" >"$folder/report"
grep -q 'LiberationSerif-Bold' "$folder/report"
"$folder/prefix/bin/docfonts" "$2/samples/poster.psd" >"$folder/list"
grep -q 'LiberationSerif-Bold' "$folder/list"
bash -c ". '$folder/prefix/share/bash-completion/completions/docfonts' && complete -p docfonts" | grep -q -e --resolve
[ -f "$folder/prefix/share/man/man1/docfonts.1" ] || { echo "no manual page"; exit 1; }
! find "$folder/prefix" -type f -exec readelf -d {} + 2>/dev/null | grep -F "$1" || { echo "a program names $1"; exit 1; }
