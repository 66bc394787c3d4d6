#!/bin/sh
# Compares the binary interface of the library with the description of it, and shows
# that a record that has grown is found.
# Usage: abi_test.sh SOURCE_FOLDER LIBRARY
set -eu
cd "$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

scripts/abi check "$2" || {
    echo "FAILED: the binary interface has changed; docs/abi.md says what may change"
    exit 1
}

# The description of a library whose request had no timeout yet.
awk '/class-decl name=.ZORMgrRequest. / { sub(/size-in-bits=.384./, "size-in-bits=\"320\""); inside = 1 }
     inside && /layout-offset-in-bits=.320./ { skip = 3 }
     skip > 0 { skip--; next }
     /<\/class-decl>/ { inside = 0 }
     { print }' abi/libkevazorcore.abi >"$work/before.abi"
if scripts/abi check "$2" "$work/before.abi" >"$work/report"; then
    echo "FAILED: a record that has grown is not found"
    exit 1
fi
grep -q 'type size changed from 320 to 384' "$work/report" || {
    cat "$work/report"
    echo "FAILED: the report does not say what has grown"
    exit 1
}

python3 scripts/bindings.py . | cmp - bindings/python/kevazorcore.py || {
    echo "FAILED: the bindings are not those of the headers; scripts/abi update makes them"
    exit 1
}
