#!/bin/sh
# All static checks: format, clang-tidy, and what check_project.py looks at. Needs build/release.
set -eu
cd "$(dirname "$0")/.."

echo "== clang-format"
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run -Werror

echo "== clang-tidy"
# A file is looked at again only when what it is made of has changed.
mkdir -p build/tidy
# An option that only GCC knows is an error to clang-tidy.
sed 's/ -fno-gnu-unique//' build/release/compile_commands.json >build/tidy/compile_commands.json
git ls-files 'vstring/*.cpp' 'vexil/*.cpp' | xargs -P "$(nproc)" -n 4 sh -c '
  for file in "$@"; do
    made_of=$(c++ -std=c++20 -Iinclude -I. -MM "$file" | tr -d "\\\\" | sed "s/.*\.o://")
    state=$(cat .clang-tidy $made_of | sha1sum | cut -c1-40)
    stamp=build/tidy/$(echo "$file" | tr / _)
    [ "$(cat "$stamp" 2>/dev/null)" != "$state" ] || continue
    clang-tidy --quiet -p build/tidy "$file" 2>/dev/null >"$stamp.log" ||
      { cat "$stamp.log"; exit 1; }
    echo "$state" >"$stamp"
  done' sh

echo "== project"
exec python3 tools/check_project.py
