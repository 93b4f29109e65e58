#!/usr/bin/env bash
# Prints the folder of the cross tools, and makes it first when it is missing or damaged.
#
# usage: toolchain.sh CACHE
#
# The tools are Debian's mingw-w64 compilers with three changes. They link the Universal C run-time
# ahead of the older msvcrt, which then supplies only what nothing else exports (_setjmp). They use
# the C run-time's formatted print instead of the compiler's replacement. And they compile with
# -fno-ipa-ra (CONTRIBUTING.md). They are called ucrt64-gcc, ucrt64-g++, ucrt64-ar and so on. The
# same tools build QtCore and the program, so that one C run-time serves the whole program.
set -euo pipefail

cache=$1
debian=x86_64-w64-mingw32

compiler=$("$debian-g++-posix" -dumpfullversion)-$(dpkg-query -W -f '${Version}' mingw-w64-x86-64-dev)
key=$(cat "${BASH_SOURCE[0]}" <(echo "$compiler") | sha256sum | cut -c 1-12)
folder=$cache/toolchain-$key

# files_of FOLDER: each file in it and its size, but for the list itself.
files_of() {
  (cd "$1" && find . -type f ! -path ./FILES -printf '%s %P\n' | LC_ALL=C sort)
}

if ! files_of "$folder" 2>/dev/null | cmp -s - "$folder/FILES"; then
  mkdir -p "$cache"
  rm -rf "$folder" "$cache"/toolchain.partial.* # damaged, or left by an interrupted run
  partial=$(mktemp -d "$cache/toolchain.partial.XXXXXX")
  "$debian-gcc-posix" -dumpspecs | sed 's/-lmsvcrt/-lucrt -lmsvcrt/' >"$partial/ucrt.specs"
  mkdir -p "$partial/bin" "$partial/include/bits"
  # The C++ library's header selects the compiler's formatted print. This header is found first and
  # selects the C run-time's again.
  cat >"$partial/include/bits/os_defines.h" <<'END'
#include_next <bits/os_defines.h>
#undef __USE_MINGW_ANSI_STDIO
#define __USE_MINGW_ANSI_STDIO 0
END
  for tool in gcc g++; do
    cat >"$partial/bin/ucrt64-$tool" <<END
#!/bin/sh
exec $debian-$tool-posix -specs="$folder/ucrt.specs" -isystem "$folder/include" -D_UCRT \\
  -fno-ipa-ra "\$@"
END
    chmod +x "$partial/bin/ucrt64-$tool"
  done
  # Scripts instead of links, so that a sweep that reaches the cache cannot delete the real tools.
  for tool in ar as dlltool nm objcopy objdump ranlib strip windres; do
    printf '#!/bin/sh\nexec %s "$@"\n' "$debian-$tool" >"$partial/bin/ucrt64-$tool"
    chmod +x "$partial/bin/ucrt64-$tool"
  done
  chmod 755 "$partial"
  files_of "$partial" >"$partial.files"
  mv "$partial.files" "$partial/FILES"
  mv -T "$partial" "$folder"
fi
echo "$folder"
