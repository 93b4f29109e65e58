#!/usr/bin/env bash
# Checks that an open Wine prefix has no links but its drives, also after links to the home and to
# another drive were made in it.
#
# usage: check_wine_prefix.sh WINE-SCRIPT TRIAL-FOLDER
#
# The trial folder holds a trial home and a prefix, which is kept until WINE-SCRIPT changes.
set -euo pipefail
wine=$2/cmake/wine.sh prefix=$2/build/wine/open
export HOME=$2/home LC_ALL=C

# Runs a program, and compares the links of the prefix with its two drives.
expect_two_drives() {
  "$wine" open cmd /c exit
  diff <(printf '%s\n' 'dosdevices/c: -> ../drive_c' 'dosdevices/z: -> /') \
    <(find "$prefix" -type l -printf '%P -> %l\n' | sort)
}

if ! cmp -s "$1" "$wine"; then
  rm -rf "$2"
  mkdir -p "$2/cmake" "$HOME/Desktop" "$HOME/Documents"
  cp "$1" "$wine"
fi
trap '"$wine" open --stop' EXIT
expect_two_drives

"$wine" open --stop
mkdir -p "$prefix/drive_c/users/other"
ln -s "$HOME/Documents" "$prefix/drive_c/users/other/Documents"
ln -s "$HOME" "$prefix/dosdevices/d:"
expect_two_drives
rm -r "$prefix/drive_c/users/other"
