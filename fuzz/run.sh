#!/bin/sh
# Runs every fuzz target of a build for the given number of seconds each, one after
# the other, one process at a time.
#
#   fuzz/run.sh BUILD SECONDS [TARGET...]
#
# Corpora grow in BUILD/fuzz/corpus/<target> (seeded on the first run by the target
# itself); crashes, leaks and hangs land in BUILD/fuzz/artifacts/<target>-*. The
# exit status is 1 when any target found something.
set -u

if [ $# -lt 2 ]; then
    echo "usage: $0 BUILD SECONDS [TARGET...]" >&2
    exit 2
fi
build=$(cd "$1" && pwd) || exit 2
seconds=$2
shift 2

bin=$build/fuzz
if [ $# -eq 0 ]; then
    set -- $(cd "$bin" && ls fuzz_* 2>/dev/null | sort)
fi
if [ $# -eq 0 ]; then
    echo "no fuzz targets in $bin (configure with -DRQ_BUILD_FUZZ=ON)" >&2
    exit 2
fi

mkdir -p "$bin/corpus" "$bin/artifacts" "$bin/logs"
failed=""
for target in "$@"; do
    corpus=$bin/corpus/$target
    if [ ! -d "$corpus" ] || [ -z "$(ls -A "$corpus")" ]; then
        RQ_FUZZ_SEED_DIR=$corpus "$bin/$target" >/dev/null 2>&1 || {
            echo "$target: writing the seeds failed" >&2
            failed="$failed $target"
            continue
        }
    fi
    log=$bin/logs/$target.log
    printf '%-22s %4ss ... ' "$target" "$seconds"
    # Leak checking is on by default with ASan; -timeout catches hangs (the protocol
    # client waits at most 5 s per receive, so 30 s is a real hang).
    if "$bin/$target" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=2048 \
        -max_len=65536 -print_final_stats=1 \
        -artifact_prefix="$bin/artifacts/$target-" "$corpus" >"$log" 2>&1; then
        runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
        cov=$(grep -a -o 'cov: [0-9]*' "$log" | tail -n 1)
        echo "ok ($runs runs, $cov)"
    else
        echo "FOUND SOMETHING, see $log"
        failed="$failed $target"
    fi
done

if [ -n "$failed" ]; then
    echo "targets with findings:$failed"
    exit 1
fi
