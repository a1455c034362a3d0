#!/bin/bash
# Faults: wrong exit statuses, messages without place or reason, results mixed with messages, files left half written.
# shellcheck source=tests/tools/lib.sh
. "$(dirname "$0")/lib.sh"

printf '0 0\n1 0\n0 1\n' >points.xy
printf '0 0\n1 1\n2 2\n' >line.xy
printf 'LINESTRING (0 0, 1 0, 1 1)\nPOINT (0 1)\n' >open.wkt

# ---- usage: status 2, nothing on standard output
for arguments in "" "frob points.xy" "mesh" "mesh points.xy" "mesh points.xy -o a.foo" "mesh points.foo -o a.obj" \
    "mesh points.xy -o a.obj --min-angle 31" "mesh points.xy -o a.obj --max-edge 0" \
    "mesh points.xy -o a.obj --max-edge 1 --min-edge 2" "mesh points.xy -o a.obj --keep some" \
    "triangulate - -o a.obj" "triangulate points.xy -o -" "triangulate points.xy -o a.wkt" "check points.xy" \
    "triangulate points.xy -o - --format obj --stats json" "triangulate points.xy -o - - --format obj" \
    "info points.xy --stats xml" "info a.vtu" "check - --input-format ele" "info /"; do
    # shellcheck disable=SC2086
    expect 2 "$quor2d" $arguments
    [ -s out ] && complain "usage on standard output: $arguments"
    [ "$(wc -l <err)" = 2 ] || complain "not two lines for: $arguments: $(cat err)"
done

# ---- help and version: status 0
for arguments in --help --version "mesh --help" "check -h"; do
    # shellcheck disable=SC2086
    expect 0 "$quor2d" $arguments
    [ -s out ] || complain "nothing on standard output: $arguments"
    [ -s err ] && complain "help on standard error: $arguments"
done

# fault_of <line> <command...>: status 1, one line with the given text, and no new files.
fault_of() {
    local text=$1 before
    shift
    touch out err
    before=$(ls -A)
    expect 1 "$@"
    holds err "quor2d: $text"
    [ "$(wc -l <err)" = 1 ] || complain "not one line: $(cat err)"
    [ "$(ls -A)" = "$before" ] || complain "files left by: $*"
}
printf '1 2\n3 nan\n' >nan.xy
: >empty.xy
fault_of "nan.xy:2: y 'nan' is not a finite number" "$quor2d" mesh nan.xy -o a.obj
fault_of "empty.xy: holds no points" "$quor2d" info empty.xy
: >empty.node
fault_of "empty.node: file ends where the number of points is expected" "$quor2d" info empty.node
fault_of "missing.xy: No such file or directory" "$quor2d" triangulate missing.xy -o a.vtu
fault_of "line.xy: all points lie on one line: no triangles" "$quor2d" triangulate line.xy -o a.obj b.svg
fault_of "open.wkt: nothing lies inside" "$quor2d" mesh open.wkt -o a.obj
fault_of "$work: Is a directory" "$quor2d" info "$work" --input-format wkt
fault_of "missing/a.obj: No such file or directory" "$quor2d" mesh points.xy -o missing/a.obj
fault_of "standard input:1: y is missing" "$quor2d" info - --input-format points < <(echo 1)
fault_of "/dev/full: No space left on device" "$quor2d" triangulate points.xy -q -o a.obj /dev/full --format obj
cat >large.msh <<'END'
$MeshFormat
4.1 0 8
$EndMeshFormat
$Entities
0 1 0 0
1 0 0 0 1 0 0 1 9000000000000000000 0
$EndEntities
$Nodes
1 2 1 2
1 1 0 2
1
2
0 0 0
1 0 0
$EndNodes
$Elements
1 1 1 1
1 1 1 1
1 1 2
$EndElements
END
fault_of "large.msh:19: the physical group 9e+18 of a line is too large" "$quor2d" check large.msh
if [ "$(id -u)" != 0 ]; then
    touch locked.obj unreadable.xy && chmod a-rw locked.obj unreadable.xy
    fault_of "locked.obj: Permission denied" "$quor2d" triangulate points.xy -o locked.obj
    fault_of "unreadable.xy: Permission denied" "$quor2d" info unreadable.xy
fi

# ---- cut off anywhere, or with a number that is none: one line or none, never more, and no output left
printf 'POLYGON ((0 0, 4 0, 4 3, 0 3, 0 0), (1 1, 1 2, 2 2, 1 1))\nLINESTRING (0 0, 1 1)\n' >whole.wkt
"$quor2d" mesh whole.wkt -q -o whole.node whole.poly whole.geojson whole.obj whole.msh
for name in whole.wkt whole.node whole.ele whole.geojson whole.obj whole.msh; do
    format=${name#whole.}
    command=check
    [ "$format" != wkt ] || command=info
    size=$(wc -c <"$name")
    for i in 1 2 3 4 5 6 7 8 9 10 11 12; do
        cp whole.node cut.node && cp whole.ele cut.ele
        head -c $((size * i / 13)) "$name" >"cut.$format"
        "$quor2d" "$command" "cut.$format" >out 2>err
        status=$?
        [ "$status" = 0 ] || [ "$status" = 1 ] || complain "status $status: $command of $name, cut at $i / 13"
        [ "$(wc -l <err)" = "$status" ] || complain "not one line: $command of $name, cut at $i / 13: $(cat err)"
    done
    for number in nan 1e999 -7 99999999999999999999 x; do
        sed "0,/[ ,]1[ ,]/s/\([ ,]\)1\([ ,]\)/\1$number\2/" "$name" >"cut.$format"
        "$quor2d" "$command" "cut.$format" >out 2>err
        status=$?
        [ "$status" = 0 ] || [ "$status" = 1 ] || complain "status $status: $command of $name with $number"
        [ "$(wc -l <err)" = "$status" ] || complain "not one line: $command of $name with $number: $(cat err)"
    done
done

# ---- a full disk: a limit of 4 blocks on files makes every larger write fail
seq 1 3000 | awk '{ print $1 % 61, ($1 * $1) % 1009 }' >many.xy
echo old >kept.obj
fault_of "a.svg: File too large" bash -c "ulimit -f 4; exec '$quor2d' triangulate many.xy -q -o a.svg kept.obj scene/"
holds kept.obj old
"$quor2d" info points.xy >/dev/full 2>err && complain "a full standard output is not noticed"
holds err "standard output: No space left on device"

# ---- ended by a signal while writing into a pipe that nobody reads: the files beside are removed
mkfifo pipe
"$quor2d" triangulate many.xy -q -o early.obj pipe --format vtu &
pid=$!
exec 3<pipe
for _ in 1 2 3 4 5 6 7 8 9 10; do
    compgen -G '.early.obj.*.tmp' >/dev/null && break
    sleep 0.2
done
kill -TERM $pid
wait $pid
equals "status after a signal" $? 143
exec 3<&-
compgen -G '.early*' >/dev/null && complain "early.obj is left after a signal"

# ---- progress on a terminal only, for steps over a second
slow_input() {
    sleep 1.5
    cat points.xy
}
if command -v script >/dev/null; then
    export -f slow_input
    SHELL=/bin/bash script -qec "slow_input | '$quor2d' triangulate - --input-format points -o a.obj" typescript \
        </dev/null >/dev/null
    holds typescript "reading, 1 s"
    SHELL=/bin/bash script -qec "'$quor2d' triangulate points.xy -o a.obj" typescript </dev/null >/dev/null
    holds typescript "1 triangles, 3 vertices"
    grep -q "reading" typescript && complain "progress of a short step: $(cat typescript)"
fi
expect 0 "$quor2d" triangulate - --input-format points -o a.obj < <(slow_input)
grep -q "reading" err && complain "progress without a terminal: $(cat err)"

# ---- results and messages apart
"$quor2d" triangulate points.xy -q -o - --format obj >out 2>err
equals "lines of the quiet command on standard error" "$(wc -l <err)" 0
equals "faces on standard output" "$(grep -c '^f ' out)" 1
"$quor2d" triangulate - --input-format points -o - --format geojson <points.xy 2>err |
    "$quor2d" check - --input-format geojson >out || complain "a mesh through a pipe is not valid"
holds out "Delaunay  yes"
finish
