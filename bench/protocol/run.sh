#!/usr/bin/env bash
# Put and get of 256 MiB to the emulated device beside a plain TCP copy.
set -eu
build=$1
program="$build/bin/bench_protocol"
[ -x "$program" ] || program="$build/bench/protocol/bench_protocol"
RQPDEV_HOME="$build/bin" "$program" --mib 256 --rounds 4
