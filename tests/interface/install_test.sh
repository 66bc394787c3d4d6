#!/bin/sh
# Installs into an empty folder and builds the examples against what is there, by
# pkg-config and by the CMake package; runs them in a private node with a manager.
# Usage: install_test.sh SOURCE_FOLDER BUILD_FOLDER
set -eu
source=$1
build=$2
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
fail() {
    echo "FAILED: $1"
    exit 1
}

cmake --install "$build" --prefix "$stage/usr" >"$stage/log"
usr=$stage/usr
library=$(find "$usr" -name 'libkevazorcore.so.6')
folder=$(dirname "$library")
[ -n "$library" ] || fail "no library was installed"
[ -z "$(find "$usr" -name 'libkevacore*')" ] || fail "the stand-in was installed"
[ -x "$usr/bin/zorctl" ] || fail "zorctl was not installed"

# By pkg-config; the platform's base library is found where the build has it.
PKG_CONFIG_PATH=$folder/pkgconfig
export PKG_CONFIG_PATH
platform=$build/platform/kevacore
# shellcheck disable=SC2046
for program in publish_status cluster_page; do
    cc -std=c99 -D_DEFAULT_SOURCE -Wall -Wextra -Werror -pedantic "$source/examples/$program.c" \
        $(pkg-config --cflags --libs kevazorcore) -Wl,-rpath-link,"$platform" \
        -o "$stage/$program.pkg"
done
# shellcheck disable=SC2046
c++ -std=c++11 -Wall -Wextra -Werror "$source/examples/send_request.cc" \
    $(pkg-config --cflags --libs kevazorcore) -Wl,-rpath-link,"$platform" \
    -o "$stage/send_request.pkg"

# By the CMake package.
mkdir "$stage/project"
cat >"$stage/project/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.18)
project(examples LANGUAGES C CXX)
find_package(kevazorcore 6 REQUIRED)
add_executable(publish_status.cmake $source/examples/publish_status.c)
add_executable(cluster_page.cmake $source/examples/cluster_page.c)
add_executable(send_request.cmake $source/examples/send_request.cc)
foreach(program publish_status cluster_page send_request)
  target_link_libraries(\${program}.cmake PRIVATE kevazor::kevazorcore)
  target_link_options(\${program}.cmake PRIVATE -Wl,-rpath-link,$platform)
endforeach()
END
cmake -S "$stage/project" -B "$stage/project/build" -D CMAKE_PREFIX_PATH="$usr" \
    -D CMAKE_RUNTIME_OUTPUT_DIRECTORY="$stage" >>"$stage/log"
cmake --build "$stage/project/build" >>"$stage/log"

for way in pkg cmake; do
    # shellcheck disable=SC2016
    LD_LIBRARY_PATH=$folder:$platform "$build/tools/zornode/zornode" -- sh -c '
        "$1/lab/zorlab" manager --peer in-process >/run/manager.out 2>&1 &
        for _ in $(seq 100); do
            [ "$("$4/bin/zorctl" get is_local_handler_ready 2>/dev/null)" = yes ] && break
            sleep 0.05
        done
        sleep 1
        "$2/publish_status.$3" 1 && "$2/send_request.$3" 1000 hello &&
            "$2/cluster_page.$3" && "$4/bin/zorctl" get local_host_version
    ' sh "$build" "$stage" "$way" "$usr" >"$stage/output" 2>&1 ||
        fail "$way: $(cat "$stage/output")"
    for line in 'published 6.1-0' 'done: hello' 'cluster: '; do
        grep -q "^$line" "$stage/output" || fail "$way: no \"$line\" in: $(cat "$stage/output")"
    done
done
echo "installed, built and run both ways"
