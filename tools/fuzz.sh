#!/usr/bin/env bash
# Builds the fuzz preset and runs every libFuzzer target (or the ones named) for SECONDS each
# (default 30), one after the other, starting from fuzz/corpus/<name>/ and with
# fuzz/<name>.dict when there is one. New inputs go to a scratch copy of the corpus, so the
# committed corpus does not grow. Fails when any target finds a crash, a leak or a timeout;
# the input that did it is kept in the scratch directory, whose path is printed (it is
# removed after a clean run unless GZ_FUZZ_DIR chose it).
#   tools/fuzz.sh [SECONDS] [NAME...]      e.g. tools/fuzz.sh 600 script settings
# GZ_FUZZ_DIR sets the scratch directory (default: a new one under /tmp).
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
shift || true

# The compiler and its fuzzer runtime (Debian: clang, libclang-rt-dev), plus the build tools.
missing=()
for p in clang libclang-rt-dev cmake ninja-build libedit-dev; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
fi

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

if [ $# -gt 0 ]; then
  names=("$@")
else
  names=()
  for src in fuzz/fuzz_*.cpp; do
    n=$(basename "$src" .cpp)
    names+=("${n#fuzz_}")
  done
fi

scratch=${GZ_FUZZ_DIR:-$(mktemp -d /tmp/gz_fuzz.XXXXXX)}
echo "fuzz: scratch directory $scratch"
failed=()
for name in "${names[@]}"; do
  bin=build/fuzz/fuzz/fuzz_$name
  corpus=$scratch/corpus/$name
  artifacts=$scratch/artifacts/$name
  mkdir -p "$corpus" "$artifacts"
  cp -n fuzz/corpus/"$name"/* "$corpus"/ 2>/dev/null || true
  args=(-max_total_time="$seconds" -print_final_stats=1 -timeout=10 -rss_limit_mb=2048
    -artifact_prefix="$artifacts"/)
  dict=fuzz/$name.dict
  if [ "$name" = script ]; then
    # Every command the shell installs, from its own help, so that new ones are fuzzed too.
    dict=$scratch/script.dict
    { cat fuzz/script.dict
      ASAN_OPTIONS=detect_leaks=0 build/fuzz/shell/gzsh -c help | awk '{ print "\"" $1 " \"" }'
    } >"$dict"
  fi
  [ -f "$dict" ] && args+=(-dict="$dict")
  echo "fuzz: $name for ${seconds}s"
  if ! nice -n 10 "$bin" "${args[@]}" "$corpus" >"$scratch/$name.log" 2>&1; then
    failed+=("$name")
    tail -n 60 "$scratch/$name.log"
  fi
  grep -E '^stat::(number_of_executed_units|new_units_added)' "$scratch/$name.log" | sed "s/^/fuzz: $name /" || true
done
echo "fuzz: ran for ${SECONDS}s in all"
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: findings in: ${failed[*]} (inputs in $scratch/artifacts)"
  exit 1
fi
echo "fuzz: no findings"
# A scratch directory of our own choosing is of no further use.
[ -n "${GZ_FUZZ_DIR:-}" ] || rm -rf "$scratch"
