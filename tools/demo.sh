#!/usr/bin/env bash
# Installs what is missing, builds a release gzsh and runs the demo scene.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target gzsh
./build/release/shell/gzsh examples/demo.gzs
