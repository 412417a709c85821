#!/bin/sh
# Reference toolchain: archives the project's files into
# PROJECT_DIR/download/rqupdate.tar.gz (gzip-compressed tar). The working folders
# download/, upload/, logo/ and compile/ stay out of it, and so does every dot
# file or folder at any depth (the temporaries of a save that was killed, editor
# and version-control files).
#
#   download.sh PROJECT_DIR
set -u
me=download.sh
dir=${1:-}
if [ -z "$dir" ] || [ ! -d "$dir" ]; then
    echo "$me: no project directory: '$dir'" >&2
    exit 2
fi
cd "$dir" || exit 2
mkdir -p download || exit 2
list=download/.rqupdate.list
part=download/rqupdate.tar.gz.part
# Names keep their leading "./", so none can be taken for an option. The list
# names every entry, so tar does not descend on its own.
find . -mindepth 1 \( -name '.*' -o -path ./download -o -path ./upload -o -path ./logo \
    -o -path ./compile \) -prune -o -print | LC_ALL=C sort > "$list" || exit 2
if tar -czf "$part" --no-recursion -T "$list"; then
    rm -f "$list"
    mv -f "$part" download/rqupdate.tar.gz
else
    rm -f "$list" "$part"
    exit 1
fi
