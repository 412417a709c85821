#!/bin/sh
# Reference toolchain: wraps LOGO_DIR/logo.gz into the update package
# LOGO_DIR/rqupdate.rqp (enciphered, no password) with rqpcli from the program
# directory (or the one named by RQPCLI).
#
#   downloadlogo.sh LOGO_DIR
set -u
me=downloadlogo.sh
logodir=${1:-}
if [ -z "$logodir" ] || [ ! -f "$logodir/logo.gz" ]; then
    echo "$me: no compressed image: '$logodir/logo.gz'" >&2
    exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
rqpcli=${RQPCLI:-$here/rqpcli}
rm -f "$logodir/rqupdate.rqp" "$logodir/rqupdate.rqp.part"
if "$rqpcli" package wrap "$logodir/logo.gz" "$logodir/rqupdate.rqp.part" --mode 1 >/dev/null; then
    mv -f "$logodir/rqupdate.rqp.part" "$logodir/rqupdate.rqp"
else
    rm -f "$logodir/rqupdate.rqp.part"
    exit 1
fi
