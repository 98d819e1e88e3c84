#!/bin/bash
# exports_test.sh LIBRARY SOURCE_DIR: what the built library shows to the world.
set -eu
library=$1
source_dir=$2
map=$source_dir/service/interface/nxl.map
failures=0
fail() {
    echo "FAIL: $1"
    failures=$((failures + 1))
}

listed=$(sed -n 's/^ *\([A-Za-z0-9_]*\);$/\1/p' "$map" | sort)
exported=$(nm -D --defined-only "$library" | awk '{ print $3 }' | sort)

[ "$(echo "$listed" | wc -l)" = 372 ] || fail "the version script lists $(echo "$listed" | wc -l) names instead of 372"
[ "$(echo "$listed" | uniq -d | wc -l)" = 0 ] || fail "the version script lists a name twice"

stray=$(comm -13 <(echo "$listed") <(echo "$exported"))
[ -z "$stray" ] || fail "exported without being listed: $stray"
missing=$(comm -23 <(echo "$listed") <(echo "$exported"))
[ -z "$missing" ] || fail "listed without being exported: $missing"

# Both interfaces cover every export. Fortran does not tell DDOT from ddot.
for name in $exported; do
    grep -q "[ *]$name(" "$source_dir/include/nxl.h" || fail "nxl.h does not declare $name"
    grep -qi "name=\"$name\"" "$source_dir/include/nxl.f90" || fail "nxl.f90 has no interface for $name"
done

# Needed at run time: the C library, libm, the OpenMP runtime, METIS, and the loader; no C++ library.
needed=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
for name in $needed; do
    case $name in
    libc.so.6 | libm.so.6 | libomp.so* | libmetis.so* | ld-linux-x86-64.so.2) ;;
    *) fail "the library needs $name" ;;
    esac
done

# An alias is one jump to its lower-case entry.
for name in $exported; do
    lower=$(echo "$name" | tr 'A-Z' 'a-z')
    [ "$name" != "$lower" ] && echo "$exported" | grep -qx "$lower" || continue
    body=$(objdump -d --no-show-raw-insn --disassemble="$name" "$library" | awk -v n="<$name>:" 'on && NF { print } $2 == n { on = 1 }')
    echo "$body" | head -1 | grep -Eq "(endbr64|jmp .*<$lower(@plt)?>)" || fail "$name is not a jump: $body"
done

# A host can replace these two; calls to all others stay inside the library.
relocations=$(readelf -rW "$library" | awk '/JUMP_SLO|GLOB_DAT/ { sub(/@.*/, "", $5); print $5 }' | sort -u)
inside=$(comm -12 <(echo "$exported" | grep -vx -e XERBLA -e NXL_PROGRESS) <(echo "$relocations"))
[ -z "$inside" ] || fail "internal calls leave the library through: $inside"
echo "$relocations" | grep -qx XERBLA || fail "internal calls of XERBLA cannot be replaced by a host"

[ "$failures" = 0 ] && echo "exports: all checks passed"
exit "$failures"
