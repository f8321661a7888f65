#!/usr/bin/env bash
# install.sh GROUP ... - installs the Debian packages of these groups that are missing, and nothing else.
# Groups: build, fonts, test, libreoffice, inkscape, bench, lint, fuzz, package. Everything that is said goes to standard error;
# failure is one line and status 1.
set -euo pipefail

declare -A groups=(
  [build]="g++ cmake ninja-build ccache pkg-config libplist-dev libexempi-dev libyajl-dev libxml2-dev libicu-dev
           libfreetype-dev libfontconfig-dev libharfbuzz-dev libpng-dev libsqlite3-dev libedit-dev libqpdf-dev nlohmann-json3-dev libboost-dev
           zlib1g-dev libzip-dev libsystemd-dev"
  [fonts]="fontconfig fonts-dejavu-core fonts-liberation2 fonts-urw-base35"
  [test]="libgtest-dev libgmock-dev libwoff-dev libimage-exiftool-perl python3 python3-jsonschema chromium nodejs npm"
  [libreoffice]="libreoffice-writer-nogui poppler-utils"
  [inkscape]="inkscape poppler-utils"
  [bench]="libimage-exiftool-perl poppler-utils"
  [lint]="git clang-format-14 clang-tidy-14"
  [fuzz]="clang libclang-rt-14-dev"
  [package]="dpkg-dev fakeroot file lintian"
)

fail() { echo "install: $*" >&2; exit 1; }

[ $# -gt 0 ] || fail "no group named; there are: ${!groups[*]}"
wanted=()
for group in "$@"; do
  [ -n "${groups[$group]:-}" ] || fail "unknown group '$group'; there are: ${!groups[*]}"
  read -r -d '' -a names <<<"${groups[$group]}" || true
  wanted+=("${names[@]}")
done

command -v dpkg-query >/dev/null || fail "this is no Debian system; please install by hand: ${wanted[*]}"
# Node from another source brings its own npm, which Debian's package is in conflict with.
declare -A programs=([nodejs]=node [npm]=npm)

missing=()
for name in "${wanted[@]}"; do
  [ -z "${programs[$name]:-}" ] || ! command -v "${programs[$name]}" >/dev/null || continue
  [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null || true)" = installed ] || missing+=("$name")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || fail "needs root to install: ${missing[*]}"
  as_root=(sudo)
fi

log=$(mktemp -t install.XXXXXX)
trap 'rm -f "$log"' EXIT
apt() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 "$@" </dev/null >"$log" 2>&1
}
why() { grep -m1 '^E:' "$log" || tail -n1 "$log"; }

echo "installing ${#missing[@]} packages: ${missing[*]}" >&2
apt update || fail "the package lists could not be read: $(why)"
apt install --no-install-recommends "${missing[@]}" || fail "the package manager refused: $(why)"
