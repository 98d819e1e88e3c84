#!/usr/bin/env bash
# Every whole program of the pages under docs/ compiles without a warning and ends with 0.
# usage: programs_test.sh SOURCES LIBRARY_FOLDER C CXX FORTRAN
set -euo pipefail
sources=$1 library=$2 c=$3 cxx=$4 fortran=$5
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

# Fenced blocks as files; what has no main program is a fragment.
for page in "$sources"/docs/*.md; do
    awk -v page="$(basename "$page" .md)" '
        /^```(c|cpp|fortran)$/ { file = page "." ++count "." ($0 ~ /fortran/ ? "f90" : substr($0, 4)); next }
        /^```$/ { file = ""; next }
        file { print > file }' "$page"
done
grep -LE '^int main|^end program' -- *.* | xargs -r rm
"$fortran" -c "$sources/include/nxl.f90"

count=0
for file in *.c *.cpp *.f90; do
    case $file in
    *.c) compile=("$c") ;;
    *.cpp) compile=("$cxx" -std=c++20) ;;
    *) compile=("$fortran" nxl.o) ;;
    esac
    cblas=$(grep -q nxl_cblas.h "$file" && echo -lnxl_gnu || true)
    # shellcheck disable=SC2086 # nothing, where there is no need
    "${compile[@]}" -Wall -Wextra -Werror -I"$sources/include" "$file" -o program -L"$library" -Wl,-rpath,"$library" $cblas -lnxl -lm
    ./program > output || { echo "$file ends with $?" && cat output && exit 1; }
    count=$((count + 1))
done
[ "$count" -ge 10 ] || { echo "only $count programs found" && exit 1; }
