#!/usr/bin/env bash
# Links the program of the objects beside this script with a QtCore for Windows.
#
# usage: relink.sh TOOLCHAIN QTCORE PROGRAM
#
# TOOLCHAIN and QTCORE are folders as toolchain.sh and qtcore.sh, beside this script, make them on
# Debian 12. QTCORE has lib/libQt5Core.a: put your own there. The program is written to PROGRAM.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
"$1/bin/ucrt64-g++" -Os -static -Wl,--gc-sections -Wl,--no-insert-timestamp "$here"/*.{obj,res} \
  "$here"/libkx_{app,install,sweep,text}.a "$2/lib/libQt5Core.a" "$2/lib/libdelayed.a" \
  -ldelayimp -luuid -lkernel32 -o "$3"
