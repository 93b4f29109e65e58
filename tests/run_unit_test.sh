#!/usr/bin/env bash
# Runs a unit test under Wine, where a program that crashes may end with exit code 0. So the test must
# also print its summary.
#
# usage: run_unit_test.sh COMMAND...
set -euo pipefail
"$@" | tee /dev/stderr | grep '^\[  PASSED  \]' >/dev/null
