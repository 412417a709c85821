#!/usr/bin/env bash
# The list of a 100,000-item database node, and opening that project in the main
# window against the headless open.
set -eu
build=$1
if [ ! -x "$build/bin/bench_gui" ]; then
    echo "bench_gui not built (RQ_BUILD_GUI=OFF)"
    exit 0
fi
RQPDEV_HOME="$build/bin" QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen} "$build/bin/bench_gui"
