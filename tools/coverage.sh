#!/usr/bin/env bash
# Which lines and branches of the libraries the tests run.
#   tools/coverage.sh TEST_PRESET
# The test programs are those of TEST_PRESET, built before; only the libraries are built once more,
# instrumented, and take the place of the plain ones. The report is build/coverage/report.html.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

test_preset=$1
build=build/coverage

cmake --preset coverage >/dev/null
cmake --build --preset coverage
find "$build" -name '*.gcda' -delete
LD_LIBRARY_PATH="$PWD/$build:$PWD/$build/platform" ctest --preset "$test_preset" --quiet \
  --output-log "$build/tests.log" || { tail -n 40 "$build/tests.log" && exit 1; }

# Branches that the compiler adds for exceptions, and those of assertions of the standard library,
# belong to no line of ours.
gcovr --root . --object-directory "$build" \
  --filter 'xml/' --filter 'readers/' --filter 'combiner/' --filter 'encoding/' \
  --filter 'platform/' --filter 'include/' \
  --exclude-throw-branches --exclude-unreachable-branches \
  --print-summary --txt "$build/report.txt" --html-details "$build/report.html" \
  --json-summary "$build/report.json" --fail-under-line 95 --fail-under-branch 90
