#!/usr/bin/env bash
# build.sh PRESET [TARGET ...] - builds these targets (default: all) as a preset of CMakePresets.json says. The presets
# develop and release share build/; each other one has build-PRESET/.
# Environment: BUILD_DIR another folder, JOBS how many compilers run at a time.
# Messages go to standard error; a failure shows the first errors and ends with one line and status 1.
set -euo pipefail

top=$(cd "$(dirname "$0")/.." && pwd)
preset=${1:?usage: build.sh PRESET [TARGET ...]}
shift
jobs=${JOBS:-$(nproc)}
case $preset in
  develop | release) build=$top/build ;;
  *) build=$top/build-$preset ;;
esac
build=${BUILD_DIR:-$build}

fail() { echo "build: $*" >&2; exit 1; }

mkdir -p "$build" 2>/dev/null || fail "$build can't be made"
[ -w "$build" ] || fail "$build is not writable for $(id -un)"
exec 9>"$build/.lock"
flock -n 9 || { echo "waiting for another build in $build" >&2; flock 9; }
log=$build/build.log
: >"$log"

explain() { grep -m3 -E 'error:|Error|FAILED' "$log" >&2 || tail -n5 "$log" >&2; }

# The preset that the folder was configured with. A developer's build serves a user as well: it holds the same programs.
configured=$(cat "$build/.preset" 2>/dev/null || true)
[ "$preset:$configured" != release:develop ] || preset=develop
if [ "$configured" != "$preset" ] || [ ! -f "$build/build.ninja" ] || [ "$top/CMakePresets.json" -nt "$build/.preset" ]; then
  echo "configuring ($preset)" >&2
  rm -f "$build/.preset"
  (cd "$top" && cmake --preset "$preset" -B "$build") >>"$log" 2>&1 || {
    explain
    fail "the build could not be configured; see $log"
  }
  echo "$preset" >"$build/.preset"
fi

run_ninja() { ninja -C "$build" -j "$jobs" "$@" 9>&-; }
if ninja -C "$build" -n "$@" 2>/dev/null | grep -q 'no work to do'; then exit 0; fi
echo "building ${*:-everything}" >&2
if [ -t 2 ]; then
  run_ninja "$@" >&2 || fail "see the errors above"
else
  run_ninja "$@" >>"$log" 2>&1 || {
    explain
    fail "see $log"
  }
fi
