#!/usr/bin/env bash
# Checks what the program needs from the system, and a few facts of its file:
# - At its start it loads only the C run-time library and kernel32.dll, later only DLLs that Windows 10
#   and later have.
# - It uses the formatted print of the C run-time library, not the compiler's.
# - Its start-up code expands no wildcards.
# - Its header names Windows 10, and has the flags for terminal servers and memory protection.
# - Its resource has the version.
# - It has at most 2.5 MB when stripped.
#
# usage: check_imports.sh PROGRAM TOOL-PREFIX
set -euo pipefail

at_start=$("$2objdump" -p "$1" | sed -n 's/^\tDLL Name: //p' | grep -viE \
  '^(api-ms-win-crt-[a-z]+-l1-1-0|kernel32|msvcrt)\.dll$' || true)
symbols=$("$2nm" "$1")
later=$(sed -n 's/.* __DELAY_IMPORT_DESCRIPTOR_\(.*\)_a$/\1/p' <<<"$symbols")
later=$(grep -vxE '(advapi|netapi|ole|shell|user|ws2_)32|userenv|version|winmm' <<<"${later:?no names}" || true)
if [ -n "$at_start$later" ]; then
  echo "It loads more DLLs than it should: $at_start (at its start) $later (later)"
  exit 1
fi
grep -q ' __imp___stdio_common_vfprintf$' <<<"$symbols" || { echo "printf is not the library's"; exit 1; }
if grep -E ' __mingw_v?f?w?printf$' <<<"$symbols"; then
  echo "The compiler's own formatted print is linked."
  exit 1
fi
wildcards=0x$(sed -n 's/ [BD] _dowildcard$//p' <<<"$symbols")
if ! "$2objdump" -s --start-address="$wildcards" --stop-address="$((wildcards + 4))" "$1" |
  grep -q ' 00000000 '; then
  echo "The start-up code is told to expand wildcards."
  exit 1
fi
header=$("$2objdump" -p "$1" | tr -s '[:space:]' ' ')
for fact in 'MajorOSystemVersion 10 MinorOSystemVersion 0 ' 'MajorSubsystemVersion 10 MinorSubsystemVersion 0 ' \
  ' HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT TERMINAL_SERVICE_AWARE '; do
  [[ $header == *"$fact"* ]] || { echo "not in the header: $fact"; exit 1; }
done
# The signature of a version resource, its format's version, and 8.4.2.0 as words.
LC_ALL=C grep -qaP '\xbd\x04\xef\xfe\x00{2}\x01\x00\x04\x00\x08\x00{3}\x02\x00' "$1" || { echo "no version"; exit 1; }
strings -el "$1" | grep -A 1 -x ProductVersion | grep -xF 8.4.02 >/dev/null || { echo "no version"; exit 1; }
stripped=$(mktemp)
trap 'rm "$stripped"' EXIT
"$2strip" -o "$stripped" "$1"
if [ "$(stat -c %s "$stripped")" -gt 2500000 ]; then
  echo "It has grown to $(stat -c %s "$stripped") bytes."
  exit 1
fi
