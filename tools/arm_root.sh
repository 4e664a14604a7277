#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Lays out the libraries of a 32-bit ARM system in a folder, to build against and to run with under
# an emulator. Nothing is installed: Debian's packages are fetched and unpacked, with a package list
# of their own.
# Usage: tools/arm_root.sh FOLDER
set -euo pipefail

if [ $# -ne 1 ]; then
  echo "usage: tools/arm_root.sh FOLDER" >&2
  exit 2
fi
folder=$(mkdir -p "$1" && cd "$1" && pwd)
packages=(libc6-dev libstdc++6 libegl-dev libgles-dev libegl1 libegl-mesa0 libgles1
          libgl1-mesa-dri libpng-dev libcli11-dev nlohmann-json3-dev)

# What the folder was made of; the same again needs nothing done.
wanted="armhf ${packages[*]}"
[ "$(cat "$folder/made-of" 2>/dev/null)" != "$wanted" ] || exit 0

echo "Fetching the libraries of a 32-bit ARM system: ${packages[*]}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
chmod 755 "$work" # the fetching is done by a user of its own
mkdir -p "$work/state/lists/partial" "$work/cache/archives/partial"
: >"$work/status" # as if nothing were installed, so that all that is needed comes along
cat >"$work/apt.conf" <<END
APT::Architecture "armhf";
APT::Architectures { "armhf"; };
Dir::State "$work/state";
Dir::State::status "$work/status";
Dir::Cache "$work/cache";
END
export APT_CONFIG=$work/apt.conf
# One list that fails to come is no reason to give up: what is missing then shows below.
apt-get update -qq || echo "tools/arm_root.sh: going on with the package lists that came" >&2
apt-get install -y -qq --no-install-recommends --download-only "${packages[@]}" >/dev/null

rm -rf "$folder/root"
mkdir "$folder/root"
for package in "$work"/cache/archives/*.deb; do
  dpkg-deb --extract "$package" "$folder/root"
done
echo "$wanted" >"$folder/made-of"
