#!/usr/bin/env bash
# try_programs.sh BUILD_DIR [python] [octave] [r] [scalapack] [mumps]: runs the linear algebra tests of programs that know
# nothing of this library, as they are and with libnxl_gnu.so preloaded, and compares what fails. Behind stands Debian's
# reference BLAS and LAPACK. Outputs, and the calls that reached libnxl.so, stay in BUILD_DIR/programs.
set -euo pipefail
build=$(readlink -f "$1")
shift
[[ $# -gt 0 ]] || set -- python octave r scalapack mumps
here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
out=$build/programs
multiarch=/usr/lib/x86_64-linux-gnu
reference=$multiarch/blas:$multiarch/lapack
preload="$build/libnxl_gnu.so $build/libnxl_calls.so"
failures=0
mkdir -p "$out"

# twice NAME COMMAND...: output in NAME.plain and NAME.nxl, calls in NAME.calls. Failing tests do not end the run.
twice() {
    local name=$1
    shift
    rm -f "$out/$name.calls"
    export R_LD_LIBRARY_PATH=/usr/lib/R/lib:$reference # R puts this before the other
    (cd "$out" && LD_LIBRARY_PATH=$reference "$@") >"$out/$name.plain" 2>&1 </dev/null || true
    (cd "$out" && LD_LIBRARY_PATH=$reference NXL_CALLS=$out/$name.calls LD_PRELOAD=$preload "$@") \
        >"$out/$name.nxl" 2>&1 </dev/null || true
}

# row NAME WHAT PLAIN NXL: one line of the table. A program that did not reach the library is a failure.
row() {
    local calls=0 routines=0
    [[ ! -f $out/$1.calls ]] || calls=$(awk '{ sum += $2 } END { printf "%d", sum }' "$out/$1.calls")
    [[ ! -f $out/$1.calls ]] || routines=$(cut -d' ' -f1 "$out/$1.calls" | sort -u | wc -l)
    printf '%-25s %-27s %-27s %11d calls of %d routines\n' "$2" "$3" "$4" "$calls" "$routines"
    [[ $calls -gt 0 ]] || failures=$((failures + 1))
}

# differ NAME COMMAND...: shows where the two outputs differ after the filter COMMAND. A line that only the second run
# has is a failure.
differ() {
    local name=$1 difference
    shift
    difference=$(diff <("$@" "$out/$name.plain") <("$@" "$out/$name.nxl") | grep '^[<>]' || true)
    [[ -z $difference ]] || echo "$difference"
    ! grep -q '^>' <<<"$difference" || failures=$((failures + 1))
}

python() {
    twice python env OMP_NUM_THREADS=2 /usr/bin/python3 -m pytest -q -p no:cacheprovider -rfE --pyargs numpy.linalg \
        scipy.linalg
    row python "NumPy and SciPy" "$(python_summary plain)" "$(python_summary nxl)"
    differ python grep -E '^(FAILED|ERROR)'
}
python_summary() { tail -n 1 "$out/python.$1" | sed -E 's/, [0-9]+ xfailed.*//; s/ in .*//'; }

octave() {
    twice octave octave-cli --no-init-file --quiet "$here/octave_tests.m"
    row octave "Octave" "$(tail -n 1 "$out/octave.plain")" "$(tail -n 1 "$out/octave.nxl")"
    differ octave grep -E '^/.*: [0-9]+ of [0-9]+$'
}

r() {
    twice r Rscript --vanilla "$here/r_examples.R"
    row r "R" "$(grep -c ' ok' "$out/r.plain") of 5 packages" "$(grep -c ' ok' "$out/r.nxl") of 5 packages"
    differ r grep -E ' (ok|failed)'
}

scalapack() {
    local program=$out/lu_and_eigenvalues
    gfortran -O2 "$here/../examples/scalapack/lu_and_eigenvalues.f90" -o "$program" -lscalapack-openmpi -llapack -lblas
    twice scalapack env OMP_NUM_THREADS=1 mpirun --allow-run-as-root --oversubscribe -np 2 "$program" 1000
    row scalapack "ScaLAPACK, two processes" "$(residuals plain)" "$(residuals nxl)"
    grep -q "pdsyev" "$out/scalapack.nxl" || failures=$((failures + 1))
}
mumps() {
    local program=$out/poisson3d
    mpicc -O2 "$here/../examples/mumps/poisson3d.c" -o "$program" -ldmumps -lmumps_common -lm
    twice mumps env OMP_NUM_THREADS=1 mpirun --allow-run-as-root --oversubscribe -np 2 "$program" 40
    row mumps "MUMPS, two processes" "$(solution plain)" "$(solution nxl)"
    grep -q "^dmumps" "$out/mumps.nxl" || failures=$((failures + 1))
}
solution() { sed -n 's/^dmumps.* \([0-9.]*\)$/dmumps \1/p' "$out/mumps.$1"; }
residuals() { sed -n 's/^\(pd[a-z]*\),.* \([0-9.]*\)$/\1 \2/p' "$out/scalapack.$1" | xargs; }

printf '%-25s %-27s %-27s %s\n' program plain preloaded "reached the library"
for program in "$@"; do "$program"; done
exit "$((failures > 0))"
