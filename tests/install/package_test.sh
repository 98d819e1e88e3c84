#!/usr/bin/env bash
# package_test.sh BUILD_DIR VERSION: makes the Debian packages, installs them in a root of their own, runs a program from
# there, looks for the symbols of the library, and removes all: nothing stays.
set -euo pipefail
build=$1
version=$2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "FAIL: $*"
    exit 1
}
field() { dpkg-deb --field "$work/$1_${version}"_*.deb "$2"; }
files() { find "$root" -path "$root/var" -prune -o ! -type d -print; }

cpack --config "$build/CPackConfig.cmake" -B "$work" >"$work/cpack.log" 2>&1 || fail "$(cat "$work/cpack.log")"
packages=("libnxl${version%%.*}" libnxl-dev nxl-tools python3-nxl)
for package in "${packages[@]}"; do
    [[ $(field "$package" Version) == "$version" ]] || fail "$package: version $(field "$package" Version)"
done
[[ $(field "${packages[0]}" Depends) == *libomp5* ]] || fail "the library does not ask for its OpenMP runtime"
[[ $(field "${packages[0]}" Depends) == *libmetis5* ]] || fail "the library does not ask for METIS"
for package in libnxl-dev nxl-tools; do
    [[ $(field "$package" Depends) == *"${packages[0]} (= $version)"* ]] || fail "$package goes with any library"
done

# The dependencies are this system's; the root has the packages alone.
root=$work/root
mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers}
touch "$root"/var/lib/dpkg/{status,available}
run_dpkg() {
    dpkg --root="$root" --log="$work/dpkg.log" --force-not-root --force-depends --force-script-chrootless "$@" \
        >"$work/out" 2>&1 || fail "dpkg $*: $(cat "$work/out")"
}
run_dpkg --install "$work"/*.deb "$work"/*.ddeb
library=$(find "$root/usr/lib" -name "libnxl.so.${version%%.*}")
[[ -e $library ]] || fail "no library: $(files)"
! readelf --sections --wide "$library" | grep -E ' \.(symtab|debug_)' || fail "the library is not stripped"
id=$(readelf --notes "$library" | sed -n 's/.*Build ID: //p')
symbols=$root/usr/lib/debug/.build-id/${id:0:2}/${id:2}.debug
readelf --symbols --wide "$symbols" | grep nxl_blas_ddot >"$work/out" || fail "no symbols in $symbols: $(files)"
PYTHONPATH=$root/usr/lib/python3/dist-packages
export PYTHONPATH
[[ -f $PYTHONPATH/nxl/__init__.py ]] || fail "no Python package: $(files)"
located=$(/usr/bin/python3 -B -c "import nxl._library as found; print(found.library._name)" 2>&1) || true
[[ $located == "$root"/* || $located == *numpy* ]] || fail "the Python package loads $located"
unset PYTHONPATH
[[ -f $root/usr/include/nxl.h && -f $root/usr/include/nxl_cblas.h ]] || fail "no headers: $(files)"
for program in "$root"/usr/bin/*; do
    "$program" --version
    page=$root/usr/share/man/man1/${program##*/}.1
    [[ ! -x $(command -v help2man) ]] || grep -qF '\-\-version' "$page" || fail "no manual page of $program"
done
[[ $("$root/usr/bin/nxl-info") == *"$root"* ]] || fail "nxl-info loads another library"
run_dpkg --purge "${packages[@]}" "${packages[0]}-dbgsym" nxl-tools-dbgsym
[[ -z $(files) ]] || fail "left behind: $(files)"
