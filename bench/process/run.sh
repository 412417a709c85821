#!/usr/bin/env bash
# Output throughput of the process runner beside a plain pipe read of the same child.
set -eu
build=$1
program="$build/bin/bench_process"
[ -x "$program" ] || program="$build/bench/process/bench_process"
RQPDEV_HOME="$build/bin" "$program" --mib 256 --rounds 3
