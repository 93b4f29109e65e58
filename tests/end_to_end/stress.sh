#!/usr/bin/env bash
# What takes minutes: huge folders, and the faults over and over, one of them for long. Wine needs a
# look through the whole folder to make a file in it, so the huge ones are not made through Wine.
#
# usage: stress.sh SCRATCH WINE...
#
# WINE... is the command that runs a program in the sealed prefix, with full paths.
set -euo pipefail

cd "$1" # a folder that the programs see
readonly tree=$PWD/stress
shift
readonly wine=("$@")

# swept DIRECTORY LINE: the program's report on it has that line.
swept() {
  "${wine[@]}" 'X:\suite\bin\win64\kxDeleteOldFiles.exe' "$1" -do 14 | tr -d '\r' >"$tree.log"
  grep -qxF "$2" "$tree.log" || { tail -n 20 "$tree.log" && exit 1; }
}

# left WHAT: exactly what standard input lists is in the tree.
left() {
  diff <(sort) <(cd "$tree" && find . -mindepth 1 -printf '%P\n' | sort) >"$tree.diff" ||
    { head -n 20 "$tree.diff" && exit 1; }
  echo "passed: $1"
}

rm -rf "$tree"
mkdir -p "$tree/full"
(cd "$tree/full" && seq 1 2 99999 | xargs touch && seq 0 2 99998 | xargs touch -d '30 days ago')
swept 'X:\stress' '  50000 files deleted (0 Kib). '
(echo full && seq -f 'full/%.0f' 1 2 99999) | left "100,000 files in one folder, half of them old"

rm -rf "$tree"
mkdir -p "$tree"
(cd "$tree" && seq -f 'f%.0f/in/sub' 1 2000 | xargs mkdir -p && mkdir -p g/in &&
  seq -f 'f%.0f/in/sub/old' 1 2000 | xargs touch -d '30 days ago' && touch -d '30 days ago' g/in/old)
swept 'X:\stress\f*\in' "Starting to delete files in folder 'X:\\stress\\f2000\\in', File have to be older than 14 days."
(seq -f 'f%.0f' 1 2000 && seq -f 'f%.0f/in' 1 2000 && printf '%s\n' g g/in g/in/old) |
  left "2,000 folders behind a star"
rm -rf "$tree"

KX_RACE_SECONDS=120 "${wine[@]}" 'X:\bin\faults_test.exe' --gtest_filter='*TreeThatChanges*'
KX_RACE_SECONDS=1 "${wine[@]}" 'X:\bin\faults_test.exe' --gtest_repeat=20 --gtest_brief=1
