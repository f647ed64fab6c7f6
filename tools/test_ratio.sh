#!/usr/bin/env bash
# Prints the size of the test suite against the code it tests, in lines.
# Tests: every file under tests/ (sources, scenario scripts, expected outputs, data).
# Code: *.cpp and *.h under the library, host, shell and scripting-layer folders.
set -euo pipefail
cd "$(dirname "$0")/.."
count() { find "$@" -type f -print0 | xargs -0 cat | wc -l; }
tests=$(count tests)
code=$(count resource link persistent scriptedit host shell python gz \( -name '*.cpp' -o -name '*.h' \))
awk -v t="$tests" -v c="$code" 'BEGIN { printf "tests %d lines, code %d lines, ratio %.3f\n", t, c, t / c }'
