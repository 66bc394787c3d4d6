#!/bin/sh
# Compares the three places that say what the library exports: the export list,
# the built library and the public headers. Also checks what it needs at run time.
# Usage: exports_test.sh SOURCE_FOLDER LIBRARY
set -eu
source=$1
library=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

fail() {
    echo "FAILED: $1"
    failures=$((failures + 1))
}

grep -v '^#' "$source/src/exports.list" | grep . | sort >"$work/listed"
nm -D --defined-only "$library" | awk '{print $3}' | sort >"$work/built"
# Every name that is declared with C linkage in a header of this library.
for header in "$source"/include/zor_*.h; do
    cc -std=c99 -E -P -I "$source/include" "$header"
done | tr '\n' ' ' | tr ';{}' '\n\n\n' |
    sed -n -e 's/^.*[ *]\(\(KEVAZOR\|ZOR\|HW\|__zor\)[A-Za-z0-9_]*\) *(.*$/\1/p' \
        -e 's/^.*extern .*[ *]\(r\?g[A-Za-z0-9]*\)\[.*$/\1/p' | sort -u >"$work/declared"

diff "$work/listed" "$work/built" >"$work/diff" ||
    fail "export list (<) and library (>) differ: $(cat "$work/diff")"
diff "$work/listed" "$work/declared" >"$work/diff" ||
    fail "export list (<) and headers (>) differ: $(cat "$work/diff")"

sed -n 's/^ \(.*\)@Base .*/\1/p' "$source/debian/libkevazorcore6.symbols" | sort >"$work/packaged"
diff "$work/listed" "$work/packaged" >"$work/diff" ||
    fail "export list (<) and the package's symbols (>) differ: $(cat "$work/diff")"

soname=$(readelf -d "$library" | sed -n 's/.*SONAME.*\[\(.*\)\]/\1/p')
[ "$soname" = libkevazorcore.so.6 ] || fail "soname is $soname"

for needed in $(readelf -d "$library" | sed -n 's/.*NEEDED.*\[\(.*\)\]/\1/p'); do
    case $needed in
    libkevacore.so.6 | libc.so.6 | libstdc++.so.6 | libgcc_s.so.1 | libm.so.6) ;;
    *) fail "needs $needed" ;;
    esac
done
readelf -d "$library" | grep -q 'NEEDED.*libkevacore.so.6' || fail "does not need libkevacore.so.6"

[ "$failures" -eq 0 ] && echo "$(wc -l <"$work/listed") names: list, library and headers agree"
exit "$failures"
