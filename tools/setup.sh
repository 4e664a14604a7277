#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs the Debian packages that a command of this project needs and that are not there yet.
# Usage: tools/setup.sh run|test|bench|coverage|long|arm
set -euo pipefail

usage() {
  echo "usage: tools/setup.sh run|test|bench|coverage|long|arm" >&2
  exit 2
}

build=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libpng-dev
       libegl-dev libgles-dev libgl1-mesa-dri)
tests=(libgtest-dev clang-14 libclang-rt-14-dev clang-format-14 clang-tidy-14 python3
       python3-pytest python3-pytest-xdist python3-pexpect python3-pyte dpkg-dev file)
benchmarks=(libbenchmark-dev libzmq3-dev libnng-dev libsdl2-image-dev pkg-config python3)
counting=(gcovr)
plotting=(gnuplot-nox)
cross=(g++-arm-linux-gnueabihf qemu-user googletest)

case "${1-}" in
  run) wanted=("${build[@]}") ;;
  test) wanted=("${build[@]}" "${tests[@]}" "${benchmarks[@]}") ;;
  bench) wanted=("${build[@]}" "${benchmarks[@]}") ;;
  coverage) wanted=("${build[@]}" "${tests[@]}" "${counting[@]}") ;;
  long) wanted=("${build[@]}" "${tests[@]}" "${plotting[@]}") ;;
  arm) wanted=("${build[@]}" "${cross[@]}") ;;
  *) usage ;;
esac

missing=()
for package in "${wanted[@]}"; do
  status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

if ! command -v apt-get >/dev/null; then
  echo "tools/setup.sh: no apt-get here; install what these Debian packages hold: ${missing[*]}" >&2
  exit 1
fi
as_root=()
[ "$(id -u)" = 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${as_root[@]}" \
  apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
