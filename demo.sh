#!/usr/bin/env bash
# Shows the program at work on a sample users folder. ./dev demo calls it when everything is built.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/build/demo"

readonly wine=$PWD/../../cmake/wine.sh
readonly users=Users temp=AppData/Local/Temp
readonly arguments=(-do 14 'Y:\Users\m*\AppData\Local\Temp' -v)

# Makes a typical users folder. A row has the age in days, the size in KiB, and the path.
lay_out_sample() {
  local -r long=$(printf 'a-folder-with-a-long-name-%.0s' 1 2 3) # three of them make over 240 units
  chmod -R u+w "$users" 2>/dev/null || true
  rm -rf "$users"
  local days kib path
  while read -r days kib path; do
    mkdir -p "$users/${path%/*}"
    head -c "$((kib * 1024))" /dev/zero >"$users/$path"
    touch -d "$days days ago" "$users/$path"
  done <<END
30   120 maria/$temp/render job 0815.log
30     8 maria/$temp/Entwürfe/alt/Übersicht.txt
2     16 maria/$temp/new.txt
20     1 maria/$temp/readonly.ini
20     1 maria/$temp/hidden.ini
20  1500 Max Müller/$temp/cache/a/b/c/old.exr
1      4 Max Müller/$temp/cache/a/keep.exr
400    2 Max Müller/$temp/$long/$long/$long/deep.tmp
50     3 mia/Documents/old letter.txt
50     3 anna/$temp/not asked for.tmp
END
  mkdir -p "$users/Max Müller/$temp/empty/empty too"
  chmod a-w "$users/maria/$temp/readonly.ini"
  timeout --foreground 60 "$wine" sealed attrib +H 'Y:\Users\maria\AppData\Local\Temp\hidden.ini'
}

# Lists every file with its date and its size in bytes, and every empty folder.
show_tree() {
  (cd "$users" && find . -type f -printf '%TY-%Tm-%Td%10s  %P\n' -o -empty -printf 'empty folder          %P/\n') |
    LC_ALL=C sort -k 1.23
}

lay_out_sample
printf '\nThe users folder before:\n\n'
show_tree
printf '\n> kxDeleteOldFiles %s\n\n' "${arguments[*]}"
# The program prints Latin-1 with CR LF.
(cd suite/bin/win64 && timeout --foreground 600 "$wine" sealed kxDeleteOldFiles.exe "${arguments[@]}") |
  iconv -f latin1 -t utf-8 | tr -d '\r'
printf 'And after:\n\n'
show_tree
