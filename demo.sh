#!/usr/bin/env bash
# Shows the program at work on a sample users folder. ./dev demo calls it when everything is built.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/build/demo"

readonly wine=$PWD/../../cmake/wine.sh
readonly users=Users temp=AppData/Local/Temp
readonly arguments=(-do 14 'Y:\Users\m*\AppData\Local\Temp' -v)

# sample_file AGE-IN-DAYS SIZE-IN-KIB PATH
sample_file() {
  mkdir -p "$(dirname "$3")"
  head -c "$(($2 * 1024))" /dev/zero >"$3"
  touch -d "$1 days ago" "$3"
}

# Makes a typical users folder.
lay_out_sample() {
  local -r long=$(printf 'a-folder-with-a-long-name-%.0s' 1 2 3) # three of them make over 240 units
  chmod -R u+w "$users" 2>/dev/null || true
  rm -rf "$users"
  sample_file 30 120 "$users/maria/$temp/render job 0815.log"
  sample_file 30 8 "$users/maria/$temp/Entwürfe/alt/Übersicht.txt"
  sample_file 2 16 "$users/maria/$temp/new.txt"
  sample_file 20 1 "$users/maria/$temp/readonly.ini"
  sample_file 20 1 "$users/maria/$temp/hidden.ini"
  sample_file 20 1500 "$users/Max Müller/$temp/cache/a/b/c/old.exr"
  sample_file 1 4 "$users/Max Müller/$temp/cache/a/keep.exr"
  sample_file 400 2 "$users/Max Müller/$temp/$long/$long/$long/deep.tmp"
  mkdir -p "$users/Max Müller/$temp/empty/empty too"
  sample_file 50 3 "$users/mia/Documents/old letter.txt"
  sample_file 50 3 "$users/anna/$temp/not asked for.tmp"
  chmod a-w "$users/maria/$temp/readonly.ini"
  "$wine" sealed attrib +H 'Y:\Users\maria\AppData\Local\Temp\hidden.ini'
}

# Lists every file with its date and its size in bytes. Folders end with a slash.
show_tree() {
  (cd "$users" && find . -mindepth 1 -printf '%P\t%TY-%Tm-%Td\t%s\t%y\n') |
    LC_ALL=C sort | awk -F '\t' '{
      depth = split($1, name, "/")
      entry = sprintf("%" 3 * depth "s", "") name[depth]
      if ($4 == "d") printf "%22s%s/\n", "", entry
      else printf "%12s%10d%s\n", $2, $3, entry
    }'
}

# run_in FOLDER: runs the program of this folder. It prints Latin-1 with CR LF.
run_in() (
  cd "$1"
  timeout --foreground 600 "$wine" sealed kxDeleteOldFiles.exe "${arguments[@]}" | iconv -f latin1 | tr -d '\r'
)

unset KX_ROOT KX_ROOT_INSTALLER
lay_out_sample
printf '\nThe users folder before:\n\n'
show_tree
printf '\n> kxDeleteOldFiles %s\n\n' "${arguments[*]}"
run_in suite/bin/win64
printf 'And after:\n\n'
show_tree
mkdir -p elsewhere
cp suite/bin/win64/kxDeleteOldFiles.exe elsewhere/
printf '\nAnd the same program outside an installation of the suite:\n\n'
run_in elsewhere || printf '\n(exit code %s)\n' "$?"
