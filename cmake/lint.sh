#!/usr/bin/env bash
# Looks at the sources without running them: their layout, clang-tidy, cppcheck, shellcheck.
#
# usage: lint.sh WINDOWS-BUILD SANITIZE-BUILD
#
# The folders are those of the two builds, for their compile commands.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
readonly windows_build=$1 sanitize_build=$2

checks=(
  '-*' 'bugprone-*' 'cert-*' 'clang-analyzer-*' 'concurrency-*' 'cppcoreguidelines-*' 'misc-*'
  'modernize-*' 'performance-*' 'portability-*' 'readability-*'
  -bugprone-easily-swappable-parameters # the interfaces are fixed
  -cert-err33-c                         # a print that fails cannot be reported anywhere
  -cert-err58-cpp                       # allocating a constant text at the start cannot fail usefully
  -cert-dcl16-c                         # 0u
  -cppcoreguidelines-avoid-c-arrays     # fixed strings and tables are arrays
  -modernize-avoid-c-arrays             # the same
  -cppcoreguidelines-avoid-magic-numbers # tables of tests; facts of the product have names
  -readability-magic-numbers             # the same
  -cppcoreguidelines-owning-memory      # it wants a support library's owner type
  -cppcoreguidelines-pro-bounds-array-to-pointer-decay   # arrays go to the platform
  -cppcoreguidelines-pro-bounds-constant-array-index     # layouts and tables are indexed
  -cppcoreguidelines-pro-bounds-pointer-arithmetic       # argv and fixed strings
  -cppcoreguidelines-pro-type-reinterpret-cast # one unit is QChar, char16_t and wchar_t
  -cppcoreguidelines-pro-type-vararg           # printf is what the output goes through
  -cert-err34-c                         # atoi in the benchmark
  -misc-misplaced-const                 # a const HANDLE is meant to be a constant handle
  -misc-no-recursion                    # folders in folders
  -misc-non-private-member-variables-in-classes # plain structs
  -modernize-raw-string-literal         # escaped like the other texts beside them
  -modernize-return-braced-init-list    # the type is worth reading
  -modernize-use-nodiscard              # most results may be ignored
  -modernize-use-trailing-return-type   # the usual form
  -performance-inefficient-string-concatenation # in the tests' expected texts
  -performance-unnecessary-value-param  # some interfaces take texts by value
  -readability-braces-around-statements # the layout shows them
  -readability-identifier-length        # i, a and b say enough in a line
  -readability-non-const-parameter      # a pointer that is stored counts as only read
  -readability-uppercase-literal-suffix # 0u
)
options='{CheckOptions: [
  {key: cppcoreguidelines-special-member-functions.AllowMissingMoveFunctions, value: true},
  {key: readability-function-cognitive-complexity.IgnoreMacros, value: true},
  {key: readability-identifier-naming.StructCase, value: CamelCase},
  {key: readability-identifier-naming.TemplateParameterCase, value: CamelCase},
  {key: readability-identifier-naming.FunctionCase, value: camelBack},
  {key: readability-identifier-naming.FunctionIgnoredRegexp, value: "LLVMFuzzer.*"},
  {key: readability-identifier-naming.VariableCase, value: camelBack},
  {key: readability-identifier-naming.MemberCase, value: camelBack},
  {key: readability-identifier-naming.ParameterCase, value: camelBack}]}'

# tidy BUILD FILES... -- OPTIONS...
tidy() {
  local build=$1 files=()
  shift
  while [ "$1" != -- ]; do
    files+=("$1")
    shift
  done
  shift
  local IFS=,
  printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p "$build" \
    --checks="${checks[*]}" --config="$options" --warnings-as-errors='*' --header-filter='.*' "$@"
}

mapfile -t sources < <(git ls-files '*.cpp' '*.h')
mapfile -t windows_sources < <(git ls-files '*.cpp' ':!tests/fuzz')
mapfile -t fuzzers < <(git ls-files 'tests/fuzz/*.cpp')
mapfile -t scripts < <(git ls-files dev .ci/run '*.sh')

echo "== layout"
clang-format --dry-run --Werror "${sources[@]}"
echo "== shell scripts"
shellcheck "${scripts[@]}"
echo "== cppcheck"
not_asked=(
  --suppress=constParameter  # what changes a listing takes its handle so
  --suppress=passedByValue   # some interfaces take texts by value
  --suppress=useStlAlgorithm # a loop of two lines reads as well
)
cppcheck --quiet --std=c++17 --platform=win64 --library=qt --library=windows --library=googletest \
  --enable=warning,style,performance,portability --error-exitcode=1 "${not_asked[@]}" \
  -D_WIN32 '-DTYPED_TEST_SUITE(...)=' '-DTYPED_TEST(suite, name)=static void suite##name()' -I . -I tests "${windows_sources[@]}"
echo "== clang-tidy"
gcc=$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)
cross=(--target=x86_64-w64-windows-gnu -Wno-unknown-warning-option)
for folder in "${gcc%/*}"/include/c++{,/x86_64-w64-mingw32} /usr/x86_64-w64-mingw32/include; do
  cross+=("-isystem$folder")
done
tidy "$windows_build" "${windows_sources[@]}" -- "${cross[@]/#/--extra-arg=}"
tidy "$sanitize_build" "${fuzzers[@]}" --
