#!/usr/bin/env bash
# Opening projects of 1,000, 10,000 and 100,000 real-time data items as whole
# processes against xmllint on the same rtdb.xml, interleaved in one run, and
# rqpdev until its main window shows against rqpcli info (under Xvfb when there
# is no display). Needs rqpcli, rqpdev and bench_open in BUILD/bin:
#   cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DRQ_BUILD_BENCH=ON \
#         -DRQ_BUILD_TESTS=OFF -DRQ_BUILD_GUI=ON
#   ninja -C build-bench rqpcli rqpdev bench_open
#   bench/open/run.sh build-bench [--million] [--spread] [--runs N]
# --million adds the 1,000,000-item project (about a minute more on two cores).
set -eu
build=$1
shift
if [ ! -x "$build/bin/bench_open" ] || [ ! -x "$build/bin/rqpcli" ]; then
    echo "bench_open or rqpcli not built"
    exit 0
fi
if ! command -v xmllint >/dev/null; then
    echo "xmllint not installed (libxml2-utils)"
    exit 0
fi
export RQPDEV_HOME="$build/bin"
if [ -z "${DISPLAY:-}" ] && command -v xvfb-run >/dev/null && [ -x "$build/bin/rqpdev" ]; then
    exec xvfb-run -a -s "-screen 0 1600x1200x24" nice -n 19 "$build/bin/bench_open" "$@"
fi
exec nice -n 19 "$build/bin/bench_open" "$@"
