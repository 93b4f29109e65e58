#!/usr/bin/env bash
# Prints the folder of QtCore for Windows, and builds it first from the sources of this machine's Debian
# when it is missing or damaged.
#
# usage: qtcore.sh CACHE TOOLCHAIN [--check]
#
# With --check it never builds: it prints the folder, or fails when the folder is missing or does not hold the
# files that were built. The folder's name holds the version, and a key of the flags and the compiler. The
# folder appears by one rename, so an interrupted build never looks complete. A line of output that begins
# with "dev: " is the reason of a failure that the user can mend.
set -euo pipefail

cache=$1
toolchain=$2
package=qtbase-opensource-src

# Features of QtCore that no tool here uses; each costs size.
unused="animation codecs big_codecs commandlineparser concatenatetablesproxymodel datetimeparser
  easingcurve filesystemiterator filesystemwatcher gestures hijricalendar identityproxymodel
  islamiccivilcalendar itemmodel jalalicalendar library mimetype process processenvironment
  properties proxymodel qeventtransition regularexpression settings sha3-fast sharedmemory
  sortfilterproxymodel statemachine stringlistmodel systemsemaphore temporaryfile thread timezone
  topleveldomain translation transposeproxymodel xmlstream xmlstreamreader xmlstreamwriter
  network sql testlib concurrent xml"
# More unused features, which have no switch.
unused_defines="-DQT_NO_COMPRESS -DQT_NO_DATASTREAM -DQT_NO_GEOM_VARIANT -DQT_NO_SYSTEMLOCALE"
# DLLs that only unused parts of QtCore call. They are loaded at their first call, which never comes.
# Loading them at the start of the program would take most of its time.
delayed="advapi32 netapi32 ole32 shell32 user32 userenv version winmm ws2_32"
flags=(-xplatform win32-g++ -static -release -optimize-size -pch -opensource -confirm-license
  -prefix /qtcore -nomake examples -nomake tests -nomake tools
  -no-gui -no-widgets -no-dbus -no-icu -no-opengl -no-openssl -no-zstd -qt-zlib -qt-pcre
  "QMAKE_CXXFLAGS+=$unused_defines"
  # Nothing here catches exceptions: out of memory ends the program either way.
  "QMAKE_CXXFLAGS_EXCEPTIONS_ON=-fno-exceptions")
for feature in $unused; do
  flags+=("-no-feature-$feature")
done

key=$(printf '%s\n' "${flags[@]}" "$delayed" "$(basename "$toolchain")" | sha256sum | cut -c 1-12)

# files_of FOLDER: each file in it and its size, but for the list itself.
files_of() {
  (cd "$1" && find . -type f ! -path ./FILES -printf '%s %P\n' | LC_ALL=C sort)
}

for folder in "$cache/qtcore-"*"-$key"; do
  [ -d "$folder" ] || continue
  if files_of "$folder" | cmp -s - "$folder/FILES"; then
    echo "$folder"
    exit
  fi
  echo "qtcore.sh: files are missing or changed in $folder" >&2
done
[ "${3:-}" != --check ] || exit 1

# Fetches the sources. apt checks the signature of the lists and the checksums of what it fetches. The
# machine's package lists become lists of source packages in a separate folder, so that its configuration
# is not changed.
fetch_sources() {
  local apt_options=(-o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$work/entries"
    -o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work/apt" -o APT::Sandbox::User=)
  mkdir -p "$work/entries" "$work/lists/partial" "$work/apt/archives/partial" "$work/download"
  find /etc/apt -name '*.list' -exec cat {} + |
    sed -n 's/^[[:space:]]*deb[[:space:]]/deb-src /p' >"$work/entries/derived.list"
  find /etc/apt -name '*.sources' -exec sed 's/^[Tt]ypes:.*/Types: deb-src/; $a\\n' {} \; \
    >"$work/entries/derived.sources"
  apt-get "${apt_options[@]}" update || true # some entries may have no sources; the next step tells
  if ! (cd "$work/download" && apt-get "${apt_options[@]}" source --download-only "$package"); then
    if [ -n "$(find "$work/lists" -name '*_Sources*')" ] &&
      ! apt-cache "${apt_options[@]}" showsrc "$package" | grep -q .; then
      echo "dev: this system's sources have no $package. Those of Debian 12 and 13 have it."
    else
      echo "dev: Debian's sources could not be fetched. Is there a network?"
    fi
    return 1
  fi
  dpkg-source --no-check -x "$work"/download/*.dsc "$work/source"
}

build() {
  MAKEFLAGS=-j$(nproc)
  export MAKEFLAGS
  mkdir "$work/build"
  cd "$work/build"
  ../source/configure -device-option "CROSS_COMPILE=$toolchain/bin/ucrt64-" "${flags[@]}" \
    "QMAKE_CXXFLAGS+=-ffile-prefix-map=$work/source=qtbase"
  make qmake_all
  make -C src sub-corelib
  make -C src/corelib install "INSTALL_ROOT=$work/stage"
  cp -a "$work"/source/LICENSE* "$work/source/debian/copyright" "$work/stage/qtcore/"
  basename "$work"/download/*.dsc >"$work/stage/qtcore/SOURCE"
}

# Makes libdelayed.a, one import library for all delayed DLLs.
make_delayed_imports() {
  local dll tools=$toolchain/bin/ucrt64
  mkdir "$work/delayed"
  cd "$work/delayed"
  echo "create $work/stage/qtcore/lib/libdelayed.a" >merge
  for dll in $delayed; do
    {
      printf 'LIBRARY %s.dll\nEXPORTS\n' "$dll"
      "$tools-nm" "$("$tools-gcc" -print-file-name="lib$dll.a")" | sed -n 's/.* I __imp_//p' | sort -u
    } >"$dll.def"
    "$tools-dlltool" -d "$dll.def" -y "$dll.a"
    echo "addlib $dll.a" >>merge
  done
  echo save >>merge
  "$tools-ar" -M <merge
}

mkdir -p "$cache"
rm -rf "$cache"/qtcore.partial.* # left by an interrupted run
work=$(mktemp -d "$cache/qtcore.partial.XXXXXX")
{
  fetch_sources
  (build)
  (make_delayed_imports)
} >&2
files_of "$work/stage/qtcore" >"$work/FILES"
mv "$work/FILES" "$work/stage/qtcore/"
version=$(basename "$work"/download/*.dsc | sed 's/.*_\([0-9.]*\).*/\1/')
folder=$cache/qtcore-$version-$key
rm -rf "$cache"/qtcore-*-"$key"
mv -T "$work/stage/qtcore" "$folder"
rm -rf "$work"
echo "$folder"
