#!/usr/bin/env bash
# Runs the run.sh of every benchmark room with the benchmark build directory.
set -u
build=$(cd "${1:-build-bench}" && pwd)
status=0
for script in "$(dirname "$0")"/*/run.sh; do
    [ -x "$script" ] || continue
    echo "== $(basename "$(dirname "$script")")"
    "$script" "$build" || status=1
done
exit $status
