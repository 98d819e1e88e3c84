#!/usr/bin/env bash
# completion_test.sh COMPLETION PROGRAM...: what bash offers for each program, against what its --help names.
set -uo pipefail
# shellcheck disable=SC1090
source "$1" || exit 1
shift
failed=0
fail() {
    echo "FAIL: $*"
    failed=1
}

# offered PROGRAM WORD...: with the cursor behind the last word.
offered() {
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
    _nxl "$1"
    printf '%s\n' "${COMPREPLY[@]+"${COMPREPLY[@]}"}" | sort -u
}
# expect "WORDS" PROGRAM WORD...: exactly these are offered.
expect() {
    local wanted
    wanted=$(printf '%s\n' $1 | sort -u)
    shift
    [[ $(offered "$@") == "$wanted" ]] || fail "$* offers '$(offered "$@" | xargs)', not '$(xargs <<<"$wanted")'"
}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
mkdir sub
touch a.mtx b.mtx.gz c.csv d.svg e.so.3 'with blank.mtx'

for program in "$@"; do
    options=$("$program" --help | grep -oE '^  (-h,)?--[a-z-]+' | grep -oE -- '--[a-z-]+')
    [[ $(wc -w <<<"$options") -ge 2 ]] || fail "$program --help names no options"
    expect "$options" "$program" -
    expect "--version" "$program" --vers
    case $program in
    *nxl-solve)
        expect "auto direct lu cholesky ldl cg fgmres qr svd" "$program" --method ""
        expect "ilu0 ilut" "$program" a.mtx --precond ilu
        expect "cg cholesky" "$program" --method = c
        expect "heat3d:" "$program" --generate hea
        expect "known" "$program" --rhs kn
        expect "d.svg sub" "$program" --plot ""
        expect "a.mtx" "$program" --quiet a
        [[ $(offered "$program" w) == 'with blank.mtx' ]] || fail "a name with a blank is cut"
        ;;
    *nxl-eig)
        expect "auto dense band" "$program" --method ""
        expect "vibration:" "$program" --generate vib
        expect "--svd" "$program" --sv
        expect "d.svg sub" "$program" --modes ""
        ;;
    *nxl-fit)
        expect "exponential gauss: logistic" "$program" --model ""
        expect "b.mtx.gz c.csv sub" "$program" ""
        ;;
    *nxl-bench)
        families=$("$program" --help | sed -n '/^Families:/,/^$/s/^  \([a-z0-9]*\) .*/\1/p')
        [[ $(wc -w <<<"$families") -ge 12 ]] || fail "no list of families"
        expect "$families" "$program" --self-check ""
        expect "level1 level2 level3" "$program" gemm lev
        expect "e.so.3 sub" "$program" --peer ""
        expect "c.csv sub" "$program" gemm --csv ""
        ;;
    *) expect "" "$program" "" ;;
    esac
done
exit $failed
