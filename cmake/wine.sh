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
# No other link leads out of a prefix. Nothing is run in a prefix in which such a link cannot be
# removed.
#
# The first run makes the prefix. The Wine server stays for a minute after the last program, so that
# the next one starts at once; --stop ends it. A program is killed after KX_TIMEOUT seconds (600 by
# default). --with runs a command of this machine that calls wine itself. The command gets the
# environment of the prefix, and its server is running.
set -euo pipefail

# Linux places memory at random. In about one start in 1,250 it takes an address that Wine needs, and the
# start fails. Where the system does not allow fixed addresses, Wine runs without them.
if [ -r /proc/self/personality ] && [ $((0x$(</proc/self/personality) & 0x40000)) = 0 ] &&
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
fi

# Removes every link but the drives above, adds the missing drives, and fails when the prefix then has
# other links. Wine itself links the user's folders (Desktop, Documents ...) to those of the real home,
# and serial ports to devices.
make_links() (
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
  [ "$(find . -type l -printf '%P %l\n' | sort)" = "$wanted" ]
)

# Removes foreign links from the prefix, or ends this script.
seal() {
  if ! make_links; then
    echo "wine.sh: links lead out of $WINEPREFIX and cannot be removed; nothing is run" >&2
    exit 1
  fi
}

# start SECONDS COMMAND...: runs a part of Wine's start-up. It runs in the background, because Wine
# ignores Ctrl-C while it starts.
start() {
  timeout -k 10 "$@" &
  wait "$!"
}

# Ends what start has started, and this script.
interrupted() {
  kill "${!-}" 2>/dev/null || true # it may have started nothing yet
  wineserver -k || true # none is running
  exit 130
}

# Makes the prefix. It is called as a separate process, in which a failing command ends it.
make_prefix() {
  if [ -d "$WINEPREFIX" ]; then
    wineserver -k || true # left by an interrupted run
  fi
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  start 300 wine wineboot --init
  start 60 wineserver -w
  touch "$WINEPREFIX/complete"
}

trap interrupted INT
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
  "${BASH_SOURCE[0]}" "$kind" --make >"$root/build/logs/wine-$kind.log" 2>&1 </dev/null ||
    { echo "wine.sh: the Wine prefix could not be made; see build/logs/wine-$kind.log" >&2; exit 1; }
fi
seal # before Wine's start, which reads the drives
# The server's first program also starts Wine's services. They must not hold the caller's output open.
if wineserver -p60 >/dev/null 2>&1; then
  start 60 wine cmd /c exit >/dev/null 2>&1 </dev/null || true # the caller's program will fail, too
  seal # again, because a new version of Wine makes its links anew at its first start
fi
if [ "$1" = --with ]; then
  shift
  exec "$@"
fi
# In the foreground, so that Ctrl-C reaches the program.
exec timeout --foreground -k 10 "${KX_TIMEOUT:-600}" wine "$@"
