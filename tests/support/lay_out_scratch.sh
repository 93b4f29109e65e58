#!/usr/bin/env bash
# Lays out what the tests find on the scratch drive: the program inside an installation, outside, and
# where its name takes 258 bytes; and a link to a folder, which Wine itself cannot make.
#
# usage: lay_out_scratch.sh PROGRAM SCRATCH
set -euo pipefail

rm -rf "$2/suite" "$2/links" "$2/scratch" "$2/apps/sub"
mkdir -p "$2/suite/bin/win64" "$2/suite/sub/cfg_global" "$2/links/tree" "$2/links/target"
mkdir -p "$2/apps/bin/win64"
cp "$1" "$2/suite/bin/win64/"
cp "$1" "$2/apps/bin/win64/lost.exe"
deep=$2/apps/$(printf 'd%.0s' {1..200})/$(printf 'e%.0s' {1..43})
mkdir -p "$deep"
cp "$1" "$deep/l.exe"
ln -s ../target "$2/links/tree/link"
