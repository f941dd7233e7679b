#!/usr/bin/env bash
# Builds everything with sanitizers and runs every check: layers, formatting, tests.
set -euo pipefail
cd "$(dirname "$0")"

# Qt WebEngine's sandbox refuses root, and who tests in a container is root.
[ "$(id -u)" -ne 0 ] || export QTWEBENGINE_DISABLE_SANDBOX=1

tools/install-packages
tools/check-layers
tools/check-format
tools/check-tests
cmake --preset dev
cmake --build --preset dev
ctest --preset dev --parallel "$(nproc)" "$@"
