#!/usr/bin/env bash
# Prints the folder of the cross tools, which it makes when it is not there yet.
#
# usage: toolchain.sh CACHE
#
# The tools are Debian's mingw-w64 compilers, set to link the Universal C run-time in front of the
# older msvcrt, which is left with what only it exports (_setjmp), and to use the former's formatted
# print instead of their own. They are called ucrt64-gcc, ucrt64-g++, ucrt64-ar ...; the library and
# the program are built by the same ones, so that one C run-time serves the whole program.
set -euo pipefail

cache=$1
debian=x86_64-w64-mingw32

compiler=$("$debian-g++-posix" -dumpfullversion)-$(dpkg-query -W -f '${Version}' mingw-w64-x86-64-dev)
key=$(cat "${BASH_SOURCE[0]}" <(echo "$compiler") | sha256sum | cut -c 1-12)
folder=$cache/toolchain-$key

if [ ! -d "$folder" ]; then
  mkdir -p "$cache"
  rm -rf "$cache"/toolchain.partial.* # left by a run that was interrupted
  partial=$(mktemp -d "$cache/toolchain.partial.XXXXXX")
  "$debian-gcc-posix" -dumpspecs | sed 's/-lmsvcrt/-lucrt -lmsvcrt/' >"$partial/ucrt.specs"
  mkdir -p "$partial/bin" "$partial/include/bits"
  # The C++ library's own header switches to the compiler's formatted print; this one, found first,
  # switches back.
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
  for tool in ar as dlltool nm objcopy objdump ranlib strip windres; do
    ln -s "$(command -v "$debian-$tool")" "$partial/bin/ucrt64-$tool"
  done
  chmod 755 "$partial"
  mv -T "$partial" "$folder"
fi
echo "$folder"
