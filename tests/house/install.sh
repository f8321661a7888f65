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
version=$(sed -n '1s/.*(\(.*\)).*/\1/p' "$2/packaging/changelog")
for link in "$folder"/prefix/bin/*; do
  name=${link##*/}
  [ "$("$link" --version)" = "$name $version" ] || { echo "$name does not say its version"; exit 1; }
  bash -c ". '$folder/prefix/share/bash-completion/completions/$name' && complete -p $name" | grep -q -e --version
  for file in "man/man1/$name.1" "zsh/site-functions/_$name" "fish/vendor_completions.d/$name.fish"; do
    [ -s "$folder/prefix/share/$file" ] || { echo "$name has no $file"; exit 1; }
  done
done
strange=$(find "$folder/prefix" -name '*.h' -o -name '*_tests' -o -name 'fake*' -o -name '*.a')
[ -z "$strange" ] || { echo "installed without need: $strange"; exit 1; }
! find "$folder/prefix" -type f -exec readelf -d {} + 2>/dev/null | grep -F "$1" || { echo "a program names $1"; exit 1; }
