#!/usr/bin/env python3
"""Compares every size and offset of the bindings with the compiler's, and calls the
library through them. Runs in a private node.

Usage: bindings_test.py SOURCE_FOLDER LIBRARY
"""
import ctypes
import pathlib
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(sys.argv[1])
sys.path.insert(0, str(SOURCE / "bindings/python"))
sys.dont_write_bytecode = True
import kevazorcore  # noqa: E402

PROGRAM = """#include <stddef.h>
#include <stdio.h>
%s
int main(void) {
%s    return 0;
}
"""


def compiled_layout():
    """A line for each record and field, as a C program prints it."""
    includes = "".join(f"#include <{header.name}>\n"
                       for header in sorted((SOURCE / "include").glob("zor_*.h")))
    lines = ""
    for record in kevazorcore.RECORDS:
        name = record.__name__
        lines += f'    printf("{name} %zu\\n", sizeof({name}));\n'
        for field, _ in record._fields_:
            lines += (f'    printf("{name}.{field} %zu %zu\\n", offsetof({name}, {field}), '
                      f"sizeof((({name} *)0)->{field}));\n")
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / "layout.c"
        source.write_text(PROGRAM % (includes, lines))
        program = source.with_suffix("")
        subprocess.run(["cc", "-std=c99", "-I", SOURCE / "include", source, "-o", program],
                       check=True)
        return subprocess.run([program], check=True, capture_output=True, text=True).stdout


def python_layout():
    text = ""
    for record in kevazorcore.RECORDS:
        text += f"{record.__name__} {ctypes.sizeof(record)}\n"
        for field, _ in record._fields_:
            place = getattr(record, field)
            text += f"{record.__name__}.{field} {place.offset} {place.size}\n"
    return text


def call_library():
    library = kevazorcore.load(sys.argv[2])
    pathlib.Path("/tmp/zor").mkdir(exist_ok=True)
    assert library.ZORSetHAStatus(2, 8, b"192.0.2.1") == 0
    value = ctypes.create_string_buffer(64)
    assert library.ZORGetHAStatus(2, 8, value, len(value)) == 1
    assert value.value == b"192.0.2.1"
    record = kevazorcore.ZORSyncStatus()
    assert library.ZORGetSyncHAStatus(2, ctypes.byref(record)) == 0
    assert bytes(record.hostIp).rstrip(b"\0") == b"192.0.2.1"
    lock = ctypes.c_void_p()
    assert library.ZORFileLock(0, 0, ctypes.byref(lock)) == 0 and lock.value
    assert library.ZORFileUnlock(ctypes.byref(lock)) == 0 and not lock.value
    status = library.ZORGetRuntimeStatus()
    assert library.ZORIsNowSwitchoverFailoverTakeover(status) in (0, 1)


def main():
    assert python_layout() == compiled_layout()
    call_library()
    print(f"{len(kevazorcore.RECORDS)} records, {len(python_layout().splitlines())} sizes and "
          f"offsets, {len(kevazorcore.FUNCTIONS)} functions")


if __name__ == "__main__":
    main()
