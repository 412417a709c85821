#!/usr/bin/env bash
# Import of a 100,000-row real-time data file against the open of the same project.
set -eu
build=$1
here=$(cd "$(dirname "$0")" && pwd)
RQPDEV_HOME="$build/bin" "$build/bin/bench_exchange" "$here/../../data/examples/demo"
