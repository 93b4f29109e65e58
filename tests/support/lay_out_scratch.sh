#!/usr/bin/env bash
# Lays out what the tests find on the scratch drive: the test programs; the program inside an
# installation, outside, and where its name takes 258 bytes; and a link to a folder, which Wine itself
# cannot make.
#
# usage: lay_out_scratch.sh PROGRAM TEST-PROGRAMS SCRATCH
set -euo pipefail

rm -rf "$3/suite" "$3/links" "$3/scratch" "$3/apps" "$3/bin"
mkdir -p "$3/suite/bin/win64" "$3/suite/sub/cfg_global" "$3/links/tree" "$3/links/target"
cp -R "$2/." "$3"
cp "$1" "$3/suite/bin/win64/"
cp "$1" "$3/apps/bin/win64/lost.exe"
deep=$3/apps/$(printf 'd%.0s' {1..200})/$(printf 'e%.0s' {1..43})
mkdir -p "$deep"
cp "$1" "$deep/l.exe"
ln -s ../target "$3/links/tree/link"
