#!/usr/bin/env bash
# Checks what the program loads, and facts of its file that no run under Wine shows.
# usage: check_program_file.sh PROGRAM TOOL-PREFIX VERSION
set -euo pipefail
export LC_ALL=C # objdump translates its words

header=$("$2objdump" -p "$1" | tr -s '[:space:]' ' ')
resources=$("$2windres" -J coff -O rc -i "$1")
IFS=. read -r major minor patch <<<"$3"

# holds FACT COMMAND...: fails with this fact unless the command succeeds.
holds() {
  "${@:2}" >/dev/null || { echo "check_program_file.sh: this does not hold: $1" >&2; exit 1; }
}

at_start=$(grep -oP 'DLL Name: \K\S+' <<<"$header")
holds "at its start it loads only the C run-time and kernel32" test -z "$(grep -viE '^(api-ms-win-crt-.*|kernel32|msvcrt)\.dll$' <<<"$at_start")"
holds "it names Windows 10" grep 'MajorOSystemVersion 10 .*MajorSubsystemVersion 10 ' <<<"$header"
holds "its memory is protected, and it knows terminal servers" grep ' HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT TERMINAL_SERVICE_AWARE ' <<<"$header"
holds "it has the version as numbers" grep "^ FILEVERSION $major, $minor, $((10#$patch)), 0\$" <<<"$resources"
