#!/usr/bin/env bash
# Builds everything with sanitizers and runs every check: layers, formatting, tests.
set -euo pipefail
cd "$(dirname "$0")"

tools/install-packages
tools/check-layers
tools/check-format
tools/check-tests
cmake --preset dev
cmake --build --preset dev
ctest --preset dev --parallel "$(nproc)" "$@"
