#!/usr/bin/env bash
# Lays out what the tests find on the scratch drive: the test programs; the program inside an
# installation, outside, and where its name takes 258 bytes; and links, which Wine itself cannot make:
# to folders, files, and a disk that is full. Names that only other systems make, too.
#
# usage: lay_out_scratch.sh PROGRAM TEST-PROGRAMS SCRATCH
set -euo pipefail

rm -rf "$3/suite" "$3/links" "$3"/rrr* "$3/faults" "$3/odd" "$3/scratch" "$3/apps" "${3:?}/bin"
mkdir -p "$3/suite/bin/win64" "$3/suite/sub/cfg_global" "$3/links/tree" "$3/links/target" \
  "$3/links/cycle/sub" "$3/faults/swept/tree" "$3/faults/behind"
cp -R "$2/." "$3"
cp "$1" "$3/suite/bin/win64/"
cp "$1" "$3/apps/bin/win64/lost.exe"
deep=$3/apps/$(printf 'd%.0s' {1..200})/$(printf 'e%.0s' {1..43})
mkdir -p "$deep"
cp "$1" "$deep/l.exe"
ln -s ../target "$3/links/tree/link"
ln -s .. "$3/links/cycle/sub/up"
mkdir -p "$3/links/files" "$3/odd/sub" "$3/odd/s*r"
ln -s ../old "$3/links/files/to old"
ln -s ../young "$3/links/files/to young"
touch -d '30 days ago' "$3/odd/sub/a?b" "$3/odd/sub/"$'a\x01b'
ln -s ../../behind "$3/faults/swept/tree/link"
ln -sf /dev/full "$3/full disk"

# A RAM disk keeps times of which other disks make 1901. Each checkout has a folder of its own there.
ram=/dev/shm/kxDeleteOldFiles-$(id -u)-$(cksum <<<"$3" | cut -d ' ' -f 1)
rm -rf "$ram"
mkdir -p "$ram/model"
for time in '1601-01-01 00:05' 1601-01-02 1902-01-01 '1969-12-31 23:59:59' 1970-01-01 \
  '2038-01-19 03:14:07' '2038-01-19 03:14:08' 2400-01-01; do
  touch -d "$time UTC" "$ram/model/${time//:/}"
done
ln -sfn "$ram" "$3/ram"
