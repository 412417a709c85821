#!/usr/bin/env bash
# Checks a built Debian package as a user would meet it: its control fields, then
# its content unpacked into a temporary root (dpkg -x), where the unpacked rqpcli
# must find its program directory and make a new project.
#   tests/package/check-package.sh PACKAGE.deb
set -euo pipefail
deb=$(realpath "$1")
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }
has() { [ -e "$root/$1" ] || [ -L "$root/$1" ] || fail "missing $1"; }

# Control fields: the libraries it links and a CJK font for the Chinese texts.
depends=$(dpkg-deb -f "$deb" Depends)
for want in libqt6widgets6 libxml2 "fonts-wqy-microhei | fonts-noto-cjk"; do
    grep -qF -- "$want" <<<"$depends" || fail "Depends lacks $want: $depends"
done
dpkg-deb --ctrl-tarfile "$deb" | tar -xO ./conffiles | grep -qx /etc/rqpdev/package.keys ||
    fail "package.keys is not a configuration file"

dpkg -x "$deb" "$root"
for f in usr/bin/rqpdev usr/bin/rqpcli usr/bin/rqdevsim \
         usr/lib/rqpdev/hmidevice.xml usr/lib/rqpdev/iodevdrv.xml usr/lib/rqpdev/printerconf.xml \
         usr/lib/rqpdev/conffile/rtdb.xml usr/lib/rqpdev/conffile/package.keys \
         usr/lib/rqpdev/RqGenDll.sh usr/lib/rqpdev/download.sh usr/lib/rqpdev/killprog.rqp \
         usr/lib/rqpdev/rqmon.rqp etc/rqpdev/package.keys \
         usr/share/applications/rqpdev.desktop usr/share/icons/hicolor/scalable/apps/rqpdev.svg \
         usr/share/man/man1/rqpcli.1.gz usr/share/man/man1/rqdevsim.1.gz \
         usr/share/bash-completion/completions/rqpcli usr/share/doc/rqpdev/copyright \
         usr/share/doc/rqpdev/guide/index.html usr/share/doc/rqpdev/guide/tour.html \
         usr/share/doc/rqpdev/examples/demo/rqrun.xml; do
    has "$f"
done
if command -v desktop-file-validate >/dev/null; then
    desktop-file-validate "$root/usr/share/applications/rqpdev.desktop" ||
        fail "desktop entry does not validate"
fi

# The unpacked programs run from the temporary root, without RQPDEV_HOME.
unset RQPDEV_HOME RQP_PACKAGE_KEYS
cli="$root/usr/bin/rqpcli"
version=$("$cli" --version) || fail "rqpcli --version failed"
[[ $version == "rqpcli "[0-9]* ]] || fail "rqpcli --version printed '$version'"
"$root/usr/bin/rqdevsim" --version | grep -q '^rqdevsim [0-9]' || fail "rqdevsim --version"
"$root/usr/bin/rqpdev" --version | grep -q '^rqpdev [0-9]' || fail "rqpdev --version"

type=$(LC_ALL=C sed -n 's/.*<hmidevice name="\([^"]*\)".*/\1/p' "$root/usr/lib/rqpdev/hmidevice.xml" | head -n 1)
work=$(mktemp -d)
trap 'rm -rf "$root" "$work"' EXIT
if "$cli" new "$work" tour --hmi-type "$type" --ip 127.0.0.9 >/dev/null; then
    for f in rqrun.xml rtdb.xml hmidb.xml device.xml printer.xml data hisdata; do
        [ -e "$work/tour/$f" ] || fail "rqpcli new made no $f"
    done
    "$cli" info "$work/tour" | grep -qF "$type" || fail "rqpcli info does not show the HMI type"
    "$cli" check "$work/tour" >/dev/null || fail "a new project does not pass rqpcli check"
else
    fail "rqpcli new failed with the HMI type '$type'"
fi

# The manual page names every command.
man=$(zcat "$root/usr/share/man/man1/rqpcli.1.gz" | sed 's/\\-/-/g; s/\\f[BIRP]//g')
while read -r command; do
    grep -qF -- "$command" <<<"$man" || fail "the manual page does not describe '$command'"
done < <("$cli" --help | sed -n 's/^  \([a-z][a-z-]*\( [a-z][a-z-]*\)\{0,1\}\)\( [A-Z(-].*\)\{0,1\}$/\1/p')

if command -v lintian >/dev/null; then
    errors=$(lintian --no-tag-display-limit "$deb" 2>&1 | grep '^E:' || true)
    [ -z "$errors" ] || fail "lintian reports errors:
$errors"
fi

if [ "$failures" -gt 0 ]; then
    echo "$failures failed" >&2
    exit 1
fi
echo "package $(basename "$deb"): all checks passed"
