#!/usr/bin/env bash
# Checks what the program loads, and facts of its file that no run under Wine shows.
# usage: check_program_file.sh PROGRAM TOOL-PREFIX VERSION
set -euo pipefail
export LC_ALL=C # patterns are of bytes

header=$("$2objdump" -p "$1" | tr -s '[:space:]' ' ')
IFS=. read -r major minor patch <<<"$3"
numbers=$(printf '\\x%02x\\x00' "$minor" "$major" 0 "$((10#$patch))")

# holds FACT COMMAND...: fails with this fact unless the command succeeds.
holds() {
  "${@:2}" >/dev/null || { echo "check_program_file.sh: this does not hold: $1" >&2; exit 1; }
}

at_start=$(grep -oP 'DLL Name: \K\S+' <<<"$header")
holds "at its start it loads only the C run-time and kernel32" test -z "$(grep -viE '^(api-ms-win-crt-.*|kernel32|msvcrt)\.dll$' <<<"$at_start")"
holds "it names Windows 10" grep 'MajorOSystemVersion 10 .*MajorSubsystemVersion 10 ' <<<"$header"
holds "its memory is protected, and it knows terminal servers" grep ' HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT TERMINAL_SERVICE_AWARE ' <<<"$header"
# The resource's signature 0xFEEF04BD, its structure's version 1.0, and the file's version: minor, major, 0 and
# patch. Each number has its low byte first.
holds "it has the version as numbers" grep -aP "\xbd\x04\xef\xfe\x00{2}\x01\x00$numbers" "$1"
