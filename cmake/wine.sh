#!/usr/bin/env bash
# Runs a Windows program under Wine, in a prefix of the project's own.
#
# usage: wine.sh open|sealed PROGRAM [ARGS...]    or    wine.sh open|sealed --stop
#        wine.sh open|sealed --with COMMAND [ARGS...]
#
#   open     the whole machine is drive Z:, for a program that works on the caller's folders
#   sealed   the program sees its prefix, drive X: (build/scratch), drive Y: (build/demo) and the
#            network folder \\server\share (build/scratch/share), and no other folder of the
#            machine: a faulty build that deletes whatever it finds cannot get further
#
# The first run makes the prefix. The prefix's server stays for a minute after the last program, so
# that the next one starts at once; --stop ends it. KX_TIMEOUT is the time in seconds after which a
# program is killed. --with runs a command of this machine, not a Windows program, that calls wine
# itself: in the prefix's environment and with its server running.
set -euo pipefail

kind=$1
shift
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEPREFIX=$root/build/wine/$kind
export WINEDEBUG=-all WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe='
export LC_ALL=C.UTF-8 # names on the disk are UTF-8 to Wine, and its messages English
unset DISPLAY

seal() {
  local drives=$WINEPREFIX/dosdevices link
  rm -f "$drives/z:" "$drives"/com* "$drives"/lpt*
  mkdir -p "$drives/unc/server" "$root/build/scratch/share" "$root/build/demo"
  ln -s "$root/build/scratch" "$drives/x:"
  ln -s "$root/build/demo" "$drives/y:"
  ln -s "$root/build/scratch/share" "$drives/unc/server/share"
  # Wine links the folders of the user (documents, desktop ...) to those of the real one.
  find "$WINEPREFIX/drive_c/users" -type l -print | while IFS= read -r link; do
    rm "$link"
    mkdir "$link"
  done
  [ ! -e "$drives/z:" ] && [ -z "$(find "$WINEPREFIX/drive_c/users" -type l)" ]
}

# Called as a process of its own, in which a failing command ends it.
make_prefix() {
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  timeout -k 10 300 wine wineboot --init
  timeout -k 10 60 wineserver -w
  if [ "$kind" = sealed ]; then
    seal
  fi
  touch "$WINEPREFIX/complete"
}

if [ "${1:-}" = --stop ]; then
  if [ -d "$WINEPREFIX" ]; then
    wineserver -k || true # none is running
  fi
  exit
fi
if [ "${1:-}" = --make ]; then
  make_prefix
  exit
fi
if [ ! -e "$WINEPREFIX/complete" ]; then
  mkdir -p "$root/build/logs"
  "${BASH_SOURCE[0]}" "$kind" --make >"$root/build/logs/wine-$kind.log" 2>&1 ||
    { echo "wine.sh: no Wine prefix; see build/logs/wine-$kind.log" >&2; exit 1; }
fi
# What the first program of a prefix starts beside itself must not hold the caller's output open.
if wineserver -p60 >/dev/null 2>&1; then
  timeout -k 10 60 wine cmd /c exit >/dev/null 2>&1 </dev/null || true # the program tells more
fi
if [ "$1" = --with ]; then
  shift
  exec "$@"
fi
# In the foreground, so that Ctrl-C reaches the program.
exec timeout --foreground -k 10 "${KX_TIMEOUT:-600}" wine "$@"
