#!/bin/sh
# Reference toolchain: unpacks TARGET/upload/rqupdate.tar.gz into TARGET. Only
# regular files and directories are taken: an archive that holds an absolute path,
# a ".." component, a link, a device node, a FIFO or anything else is refused
# whole, before anything is written. Owners and modes of the archive are never
# restored (files and directories get the user's umask).
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
# The verbose listing starts each member with its kind: '-' file, 'd' directory.
# Links could point outside the target; device nodes and FIFOs would be made as
# whoever runs this (root included) and hang whatever opens them.
kinds=$(tar -tvzf "$archive" | cut -c1) || {
    echo "$me: not a readable archive: $archive" >&2
    exit 1
}
if printf '%s\n' "$kinds" | grep -q '[^-d]'; then
    echo "$me: refused, the archive holds members that are not regular files or directories" >&2
    exit 1
fi
tar -xzf "$archive" -C "$target" --no-same-owner --no-same-permissions || exit 1
