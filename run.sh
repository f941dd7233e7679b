#!/usr/bin/env bash
# Builds the program and starts it, on a project if one is named. Where there is no display it
# writes that project, or the sample, into out/ as PDF, PNG and Word report.
set -euo pipefail
project=
[ $# -eq 0 ] || project=$(realpath -- "$*")
cd "$(dirname "$0")"

tools/install-packages
cmake --preset release >/dev/null
cmake --build --preset release --target examiner examiner-export
programs=build/release

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec "$programs/examiner" ${project:+"$project"}
fi

project=${project:-$programs/sample.epf}
name=$(basename "$project" .epf)
echo "There is no display here. Writing $name as PDF, PNG and Word report into out/ instead."
mkdir -p out
for format in pdf png doc; do
    "$programs/examiner-export" "$project" "out/$name.$format"
    echo "out/$name.$format"
done
