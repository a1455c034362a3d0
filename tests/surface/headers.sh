#!/bin/bash
# headers.sh <include folder>: each public header alone, with many warnings, with every compiler and standard that is here.
# Fault: a header that leans on another's includes, or warns in a program that is stricter than this one.
include=$1
flags=(-fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Werror -I "$include" -x c++)
failures=0 found=0
for compiler in g++ clang++; do
    command -v $compiler >/dev/null || continue
    found=1
    for standard in c++17 c++20; do
        # Twice: a header must bear that.
        for header in "$include"/*.h; do
            name=$(basename "$header")
            printf '#include "%s"\n#include "%s"\n' "$name" "$name" | $compiler -std=$standard "${flags[@]}" - || {
                echo "FAILED: $compiler -std=$standard $name"
                failures=$((failures + 1))
            }
        done
    done
done
[ $found = 1 ] || exit 77
[ $failures = 0 ]
