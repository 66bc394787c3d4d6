#!/bin/sh
# Every exported function and every tool has a manual page, and mandoc has nothing to say.
# Usage: man_pages_test.sh SOURCE_FOLDER MAN_FOLDER
set -eu
failures=0
for name in $(grep -v '^#' "$1/src/exports.list"); do
    [ -s "$2/man3/$name.3" ] || {
        echo "FAILED: $name has no page"
        failures=$((failures + 1))
    }
done
for page in man1/zorctl.1 man1/zornode.1 man1/zorlab.1 man5/kevazor-files.5 \
    man7/kevazor-messages.7 man7/kevazor-records.7 man7/kevazor-codes.7; do
    [ -s "$2/$page" ] || {
        echo "FAILED: there is no $page"
        failures=$((failures + 1))
    }
done
find "$2" -name '*.[1357]' -exec mandoc -T lint -W warning {} + || failures=$((failures + 1))
exit "$failures"
