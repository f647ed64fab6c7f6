#!/usr/bin/env bash
# Installs the Debian packages the build, tests and tools need, if any is missing.
set -euo pipefail
pkgs=(cmake ninja-build g++ clang pkg-config libgtest-dev libgmock-dev libbenchmark-dev libedit-dev python3-dev pybind11-dev)
missing=()
for p in "${pkgs[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
