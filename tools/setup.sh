#!/usr/bin/env bash
# Installs what a fresh Debian 12 lacks to build and test Corvane. Does nothing when all of it is there.
set -euo pipefail

packages=(g++ cmake ninja-build python3 libsqlite3-dev libcli11-dev nlohmann-json3-dev libgtest-dev
  zlib1g-dev libbz2-dev liblzma-dev libzstd-dev
  qt6-base-dev qt6-svg-dev libqcustomplot-dev
  xvfb openbox xdotool imagemagick x11-utils fonts-dejavu-core)

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "Please install as root: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
echo "Installing: ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq >&2
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
