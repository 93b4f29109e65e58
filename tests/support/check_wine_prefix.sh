#!/usr/bin/env bash
# Checks that a Wine prefix has no links but its drives: a new open prefix, and one in which links to
# the home and to other drives were made before.
#
# usage: check_wine_prefix.sh WINE-SCRIPT TRIAL-FOLDER
set -euo pipefail
trial=$2
export HOME=$trial/home LC_ALL=C

# Stops Wine and removes the trial folder.
clean_up() {
  "$trial/cmake/wine.sh" "$kind" --stop || true
  rm -rf "$trial"
}

# expect_links LINK...: runs a program, and compares the links of the prefix with these.
expect_links() {
  "$trial/cmake/wine.sh" "$kind" cmd /c exit
  diff <(printf '%s\n' "$@") <(find "$trial/build/wine/$kind" -type l -printf '%P -> %l\n' | sort)
}

kind=open
rm -rf "$trial" # left by a run that was killed
mkdir -p "$trial/cmake" "$HOME/Desktop" "$HOME/Documents"
cp "$1" "$trial/cmake/wine.sh"
trap clean_up EXIT
expect_links 'dosdevices/c: -> ../drive_c' 'dosdevices/z: -> /'

"$trial/cmake/wine.sh" open --stop
mv "$trial/build/wine/open" "$trial/build/wine/sealed"
kind=sealed
mkdir "$trial/build/wine/sealed/drive_c/users/other"
ln -s "$HOME/Documents" "$trial/build/wine/sealed/drive_c/users/other/Documents"
ln -s "$HOME" "$trial/build/wine/sealed/dosdevices/d:"
expect_links 'dosdevices/c: -> ../drive_c' \
  "dosdevices/unc/server/share -> $trial/build/scratch/share" \
  "dosdevices/x: -> $trial/build/scratch" "dosdevices/y: -> $trial/build/demo"
