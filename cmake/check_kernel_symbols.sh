#!/bin/sh
# check_kernel_symbols.sh NM TARGET OBJECT...
# Code built for a wide target must not be reachable from elsewhere: every symbol that these objects define has to be
# local or in the namespace nxl::TARGET, and none may be weak (of a weak symbol the linker keeps one copy for all).
set -eu
nm=$1
target=$2
shift 2
leaks=$("$nm" -C --defined-only "$@" | awk -v prefix="nxl::$target::" '
    /^$/ || /:$/ { next }
    {
        kind = $2
        name = $0
        sub(/^[0-9a-f]+ . /, "", name)
        if (kind ~ /[a-z]/ && kind !~ /[wvu]/) next
        sub(/^(vtable for |guard variable for )/, "", name)
        if (kind ~ /[WVwvu]/ || index(name, prefix) != 1) print "  " kind " " name
    }')
if [ -n "$leaks" ]; then
    echo "Symbols outside nxl::$target in its kernel objects:" >&2
    echo "$leaks" >&2
    exit 1
fi
