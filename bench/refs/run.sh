#!/usr/bin/env bash
# The references of one real-time data item in a project of 100,000 items, and the
# rename of that item with every use.
set -eu
build=$1
RQPDEV_HOME="$build/bin" "$build/bin/bench_refs"
RQPDEV_HOME="$build/bin" "$build/bin/bench_rename"
