# shellcheck shell=bash
# What the shell tests of quor2d share. Sourced with the command and the root of the sources as arguments.
# shellcheck disable=SC2034 # the variables are for the tests
set -u

quor2d=$(realpath "$1")
root=$(realpath "$2")
data=$root/tests/data/tool
work=$(mktemp -d) && cd "$work" || exit 1
trap 'rm -rf "$work"' EXIT
failures=0

complain() {
    printf 'FAILED: %s\n' "$*" >&2
    failures=$((failures + 1))
}

# expect <status> <command...>: runs the command, its output goes to ./out and ./err.
expect() {
    local wanted=$1 status
    shift
    "$@" >out 2>err
    status=$?
    [ "$status" = "$wanted" ] || complain "status $status, not $wanted: $*: $(head -c 500 err)"
}

# holds <file> <text>: the file contains a line with the text.
holds() {
    grep -qF -- "$2" "$1" || complain "no '$2' in $1: $(head -c 500 "$1")"
}

# stat_of <name>: the number with that name in the JSON in ./out.
stat_of() {
    sed -n "s/^  \"$1\": \([^,]*\),*\$/\1/p" out
}

# equals <what> <value> <wanted>
equals() {
    [ "$2" = "$3" ] || complain "$1 is $2, not $3"
}

# at_least <what> <value> <lowest>
at_least() {
    awk -v a="$2" -v b="$3" 'BEGIN { exit !(a != "" && a + 0 >= b + 0) }' || complain "$1 is $2, below $3"
}

finish() {
    [ "$failures" = 0 ] || exit 1
    echo "all as expected"
}
