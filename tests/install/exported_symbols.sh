#!/usr/bin/env bash
# Compares the symbols that a library exports with the list that is kept: a host may use no others, and none may go
# unnoticed. Weak symbols are left out: which of those there are is the compiler's choice. So are classes whose headers are
# not installed: they are exported for the project's own tests and tools, and no host can name them.
#   exported_symbols.sh NM LIBRARY LIST [--write]
set -euo pipefail
nm=$1 library=$2 list=$3

symbols=$("$nm" --dynamic --defined-only --demangle "$library" |
    sed -nE 's/^[0-9a-f]+ [TDBR] //p' | grep -vE '^(vtable for )?OrvantaNS::(DataParser|ValueSpace)\b' | LC_ALL=C sort -u)
if [ "${4:-}" = --write ]; then
    printf '%s\n' "$symbols" >"$list"
elif ! diff -u "$list" - <<<"$symbols"; then
    echo "The exported symbols are not those of $list."
    echo "When that is meant, build and run: tests/install/exported_symbols.sh nm $library $list --write"
    exit 1
fi
