#!/bin/bash
# Faults: a writer that does not notice a full disk or a closed output; files torn when memory runs out; deep recursion.
# shellcheck source=tests/tools/lib.sh
. "$(dirname "$0")/lib.sh"

printf '0 0\n1 0\n0 1\n' >points.xy
seq 1 3000 | awk '{ print $1 % 61, ($1 * $1) % 1009 }' >many.xy
awk 'BEGIN { printf "LINESTRING (0 0"; for (i = 1; i < 20000; ++i) printf ", %d 0", i; print ")\nPOINT (0 5)\nPOINT (0 -5)" }' >line.wkt
awk 'BEGIN { for (i = 0; i < 3000; ++i) printf "["; print "1" }' >deep.geojson
awk 'BEGIN { for (i = 0; i < 3000; ++i) printf "GEOMETRYCOLLECTION ("; print "POINT (1 1)" }' >deep.wkt

# ---- every writer on a full disk; node, ele, edge and poly come together
for format in obj node ele poly edge geojson vtu msh ps svg; do
    ln -sf /dev/full full.$format
    expect 1 "$quor2d" triangulate many.xy -q -o full.$format
    holds err "No space left on device"
    [ "$(wc -l <err)" = 1 ] || complain "not one line for $format: $(cat err)"
done
mkdir scene && ln -s /dev/full scene/3d.obj
before=$(ls -A . scene)
"$quor2d" triangulate many.xy -q -o scene/ >out 2>err
status=$?
[ $status = 1 ] || [ -s scene/3d.obj ] || complain "a full web scene is not noticed: $status"
[ $status = 0 ] || [ "$(ls -A . scene)" = "$before" ] || complain "files left in a full web scene: $(ls -A scene)"

# ---- closed outputs
for arguments in "info points.xy" "triangulate points.xy -q -o - --format obj" "mesh points.xy -q --stats json -o a.obj" \
    "--help" "--version"; do
    # shellcheck disable=SC2086
    "$quor2d" $arguments >&- 2>err
    equals "status with a closed standard output of: $arguments" $? 1
    # shellcheck disable=SC2086
    "$quor2d" $arguments >/dev/full 2>err
    equals "status with a full standard output of: $arguments" $? 1
done
"$quor2d" info missing.xy >out 2>&-
equals "status with a closed standard error" $? 1
[ -s out ] && complain "a message where results go"

# ---- a stack of 256 KiB
expect 0 bash -c "ulimit -s 256; exec '$quor2d' triangulate line.wkt -q --keep all -o a.obj"
expect 0 bash -c "ulimit -s 256; exec '$quor2d' check a.obj"
expect 1 bash -c "ulimit -s 256; exec '$quor2d' info deep.geojson"
expect 1 bash -c "ulimit -s 256; exec '$quor2d' info deep.wkt"

# ---- little memory: either all is done or nothing is left, and the reason is told
echo old >kept.obj
cp many.xy input.xy
rm -f a.obj
failed=0
for kib in 20000 30000 40000 60000 80000 120000 160000 200000; do
    cp kept.obj b.obj
    (ulimit -v $kib && exec "$quor2d" mesh input.xy -q --max-edge 0.8 -o b.obj) >out 2>err
    status=$?
    case $status in
    0) [ "$(head -c 3 b.obj)" = old ] && complain "success without a result" ;;
    127) ;; # the loader had too little
    1)
        failed=1
        [ "$(cat b.obj)" = old ] || complain "a file torn with $kib KiB"
        grep -qi memory err || complain "no reason with $kib KiB: $(head -c 300 err)"
        ;;
    *) complain "status $status with $kib KiB: $(head -c 300 err)" ;;
    esac
done
compgen -G '.b.obj*' >/dev/null && complain "unfinished files are left: $(ls -A)"
[ $failed = 1 ] || complain "memory never ran out: the test tells nothing"
finish
