#!/bin/sh
# Installs the build into a scratch prefix and checks what a desktop, the
# software centre and man see there. Usage: check-install.sh BUILD_DIR
set -eu
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
id=io.github.stampwise.Stampwise

desktop-file-validate "$prefix/share/applications/$id.desktop"
appstreamcli validate --no-net --pedantic "$prefix/share/metainfo/$id.metainfo.xml"
for size in 16 32 48 64 128 256; do
    test -s "$prefix/share/icons/hicolor/${size}x$size/apps/$id.png"
done
test -s "$prefix/share/icons/hicolor/scalable/apps/$id.svg"
test -s "$prefix/share/stampwise/welcome.html"
test -n "$(ls "$prefix/share/stampwise/help")"

# The installed program runs from the prefix, and its manual page renders
# with every command in it.
QT_QPA_PLATFORM=offscreen "$prefix/bin/stampwise" --help | grep -q '^Usage: stampwise'
man=$(MANWIDTH=80 man -l "$prefix/share/man/man1/stampwise.1" 2>&1)
for section in SYNOPSIS 'STAMP COMMAND' 'INFO COMMAND'; do
    echo "$man" | grep -q "^$section" || { echo "man page lacks $section"; exit 1; }
done
echo "installed and validated under $prefix"
