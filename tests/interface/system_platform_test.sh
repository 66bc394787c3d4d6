#!/bin/sh
# Builds the library against a base library that is not the stand-in, and without it.
# Usage: system_platform_test.sh SOURCE_FOLDER FOLDER_OF_THE_OTHER_LIBRARY
set -eu
build=$(mktemp -d)
trap 'rm -rf "$build"' EXIT
cmake -S "$1" -B "$build" -G Ninja -D KEVAZOR_PLATFORM=system -D CMAKE_LIBRARY_PATH="$2" \
    -D CMAKE_BUILD_TYPE=Debug -D KEVAZOR_BUILD_TESTS=OFF >"$build/log"
cmake --build "$build" --target kevazorcore >>"$build/log" || {
    tail -n 40 "$build/log"
    exit 1
}
[ -z "$(find "$build" -name 'libkevacore*')" ] || { echo "FAILED: the stand-in was built"; exit 1; }
[ ! -e "$build/lab" ] || { echo "FAILED: the lab was built"; exit 1; }
LD_LIBRARY_PATH=$2 ldd "$(find "$build" -name libkevazorcore.so.6)" | grep "libkevacore.so.6 => $2" ||
    { echo "FAILED: it is not bound to the platform's library"; exit 1; }
