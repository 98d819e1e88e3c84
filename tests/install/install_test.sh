#!/usr/bin/env bash
# install_test.sh BUILD_DIR SOURCE_DIR VERSION: installs, moves the tree, and builds and runs one program of each kind of user
# against it, by find_package, by pkg-config and with gfortran.
set -euo pipefail
build=$1
examples=$2/examples
version=$3

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "FAIL: $*"
    exit 1
}

# Nothing installed may point to where it was built, or to where it was installed first.
cmake --install "$build" --prefix "$work/first" >"$work/install.log" || fail "$(cat "$work/install.log")"
mv "$work/first" "$work/moved"
prefix=$work/moved
library=$(find "$prefix" -name "libnxl.so.$version")
[[ -n $library ]] || fail "no libnxl.so.$version"
lib=$(dirname "$library")
leaks=$(grep -rIlF -e "$build" -e "$work/first" "$prefix" || true)
[[ -z $leaks ]] || fail "paths of the build tree in: $leaks"
! readelf -d "$library" "$(dirname "$library")/libnxl_gnu.so" | grep -F "$build" || fail "a library searches the build tree"

soname=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
[[ $soname == "libnxl.so.${version%%.*}" ]] || fail "soname $soname"
[[ $(readlink -f "$lib/$soname") == "$library" ]] || fail "$soname does not lead to $library"

# Each user builds from a copy, out of reach of the source tree.
cp -r "$examples/consumer" "$examples/c_caller.c" "$examples/cblas_caller.c" \
    "$examples/fortran_caller.f90" "$work"
cd "$work"

cmake -G Ninja -S consumer -B consumer/build -DCMAKE_PREFIX_PATH="$prefix" >cmake.log || fail "$(cat cmake.log)"
cmake --build consumer/build >cmake.log || fail "$(cat cmake.log)"
consumer/build/consumer

export PKG_CONFIG_PATH=$lib/pkgconfig
[[ $(pkg-config --modversion nxl) == "$version" ]] || fail "pkg-config says version $(pkg-config --modversion nxl)"
# shellcheck disable=SC2046 # flags are words
"$CC" -Wall -Werror c_caller.c -o c_caller $(pkg-config --cflags --libs nxl) -lm "-Wl,-rpath,$lib"
./c_caller

# The C++ headers are all there.
# shellcheck disable=SC2046
"$CXX" -std=c++20 -Wall -Werror -fsyntax-only -x c++ - $(pkg-config --cflags nxl) <<<'#include <nxl.hpp>'

module=$(pkg-config --variable=includedir nxl)/nxl.f90
# shellcheck disable=SC2046
gfortran "$module" fortran_caller.f90 -o fortran_caller $(pkg-config --libs nxl) "-Wl,-rpath,$lib"
./fortran_caller

# The names of GNU programs: linked, from C; and preloaded, into a program that never heard of the library. A preloaded
# library finds the other beside itself.
# shellcheck disable=SC2046
"$CC" -Wall -Werror cblas_caller.c -o cblas_caller $(pkg-config --cflags --libs nxl_gnu) "-Wl,-rpath,$lib"
./cblas_caller
# shellcheck disable=SC2046
"$CC" -Wall -Werror -include nxl_cblas.h c_caller.c -o both_callers $(pkg-config --cflags --libs nxl_gnu) -lm "-Wl,-rpath,$lib"
./both_callers
env -u LD_LIBRARY_PATH "LD_PRELOAD=$lib/libnxl_gnu.so.${version%%.*}" true 2>preload.log
[[ ! -s preload.log ]] || fail "$(cat preload.log)"

# Each program that was built runs from where it was moved to, finds the library there, and has its completion.
for program in "$prefix"/bin/*; do
    [[ -x $program ]] || continue # none was built
    "$program" --version
    [[ -f $prefix/share/bash-completion/completions/${program##*/} ]] || fail "no completion of $program"
done
[[ ! -x $prefix/bin/nxl-info ]] || "$prefix/bin/nxl-info" | grep -F "$library" || fail "nxl-info loads another library"
[[ ! -x $prefix/bin/nxl-bench ]] || "$prefix/bin/nxl-bench" --list | grep -F "$lib/" || fail "nxl-bench loads another library"

# Packages are cut by component: run-time holds the libraries and their licence, nothing but what developers need is in dev.
for component in runtime dev; do
    cmake --install "$build" --prefix "$work/$component" --component "$component" >"$work/install.log"
done
[[ -z $(find "$work/runtime" -type f ! -name "libnxl.so.$version" ! -name "libnxl_gnu.so.$version" ! -name copyright) ]] || fail "$(find "$work/runtime")"
[[ -f $work/dev/include/nxl.h && -z $(find "$work/dev" -name "*.so.*") ]] || fail "$(find "$work/dev")"
