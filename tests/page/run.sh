#!/usr/bin/env bash
# run.sh BUILD SCRIPT [ARGUMENT ...] - runs a script of this folder with Node, against the programs in the folder BUILD. Before
# that it fetches the packages of package-lock.json into BUILD, unless they are there.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
packages=$1/page-packages
script=$2
shift 2
fail() { echo "page: $*" >&2; exit 1; }
for program in node npm chromium; do
  command -v "$program" >/dev/null || fail "$program is missing; run ./scripts/install.sh test"
done
if ! cmp -s "$here/package-lock.json" "$packages/fetched"; then
  mkdir -p "$packages"
  cp "$here/package.json" "$here/package-lock.json" "$packages/"
  PLAYWRIGHT_SKIP_BROWSER_DOWNLOAD=1 npm --prefix "$packages" ci --no-audit --no-fund --fetch-retries 1 >"$packages/npm.log" 2>&1 ||
    fail "the packages of the test can't be fetched: $(grep -m1 'npm ERR!\|npm error' "$packages/npm.log")"
  cp "$here/package-lock.json" "$packages/fetched"
fi
PAGE_PACKAGES=$packages BUILD=$(dirname "$packages") exec node "$here/$script" "$@"
