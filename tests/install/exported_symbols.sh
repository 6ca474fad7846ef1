#!/usr/bin/env bash
# Compares the symbols that a library exports with the list that is kept: a host may use no others, and none may go
# unnoticed. Weak symbols are left out: which of those there are is the compiler's choice, as it is whether tables of virtual
# functions and information on types are weak. So are classes that no installed header defines: they are exported for the
# project's own tests and tools, and no host can name them.
#   exported_symbols.sh NM LIBRARY LIST [--write]
set -euo pipefail
nm=$1 library=$2 list=$3
headers=$(dirname "$0")/../../include

symbols=$("$nm" --dynamic --defined-only --demangle "$library" | sed -nE 's/^[0-9a-f]+ [TDBR] //p' | LC_ALL=C sort -u |
    awk -v classes="$(grep -ohE '(class|struct) ([A-Z_]+ )?[A-Za-z_]+ (final )?[:{]' "$headers"/*.h)" '
        BEGIN {
            for (n = split(classes, word, /[^A-Za-z_]+/); n > 0; --n) known[word[n]] = 1
        }
        /^(vtable|typeinfo|typeinfo name) for / { next }
        match($0, /^OrvantaNS::[A-Za-z_]+(::|$)/) {
            name = substr($0, RSTART, RLENGTH)
            gsub(/^OrvantaNS::|::$/, "", name)
            if (!(name in known)) next
        }
        { print }')
if [ "${4:-}" = --write ]; then
    printf '%s\n' "$symbols" >"$list"
elif ! diff -u "$list" - <<<"$symbols"; then
    echo "The exported symbols are not those of $list."
    echo "When that is meant, build and run: tests/install/exported_symbols.sh nm $library $list --write"
    exit 1
fi
