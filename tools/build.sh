#!/usr/bin/env bash
# Installs the Debian packages that are missing, configures build/release where needed and builds the given targets
# (all when none is given). Sourced or called by ./run and ./test.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build="$root/build/release"

install_missing() {
  local missing=() package
  while read -r package; do
    case "$package" in ''|\#*) continue ;; esac
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done < "$root/tools/packages.txt"
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -q
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
}

install_missing
[ -f "$build/build.ninja" ] || cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release
cmake --build "$build" ${1:+--target "$@"}
