#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the benchmarks need,
# and nothing when they are all there already.
set -euo pipefail

packages=(
    cmake ninja-build g++ pkg-config ccache
    qt6-base-dev qt6-serialport-dev libgl-dev
    libical-dev libopenobex2-dev
    googletest libgtest-dev libgmock-dev libbenchmark-dev
    clang-14 libclang-rt-14-dev
    xvfb unrtf khal khard vdirsyncer radicale poppler-utils fonts-dejavu-core
    dpkg-dev scdoc man-db appstream desktop-file-utils bash-completion
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "Installing: ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
