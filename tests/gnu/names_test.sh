#!/usr/bin/env bash
# names_test.sh LIBRARY COMPANION JUMP_TARGETS: every export of BLAS, LAPACK and the solvers has its name for GNU Fortran,
# those of BLAS levels 1 to 3 a CBLAS entry as well, and the companion shows nothing else.
set -euo pipefail
library=$1
companion=$2
jump_targets=$3
failures=0
fail() {
    echo "FAIL: $1"
    failures=$((failures + 1))
}
exports_of() { nm -D --defined-only "$1" | awk '{ print $3 }' | sort; }

# Names in lower case are such routines, but for these families; in upper case only, these.
others='^(vd|okmp_|set_|test_)'
upper_case_only='^(DLASWP|ZLACGV|ZLAEV2|ZLASWP|ZPOTF2|ZROT|ZSYR|PARDISO|D(CG|CGMRHS|FGMRES)(_[A-Z]+)?|DCSRILU[0T])$'
complex_results='^zdot(c|u|ci|ui)$'
all=$(exports_of "$library")
routines=$(echo "$all" | grep -E '^[a-z0-9_]+$' | grep -Ev "$others"
    echo "$all" | grep -E "$upper_case_only")

expected=$(tr '[:upper:]' '[:lower:]' <<<"$routines" | sed 's/$/_/' | sort)
found=$(exports_of "$companion" | grep '_$')
missing=$(comm -23 <(echo "$expected") <(echo "$found"))
[[ -z $missing ]] || fail "without a line in gnu/routines.inc: $(echo "$missing" | xargs)"
drivers='(([dz](ge|gb|gt|po|pb|pt|sy|sp)|zh[ep])sv|[dz]lan(ge|gb|sy|sb|tr)|zlanh[eb]|(dsy|zhe)[eg]vd?|dstev[dr]?|[dz]ste(mr|dc))_'
stray=$(comm -13 <(echo "$expected") <(echo "$found") | grep -Evx "$drivers" || true)
[[ -z $stray ]] || fail "no export of the library stands behind: $(echo "$stray" | xargs)"

# shellcheck disable=SC2046 # names are words
"$jump_targets" $(echo "$routines" | grep -Ev "$complex_results") || fail "jumps"

vectors='dasum|daxpy|dcopy|ddot|dnrm2|drot|drotg|drotm|drotmg|dscal|dswap|dzasum|dznrm2|zaxpy|zcopy|zdrot|zdscal|zrotg'
vectors+='|zscal|zswap|i[dz]am(ax|in)|zdot[cu]_sub'
two='[dz]gemv|dger|zger[uc]|dsymv|zhemv|dsyr2?|zher2?|[dz]tr[ms]v'
three='[dz](gemm|symm|syrk|syr2k|trmm|trsm)|z(hemm|herk|her2k)'
entries=$(exports_of "$companion" | grep -v '_$' | grep -vx -e XERBLA -e cblas_xerbla)
stray=$(echo "$entries" | grep -Evx "cblas_($vectors|$two|$three)" || true)
[[ -z $stray ]] || fail "exported without being expected: $stray"
for name in $(echo "$all" | grep -Ex "$vectors|$two|$three|zdot[cu]"); do
    grep -Eqx "cblas_$name(_sub)?" <<<"$entries" || fail "no cblas_$name"
done

exit "$failures"
