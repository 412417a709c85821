#!/usr/bin/env bash
# Renders the main window on data/examples/demo and every dialog of the workspace to
# PNG files under Xvfb.   tools/screenshots.sh [BUILD_DIR] [OUTPUT_DIR]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-build}" && pwd)
out=${2:-$build/screenshots}
cmake --build "$build" --target test_shell rq_program_data
mkdir -p "$out"
out=$(cd "$out" && pwd)
RQ_SCREENSHOT_DIR="$out" RQPDEV_HOME="$build/bin" RQ_SOURCE_DIR="$root" \
    QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1400x900x24" \
    "$build/tests/test_shell" --gtest_filter='Screenshots.*'
ls -1 "$out"/*.png
