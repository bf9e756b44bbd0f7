#!/bin/sh
# Counts C++ test lines against code lines: non-blank lines that are not only a
# // comment. Tests: .cpp/.h under tests/ and every *_test.cpp. Code: .cpp/.h of
# the logic, binding and batch folders, *_test files left out.
cd "$(dirname "$0")/.." || exit 1
count() { grep -v -E '^[[:space:]]*(//.*)?$' "$@" /dev/null | wc -l; }
tests=$( { find tests -name '*.cpp' -o -name '*.h'; find . -path ./build -prune -o -name '*_test.cpp' -print | sed 's|^\./||' | grep -v '^tests/'; } | sort -u)
code=$(for d in core synthesis entry schematic analysis design shell shell/qt batch; do
         find "$d" -maxdepth 1 \( -name '*.cpp' -o -name '*.h' \) ! -name '*_test.cpp' ! -name '*_test.h'
       done | sort -u)
t=$(count $tests)
c=$(count $code)
echo "test lines: $t"
echo "code lines: $c"
awk -v t="$t" -v c="$c" 'BEGIN { printf "ratio: %.1f%%\n", 100 * t / c }'
