#!/bin/bash
# Fault: a mesh that depends on where the system puts the program and its memory.
program=$1
prints=$(
    for _ in 1 2 3 4; do "$program"; done
    # Without address randomisation, where the system allows to switch it off.
    if setarch -R true 2>/dev/null; then
        setarch -R "$program"
    fi
    # The heap in other places: small blocks mapped on their own, freed memory overwritten, a large environment.
    GLIBC_TUNABLES=glibc.malloc.mmap_threshold=4096 "$program"
    MALLOC_PERTURB_=165 MALLOC_TOP_PAD_=10000000 "$program"
    FILLER=$(head -c 60000 /dev/zero | tr '\0' x) "$program"
)
printf '%s\n' "$prints"
[ "$(printf '%s\n' "$prints" | sort -u | wc -l)" = 1 ]
