#!/usr/bin/env bash
# Builds the Debian packages tessarine and tessarine-phone-emulator from the
# default preset into build/default/packages/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)" --target package
ls build/default/packages/*.deb
