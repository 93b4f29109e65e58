#!/usr/bin/env bash
# Makes the package, DIST/kxDeleteOldFiles-VERSION-win64.zip, the tests for Windows, ...-tests.zip, and their
# checksums. The same sources give the same bytes.
#
# usage: package.sh BUILD PROGRAM DIST
#
# BUILD is the build folder that the program was linked in, with the tools and the QtCore that KX_TOOLCHAIN
# and KX_QTCORE name. The newest entry of CHANGELOG.md has the date of the release. All files in the packages
# get that date, so a package unpacked soon after the release is not old.
set -euo pipefail
umask 022
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mkdir -p "$3"
build=$1 program=$2 dist=$(realpath "$3") toolchain=$KX_TOOLCHAIN qtcore=$KX_QTCORE

version=$(sed -n 's/^project(.* VERSION \([^ ]*\) .*/\1/p' CMakeLists.txt)
name=kxDeleteOldFiles-$version-win64
date=$(grep -m 1 '^## ' CHANGELOG.md | sed -nE "s/^## $version, ([0-9]{4}-[0-9]{2}-[0-9]{2})$/\1/p")
[ -n "$date" ] || { echo "The first entry of CHANGELOG.md must be '## $version, YYYY-MM-DD'."; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
stage=$work/$name tests=$work/kxDeleteOldFiles-$version-tests

# filled FILE: prints the file with the facts of this package in place of the names between "@".
filled() {
  local source qt gcc mingw system
  source=$(cat "$qtcore/SOURCE") qt=${source#*_}
  system=$(sed -n 's/^PRETTY_NAME="\(.*\)"/\1/p' /etc/os-release)
  gcc=$(dpkg-query -W -f '${Version}' gcc-mingw-w64-base)
  mingw=$(dpkg-query -W -f '${Version}' mingw-w64-x86-64-dev)
  sed "s|@VERSION@|$version|; s|@DATE@|$date|; s|@NAME@|$name|; s|@SYSTEM@|$system|; s|@SOURCE@|$source|
    s|@QTCORE@|${qt%%+*}|; s|@GCC@|${gcc%%-*}|; s|@MINGW@|${mingw%%-*}|" "$1"
}

# dos [FILE...]: prints the files, or its input, with CR LF at the end of each line.
dos() {
  sed 's/\r\?$/\r/' "$@"
}

mkdir -p "$stage/job" "$stage/licences" "$stage/relink"
"$toolchain/bin/ucrt64-strip" -p -o "$stage/kxDeleteOldFiles.exe" "$program"
python3 package/manual_page.py docs/manual.md package/manual.css "$version" | dos >"$stage/manual.html"
filled package/README.txt | dos >"$stage/README.txt"
cmark-gfm --to plaintext --width 80 CHANGELOG.md | dos >"$stage/CHANGES.txt"
dos job/clean_old_files.cmd >"$stage/job/clean_old_files.cmd"
dos job/try_it.cmd >"$stage/job/try_it.cmd"
cp job/clean_old_files.xml "$stage/job/" # UTF-16 with CR LF already
filled package/notices.txt | dos >"$stage/licences/notices.txt"
dos "$qtcore/LICENSE.LGPL3" >"$stage/licences/LGPL-3.txt"
dos "$qtcore/LICENSE.GPL3" >"$stage/licences/GPL-3.txt"
dos "$qtcore/copyright" >"$stage/licences/qtcore-copyright.txt"
dos /usr/share/doc/gcc-mingw-w64-base/copyright >"$stage/licences/gcc-copyright.txt"
dos /usr/share/doc/mingw-w64-x86-64-dev/copyright >"$stage/licences/mingw-w64-copyright.txt"

# The files with which a recipient can link the program with another QtCore. This script links them
# once and compares the result with the program. The scripts keep LF, because bash does not take CR.
cp "$build"/app/CMakeFiles/kxDeleteOldFiles.dir/*.{obj,res} "$build/app/link_options" \
  "$build"/{app/libkx_app,install/libkx_install,sweep/libkx_sweep,text/libkx_text}.a \
  cmake/{toolchain,qtcore}.sh package/relink.sh "$stage/relink"
"$stage/relink/relink.sh" "$toolchain" "$qtcore" "$work/relinked.exe"
cmp "$work/relinked.exe" "$stage/kxDeleteOldFiles.exe"

cmake --install "$build" --component tests --prefix "$tests"
"$toolchain/bin/ucrt64-strip" -p "$tests"/*.exe
cp -r "$stage/kxDeleteOldFiles.exe" "$stage"/job/clean_old_files.* "$stage/licences" "$tests/"
dos /usr/share/doc/googletest/copyright >"$tests/licences/googletest-copyright.txt"

# grep ends with 1 when it finds nothing, and with more when it could not search.
found=$(LC_ALL=C grep -arlP "(?<![\w.-])(\Q$PWD\E|\Q$qtcore\E)/" "$stage" "$tests") || [ "$?" = 1 ]
if [ -n "$found" ]; then
  echo "These files tell where they were made: $found"
  exit 1
fi

cd "$work"
(cd "$name" && find . -type f -printf '%P\n' | LC_ALL=C sort | xargs sha256sum | dos >"$work/sums" &&
  mv "$work/sums" SHA256SUMS)
for folder in "$name" "${tests##*/}"; do
  find "$folder" -exec touch -d "$date UTC" {} +
  find "$folder" -type f | LC_ALL=C sort | TZ=UTC zip -q -X -@ "$dist/$folder.zip"
  (cd "$dist" && sha256sum "$folder.zip" | dos >"$folder.zip.sha256")
done
