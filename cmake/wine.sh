#!/usr/bin/env bash
# Runs a Windows program under Wine, in one of the project's own prefixes.
#
# usage: wine.sh open|sealed PROGRAM [ARGS...]    or    wine.sh open|sealed --stop
#        wine.sh open|sealed --with COMMAND [ARGS...]
#
#   open     drive Z: is the whole machine, for a program that works on the caller's folders
#   sealed   the program sees its prefix, drive X: (build/scratch), drive Y: (build/demo) and the
#            network folder \\server\share (build/scratch/share). It sees no other folder of the
#            machine, so a faulty build that deletes whatever it finds gets no further. One way out
#            is left: Wine opens names that begin with \\?\unix\ anywhere on the machine.
#
# No other link leads out of a prefix. Nothing is run where such a link cannot be removed.
#
# The first run makes the prefix. The Wine server stays for a minute after the last program, so that
# the next one starts at once; --stop ends it. --with runs a command of this machine that calls wine
# itself. The command gets the environment of the prefix, and its server is running.
set -euo pipefail

# Linux places memory at random. In about one start in 1,250 it takes an address that Wine needs, and the
# start fails. Where the system does not allow fixed addresses, Wine runs without them.
readonly ADDR_NO_RANDOMIZE=0x40000
if [ -r /proc/self/personality ] && [ $((0x$(</proc/self/personality) & ADDR_NO_RANDOMIZE)) = 0 ] &&
  setarch -R true 2>/dev/null; then
  exec setarch -R "${BASH_SOURCE[0]}" "$@"
fi

kind=$1
shift
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
scratch=$root/build/scratch
export WINEPREFIX=$root/build/wine/$kind
# Without winedbg: with it a program that crashes may end with exit code 0.
export WINEDEBUG=-all WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=;winedbg.exe='
export DBUS_SYSTEM_BUS_ADDRESS=disabled: # otherwise Wine adds a drive for each USB stick
export LC_ALL=C.UTF-8 # Wine then reads names on the disk as UTF-8, and its messages are English
unset DISPLAY

# The links in the folder dosdevices, which are the drives, and where they lead.
declare -A drives=([c:]=../drive_c)
if [ "$kind" = open ]; then
  drives[z:]=/
else
  drives+=([x:]=$scratch [y:]=$root/build/demo [unc/server/share]=$scratch/share)
  unset KX_ROOT KX_ROOT_INSTALLER # no installation but that of the test or the demo
fi

# Removes every link but the drives above and adds the missing drives. Ends this script when the prefix then
# has other links. Wine itself links the user's folders (Desktop, Documents ...) to those of the real home,
# and serial ports to devices.
seal() (
  set +e # the comparison at the end decides
  cd "$WINEPREFIX" || exit
  mkdir -p "$scratch/share" "$root/build/demo"
  find drive_c -type l -exec rm {} \; -exec mkdir {} \;
  find dosdevices -type l -printf '%P\n' | while IFS= read -r name; do
    [ "$(readlink "dosdevices/$name")" = "${drives[$name]:-}" ] || rm "dosdevices/$name"
  done
  for name in "${!drives[@]}"; do
    mkdir -p "$(dirname "dosdevices/$name")"
    [ -L "dosdevices/$name" ] || ln -s "${drives[$name]}" "dosdevices/$name"
  done
  wanted=$(for name in "${!drives[@]}"; do echo "dosdevices/$name ${drives[$name]}"; done | sort)
  [ "$(find . -type l -printf '%P %l\n' | sort)" = "$wanted" ] && exit
  echo "wine.sh: links lead out of $WINEPREFIX and cannot be removed; nothing is run" >&2
  exit 1
)

if [ "${1:-}" = --stop ] || [ ! -e "$WINEPREFIX/complete" ]; then
  [ ! -d "$WINEPREFIX" ] || wineserver -k || true # none is running
fi
[ "${1:-}" != --stop ] || exit 0
if [ ! -e "$WINEPREFIX/complete" ]; then
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  timeout -k 10 300 wine wineboot --init </dev/null
  timeout 60 wineserver -w
  touch "$WINEPREFIX/complete"
fi
seal # before Wine's start, which reads the drives
# The server's first program also starts Wine's services. They must not hold the caller's output open.
if wineserver -p60 >/dev/null 2>&1; then
  timeout -k 10 60 wine cmd /c exit >/dev/null 2>&1 </dev/null || true # the caller's program will fail, too
  seal # again, because a new version of Wine makes its links anew at its first start
fi
if [ "$1" = --with ]; then
  shift
  exec "$@"
fi
exec wine "$@"
