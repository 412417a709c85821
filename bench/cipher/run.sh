#!/usr/bin/env bash
# Wrapping and unwrapping a 256 MiB file with rqpcli beside `openssl enc -des-ede3-ecb
# -nopad` over the same bytes, in the same run. Each step runs REPS times, interleaved,
# and the fastest run counts (the machine may be shared). Prints the speed ratios:
# above 1.0 means faster than OpenSSL. Then the in-memory block benchmark.
#
#   bench/cipher/run.sh BUILD_DIR      (a Release build with rqpcli; see `make bench`)
#   CIPHER_BENCH_MIB=64 CIPHER_BENCH_REPS=5 bench/cipher/run.sh BUILD_DIR
set -eu
build=$(cd "$1" && pwd)
mib=${CIPHER_BENCH_MIB:-256}
reps=${CIPHER_BENCH_REPS:-3}
rqpcli="$build/bin/rqpcli"
export RQPDEV_HOME="$build/bin"
[ -x "$rqpcli" ] || { echo "no $rqpcli: build the rqpcli target first" >&2; exit 1; }
command -v openssl >/dev/null || { echo "openssl is not installed" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
head -c $((mib << 20)) /dev/urandom >"$work/plain"
key=84F78F8486C71EEA7DE3092DE219178A38AED757BE802585

# Prints "WALL CPU" in seconds for one command (CPU = user + system time of the
# child), and keeps the smaller of each over the runs in the named variables.
measure() {
    local wallVar=$1 cpuVar=$2 out
    shift 2
    out=$({ TIMEFORMAT='%3R %3U %3S'; time "$@" >/dev/null 2>"$work/err"; } 2>&1) ||
        { cat "$work/err" >&2; exit 1; }
    read -r w u s <<<"$out"
    local c
    c=$(awk -v u="$u" -v s="$s" 'BEGIN { printf "%.3f", u + s }')
    printf -v "$wallVar" '%s' "$(awk -v a="${!wallVar}" -v b="$w" 'BEGIN { print (a == "" || b < a) ? b : a }')"
    printf -v "$cpuVar" '%s' "$(awk -v a="${!cpuVar}" -v b="$c" 'BEGIN { print (a == "" || b < a) ? b : a }')"
}

wrapW= wrapC= unwrapW= unwrapC= encW= encC= decW= decC=
for ((i = 1; i <= reps; i++)); do
    measure wrapW wrapC "$rqpcli" package wrap "$work/plain" "$work/pkg" --mode 1
    measure encW encC openssl enc -des-ede3-ecb -K $key -nopad -in "$work/plain" -out "$work/ossl"
    measure unwrapW unwrapC "$rqpcli" package unwrap "$work/pkg" "$work/back"
    measure decW decC openssl enc -d -des-ede3-ecb -K $key -nopad -in "$work/ossl" -out "$work/oback"
done
cmp -s "$work/plain" "$work/back" || { echo "unwrapped content differs" >&2; exit 1; }
cmp -s "$work/plain" "$work/oback" || { echo "openssl round trip differs" >&2; exit 1; }

report() { # name, kind, our seconds, openssl seconds
    awk -v n="$1" -v k="$2" -v m="$mib" -v a="$3" -v b="$4" 'BEGIN {
        printf "%-6s %-4s %4d MiB: rqpcli %7.2f s (%6.1f MiB/s)  openssl enc %7.2f s (%6.1f MiB/s)  ratio %.2f\n",
               n, k, m, a, m / a, b, m / b, b / a }'
}
echo "best of $reps runs; ratio = openssl time / rqpcli time (target >= 1.0)"
report wrap wall "$wrapW" "$encW"
report wrap cpu "$wrapC" "$encC"
report unwrap wall "$unwrapW" "$decW"
report unwrap cpu "$unwrapC" "$decC"

if [ -x "$build/bench/cipher/bench_cipher" ]; then
    "$build/bench/cipher/bench_cipher" --benchmark_min_time=1
fi
