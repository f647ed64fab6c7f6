#!/usr/bin/env bash
# Installs what is missing, builds with a preset (default: release) and runs every test through CTest.
# GZ_WERROR=ON turns compiler warnings into errors (CI does this).
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-release}
bash tools/deps.sh
cmake --preset "$preset" -DGZ_WERROR="${GZ_WERROR:-OFF}" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"
