#!/bin/sh
# check_kernel_symbols.sh NM TARGET OBJECT...
# Code built for a wide target must not be reachable from elsewhere: every symbol that these objects define has to be
# local or in the namespace nxl::TARGET. A weak one in there is harmless: the copies that the linker chooses from were
# all built for this target.
set -eu
nm=$1
target=$2
shift 2
scope="3nxl${#target}$target" # as the compiler mangles nxl::TARGET
leaks=$("$nm" --defined-only "$@" | awk -v ours="^_Z(TV|GV)?Z*NK?$scope" '
    NF < 3 { next }
    $2 ~ /[a-z]/ && $2 !~ /[wvu]/ { next }
    $3 !~ ours { print "  " $2 " " $3 }')
if [ -n "$leaks" ]; then
    echo "Symbols outside nxl::$target in its kernel objects:" >&2
    echo "$leaks" >&2
    exit 1
fi
