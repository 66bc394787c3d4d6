#!/bin/sh
# Compiles the examples of the README as they stand there, and runs them in a node.
# Usage: readme_test.sh SOURCE_FOLDER LIBRARY BASE_LIBRARY ZORNODE
set -eu
source=$1
library=$2
base=$3
zornode=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Prints the first block of a language.
block() {
    awk -v fence="\`\`\`$1" '$0 == fence {inside = 1; next} /^```/ {if (inside) exit} inside' \
        "$source/README.md"
}

block c >"$work/example.c"
block cpp >"$work/example.cc"
[ -s "$work/example.c" ] && [ -s "$work/example.cc" ]

link="-I $source/include $library $base -Wl,-rpath,$(dirname "$library"):$(dirname "$base")"
# shellcheck disable=SC2086
cc -std=c99 -Wall -Wextra -Werror -o "$work/example-c" "$work/example.c" $link
# shellcheck disable=SC2086
c++ -std=c++20 -Wall -Wextra -Werror -o "$work/example-cc" "$work/example.cc" $link

for program in example-c example-cc; do
    "$zornode" --share "$work" -- sh -c "mkdir -p /tmp/zor && $work/$program" >"$work/output" || {
        echo "$program failed: $(cat "$work/output")"
        exit 1
    }
    echo "$program: $(cat "$work/output")"
done
