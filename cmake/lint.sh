#!/usr/bin/env bash
# Checks the sources without running them: layout, shell scripts, Python, cppcheck, clang-tidy.
# clang-tidy takes the compile commands of the builds "windows" and "sanitize".
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# list_files PATTERN...: fills `files` with what git knows, or ends this script when that is nothing.
list_files() {
  mapfile -t files < <(git -c safe.directory="$PWD" ls-files "$@")
  [ "${#files[@]}" != 0 ] || { echo "lint.sh: git lists no files for: $*"; exit 1; }
}

# tidy BUILD OPTIONS...: runs clang-tidy with the checks of .clang-tidy.
tidy() {
  printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p "$@"
}

echo "== layout"
list_files '*.cpp' '*.h'
clang-format --dry-run --Werror "${files[@]}"
echo "== shell scripts"
list_files dev .ci/run '*.sh'
shellcheck "${files[@]}"
echo "== Python"
list_files '*.py'
flake8 --max-line-length=110 "${files[@]}"
mypy --strict-equality --check-untyped-defs --ignore-missing-imports --cache-dir=build/mypy "${files[@]}"
echo "== cppcheck"
suppressed=(
  --suppress=constParameter              # operations that change a listing take its handle
  --suppress=constParameterReference     # the same, in newer versions
  --suppress=normalCheckLevelMaxBranches # tells that a check is shortened, and finds nothing
  --suppress=passedByValue               # some interfaces take texts by value
  --suppress=useStlAlgorithm             # a loop of two lines reads as well
)
list_files '*.cpp' ':!tests/*fuzz*'
cppcheck --quiet --std=c++17 --platform=win64 --library=qt --library=windows --library=googletest \
  --enable=warning,style,performance,portability --error-exitcode=1 "${suppressed[@]}" \
  -D_WIN32 -I . -I build/windows/generated "${files[@]}"
echo "== clang-tidy"
gcc=$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)
cross=(--target=x86_64-w64-windows-gnu -Wno-unknown-warning-option)
for folder in "${gcc%/*}"/include/c++{,/x86_64-w64-mingw32} /usr/x86_64-w64-mingw32/include; do
  cross+=("-isystem$folder")
done
tidy build/windows "${cross[@]/#/--extra-arg=}"
list_files 'tests/*fuzz*.cpp'
tidy build/sanitize
