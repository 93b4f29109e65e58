#!/usr/bin/env bash
# Links the program from the objects beside this script with a QtCore for Windows, and strips it.
#
# usage: relink.sh TOOLCHAIN QTCORE PROGRAM
#
# TOOLCHAIN and QTCORE are folders that toolchain.sh and qtcore.sh make; licences/notices.txt tells how.
# PROGRAM is the file to write.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
"$1/bin/ucrt64-g++" "@$here/link_options" "$here"/*.{obj,res} \
  "$here"/libkx_{app,install,sweep,text}.a "$2/lib/libQt5Core.a" "$2/lib/libdelayed.a" \
  -ldelayimp -luuid -lkernel32 -o "$3"
"$1/bin/ucrt64-strip" -p "$3" # without -p it would write the time into the program
