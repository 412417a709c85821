#!/bin/sh
# Reference toolchain: unpacks TARGET/upload/rqupdate.tar.gz into TARGET. An
# archive that holds an absolute path, a ".." component or a link is refused
# whole, before anything is written.
#
#   upload.sh TARGET_DIR
set -u
me=upload.sh
target=${1:-}
archive="$target/upload/rqupdate.tar.gz"
if [ -z "$target" ] || [ ! -f "$archive" ]; then
    echo "$me: no archive: '$archive'" >&2
    exit 2
fi
names=$(tar -tzf "$archive") || {
    echo "$me: not a readable archive: $archive" >&2
    exit 1
}
nl='
'
oldifs=$IFS
IFS=$nl
set -f
for n in $names; do
    case "$n" in
        /*)
            echo "$me: refused, absolute path in the archive: $n" >&2
            exit 1
            ;;
    esac
    case "/$n/" in
        */../*)
            echo "$me: refused, '..' in the archive: $n" >&2
            exit 1
            ;;
    esac
done
IFS=$oldifs
# Symbolic and hard links could point outside the target.
if tar -tvzf "$archive" | cut -c1 | grep -q '[lh]'; then
    echo "$me: refused, the archive holds links" >&2
    exit 1
fi
tar -xzf "$archive" -C "$target" || exit 1
