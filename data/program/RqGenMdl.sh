#!/bin/sh
# Reference toolchain: builds one user module MdlName.so in the project directory.
#
#   PRJ_DIR   the project directory
#   MdlName   the module's name
#   CFLAGS    additional defines, split at blanks
#   LDFLAGS   the module's sources, each in double quotes
#
# The compiler is ${CC:-cc}; a cross compiler comes in through CC.
set -u
set -f
me=RqGenMdl.sh
dir=${PRJ_DIR:-}
name=${MdlName:-}
if [ -z "$dir" ] || [ ! -d "$dir" ]; then
    echo "$me: no project directory: '$dir'" >&2
    exit 2
fi
case "$name" in
    "" | */* | .*)
        echo "$me: bad module name: '$name'" >&2
        exit 2
        ;;
esac
cc=${CC:-cc}

set --
if [ -n "${LDFLAGS:-}" ]; then
    list=$(printf '%s\n' "$LDFLAGS" | xargs printf '%s\n') || {
        echo "$me: cannot read the source list: $LDFLAGS" >&2
        exit 2
    }
    nl='
'
    oldifs=$IFS
    IFS=$nl
    for f in $list; do
        [ -n "$f" ] && set -- "$@" "$f"
    done
    IFS=$oldifs
fi
if [ $# -eq 0 ]; then
    echo "$me: module $name has no source file" >&2
    exit 2
fi

out="$dir/$name.so"
# shellcheck disable=SC2086
$cc -shared -fPIC ${CFLAGS:-} -I"$dir/compile" -I"$dir" -o "$out.part" "$@" || {
    rm -f "$out.part"
    exit 1
}
mv -f "$out.part" "$out"
