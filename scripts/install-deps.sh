#!/usr/bin/env bash
# Installs everything Hullwright needs to build, run and test on Debian 12.
# Safe to run again: apt-get skips what is already there. Packages named as
# arguments are installed too, the same way (scripts/fuzz.sh asks for clang).
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins libgl-dev
  zlib1g-dev liblzma-dev
  xvfb xauth xdotool x11-utils
  lzma-alone xz-utils gzip
  fonts-dejavu-core
)
packages+=("$@")

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -gt 0 ]; then
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo_cmd apt-get update -q
  $sudo_cmd apt-get install -y -q --no-install-recommends "${missing[@]}"
fi
