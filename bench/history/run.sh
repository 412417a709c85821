#!/usr/bin/env bash
# Undo and redo of a batch add of 100,000 real-time data items.
set -eu
build=$1
"$build/bin/bench_history"
