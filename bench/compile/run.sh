#!/usr/bin/env bash
# `rqpcli compile` of the demo project beside running the same toolchain line with
# /bin/sh in the program directory, measured in the same run, alternating, the best
# of ROUNDS each. Prints both times and the ratio rqpcli / sh (target: at most 1.2).
#   bench/compile/run.sh [BUILD_DIR] [ROUNDS]
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
build=$(cd "${1:-build}" && pwd)
rounds=${2:-7}
bin="$build/bin"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$root/data/examples/demo" "$work/demo"
export RQPDEV_HOME="$bin"

# One compile to learn the line (and warm the caches).
line=$("$bin/rqpcli" compile "$work/demo" --show-command 2>&1 >/dev/null | head -n 1)
[ -n "$line" ] || { echo "no toolchain line"; exit 1; }

now() { date +%s.%N; }
min() { awk -v a="$1" -v b="$2" 'BEGIN { print (a < b) ? a : b }'; }
best_cli=999 best_sh=999
for _ in $(seq "$rounds"); do
    t0=$(now)
    "$bin/rqpcli" compile "$work/demo" >/dev/null
    t1=$(now)
    (cd "$bin" && /bin/sh -c "$line" </dev/null >/dev/null)
    t2=$(now)
    best_cli=$(min "$best_cli" "$(awk -v a="$t0" -v b="$t1" 'BEGIN { print b - a }')")
    best_sh=$(min "$best_sh" "$(awk -v a="$t1" -v b="$t2" 'BEGIN { print b - a }')")
done
awk -v c="$best_cli" -v s="$best_sh" 'BEGIN {
    printf "rqpcli compile: %.3f s\n/bin/sh line:   %.3f s\nratio:          %.2f\n", c, s, c / s }'
