#!/usr/bin/env bash
# Installs the Debian 12 packages that building and testing the keyer need.
# Runs as root; asks apt only when something is missing.
set -euo pipefail

# qt6-base-dev brings Qt Widgets and Qt Test; xvfb and xauth run the window
# for the screenshot (xvfb-run). PortAudio plays the sidetone; a PulseAudio
# server with a null sink, reached through ALSA's pulse plugin, gives the
# sound test a card to record from. Tlf under tmux drives the keyer as a
# real cwdaemon client. desktop-file-utils, dpkg-dev and lintian check the
# installed tree and the Debian package; librsvg2-bin renders the icon's sizes.
# clang and its runtime libraries (libFuzzer and the sanitizers) build the
# fuzz targets.
packages=(gcc g++ cmake ninja-build pkg-config libgtest-dev libgmock-dev
  qt6-base-dev xvfb xauth portaudio19-dev pulseaudio pulseaudio-utils
  libasound2-plugins tlf tmux desktop-file-utils dpkg-dev lintian librsvg2-bin
  clang libclang-rt-14-dev)

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
    missing+=("$package")
done
if ((${#missing[@]})); then
  echo "Installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update
  apt-get install -y --no-install-recommends "${missing[@]}"
fi
