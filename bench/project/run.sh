#!/usr/bin/env bash
# Open and save of a large project against xmllint --noout on the same files.
set -eu
build=$1
RQPDEV_HOME="$build/bin" "$build/bin/bench_project"
