#!/usr/bin/env bash
# build.sh BUILD-TYPE [TARGET ...] - configures and builds these targets (default: all) in build/.
# Environment: BUILD_DIR another folder, JOBS how many compilers run at a time, SANITIZE as the build's option, TESTS=ON
# with tests and benchmarks, whose libraries a machine that only runs the programs does not have.
# Everything that is said goes to standard error; a failure shows the first errors and ends with one line and status 1.
set -euo pipefail

top=$(cd "$(dirname "$0")/.." && pwd)
type=${1:?usage: build.sh BUILD-TYPE [TARGET ...]}
shift
build=${BUILD_DIR:-$top/build}
jobs=${JOBS:-$(nproc)}
# The same source in another checkout is the same object.
export CCACHE_NOHASHDIR=1 CCACHE_BASEDIR=$top

fail() { echo "build: $*" >&2; exit 1; }

mkdir -p "$build" 2>/dev/null || fail "$build can't be made"
[ -w "$build" ] || fail "$build is not writable for $(id -un)"
exec 9>"$build/.lock"
flock -n 9 || { echo "waiting for another build in $build" >&2; flock 9; }
log=$build/build.log
: >"$log"

explain() { grep -m3 -E 'error:|Error|FAILED' "$log" >&2 || tail -n5 "$log" >&2; }

cached() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt" 2>/dev/null || true; }
had_tests=$(cached TESTS)
tests=${TESTS:-${had_tests:-OFF}}
if [ ! -f "$build/build.ninja" ] || [ "$(cached CMAKE_BUILD_TYPE)" != "$type" ] ||
  [ "$(cached SANITIZE)" != "${SANITIZE:-}" ] || [ "$had_tests" != "$tests" ]; then
  echo "configuring ($type)" >&2
  cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE="$type" -DSANITIZE="${SANITIZE:-}" -DTESTS="$tests" >>"$log" 2>&1 || {
    explain
    fail "the build could not be configured; see $log"
  }
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
