#!/bin/bash
# exported_symbols.sh <libquor2d.so> <list>: compares what the library shows with the list. With UPDATE=1 writes the list.
# Faults: a class that lost its export, a helper that became part of the surface.
library=$1 list=$2
command -v nm >/dev/null || exit 77
symbols=$(nm -D --defined-only -C "$library" | sed 's/^[0-9a-f]* [A-Za-z] //' | LC_ALL=C sort -u)
if [ "${UPDATE:-0}" = 1 ]; then
    printf '%s\n' "$symbols" >"$list"
    exit 0
fi
difference=$(diff "$list" <(printf '%s\n' "$symbols"))
[ -n "$difference" ] || exit 0
cat <<MESSAGE
The exported symbols of $library are not those of the list.
  < is gone: programs built against the library would not start any more
  > is new: it stays part of the interface from now on
$difference
Where that is intended: UPDATE=1 $0 $library $list
MESSAGE
exit 1
