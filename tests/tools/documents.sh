#!/bin/bash
# Documentation that says something else than the command does: the manual, the files shown in docs/formats.md, the
# commands in README.md and docs/refinement.md, and what bash offers to complete.
# shellcheck source=tests/tools/lib.sh
. "$(dirname "$0")/lib.sh"

"$quor2d" --print-markdown >tool.md
cmp tool.md "$root/docs/tool.md" || complain "write it again: quor2d --print-markdown >docs/tool.md"

# Blocks "``` name" become files of that name, "``` name (begin)" the beginning of one.
awk '/^``` [^ ]+( \(begin\))?$/ { name = $2 ($3 == "" ? "" : ".begin"); next } /^```/ { name = ""; next }
     name != "" { print > "shown." name }' "$root/docs/formats.md"
for name in wells.csv plate.poly park.geojson roads.wkt; do
    mv "shown.$name" "$name" || continue
    expect 0 "$quor2d" info "$name"
done
expect 0 "$quor2d" triangulate wells.csv -q -o - --format node
holds out "0 8.1 47.3 12.5 0 1"
expect 0 "$quor2d" mesh park.geojson -q -o park.obj --stats json
equals "area of the park" "$(stat_of total_area)" 20.0

# run <text>: the commands in it, with this command as quor2d
mkdir bin && ln -s "$quor2d" bin/quor2d
run() {
    PATH=$PWD/bin:$PATH expect 0 bash -euc "$1"
}
run "$(cat shown.command)"
for name in shown.mesh.*; do
    wanted=${name#shown.}
    head -n "$(wc -l <"$name")" "${wanted%.begin}" >real
    [ "$wanted" != "${wanted%.begin}" ] || cp "$wanted" real
    diff "$name" real || complain "$wanted is not what docs/formats.md shows"
done
[ -e mesh.vtu ] || complain "the command in docs/formats.md makes no mesh.vtu"

# Blocks of shell commands that call quor2d and need no file of the reader's.
commands_of() {
    awk '/^```sh$/ { text = ""; inside = 1; next } /^```/ { if (inside && text ~ /quor2d (mesh|info)/) print text
         inside = 0; next } inside { text = text $0 "\n" }' "$root/$1"
}
ln -s "$root/examples" examples
for document in README.md docs/refinement.md; do
    commands=$(commands_of "$document")
    [ -n "$commands" ] || complain "no commands in $document"
    run "$commands"
done

# completes <wanted> <word...>: what is offered for the last word.
completes() {
    local wanted=$1
    shift
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
    _quor2d
    equals "completion of '$*'" "${COMPREPLY[*]}" "$wanted"
}
"$quor2d" --print-completion >completion
# shellcheck source=/dev/null
. ./completion
completes mesh quor2d me
completes "--min-angle --max-edge --min-edge" quor2d mesh --m
completes "outside inside all" quor2d mesh park.geojson --keep ""
completes "vtu" quor2d mesh park.geojson --format v
completes park.geojson quor2d info park.g
completes "" quor2d mesh --max-edge p
finish
