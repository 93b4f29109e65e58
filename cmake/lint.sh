#!/usr/bin/env bash
# Checks the sources without running them: layout, shell scripts, cppcheck, clang-tidy.
#
# usage: lint.sh WINDOWS-BUILD SANITIZE-BUILD
#
# The folders are those of the two builds; clang-tidy takes their compile commands.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
readonly windows_build=$1 sanitize_build=$2

# tidy BUILD FILES... -- OPTIONS...: runs clang-tidy with the checks of .clang-tidy.
tidy() {
  local build=$1 files=()
  shift
  while [ "$1" != -- ]; do
    files+=("$1")
    shift
  done
  shift
  printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p "$build" "$@"
}

mapfile -t sources < <(git ls-files '*.cpp' '*.h')
mapfile -t windows_sources < <(git ls-files '*.cpp' ':!tests/*fuzz*')
mapfile -t fuzzers < <(git ls-files 'tests/*fuzz*.cpp')
mapfile -t scripts < <(git ls-files dev .ci/run '*.sh')

echo "== layout"
clang-format --dry-run --Werror "${sources[@]}"
echo "== shell scripts"
shellcheck "${scripts[@]}"
echo "== cppcheck"
suppressed=(
  --suppress=constParameter  # operations that change a listing take its handle
  --suppress=passedByValue   # some interfaces take texts by value
  --suppress=useStlAlgorithm # a loop of two lines reads as well
)
cppcheck --quiet --std=c++17 --platform=win64 --library=qt --library=windows --library=googletest \
  --enable=warning,style,performance,portability --error-exitcode=1 "${suppressed[@]}" \
  -D_WIN32 -I . "${windows_sources[@]}"
echo "== clang-tidy"
gcc=$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)
cross=(--target=x86_64-w64-windows-gnu -Wno-unknown-warning-option)
for folder in "${gcc%/*}"/include/c++{,/x86_64-w64-mingw32} /usr/x86_64-w64-mingw32/include; do
  cross+=("-isystem$folder")
done
tidy "$windows_build" "${windows_sources[@]}" -- "${cross[@]/#/--extra-arg=}"
tidy "$sanitize_build" "${fuzzers[@]}" --
