#!/usr/bin/env bash
# Checks that an open Wine prefix has no links but its drives, although links to the home and to another
# drive were made in it.
#
# usage: check_wine_prefix.sh WINE-SCRIPT PREFIX TRIAL-FOLDER
#
# The trial prefix is a copy of PREFIX that shares its files, since a new one takes 13 s and 0.7 GB.
set -euo pipefail
wine=$3/cmake/wine.sh trial=$3/build/wine/open
export HOME=$3/home LC_ALL=C

rm -rf "$3" # left by a run that was killed
mkdir -p "$3/cmake" "$3/build/wine" "$HOME/Documents"
cp "$1" "$wine"
cp -al "$2" "$trial"
mkdir "$trial/drive_c/users/other"
ln -s "$HOME/Documents" "$trial/drive_c/users/other/Documents"
ln -s "$HOME" "$trial/dosdevices/d:"

trap '"$wine" open --stop; rm -rf "$3"' EXIT
"$wine" open cmd /c exit
diff <(printf '%s\n' 'dosdevices/c: -> ../drive_c' 'dosdevices/z: -> /') \
  <(find "$trial" -type l -printf '%P -> %l\n' | sort)
