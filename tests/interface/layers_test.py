#!/usr/bin/env python3
"""Checks who includes whom: a layer sees itself, those below it and nothing above.

Usage: layers_test.py SOURCE_FOLDER
"""
import pathlib
import re
import sys
import tempfile

# A folder, the folders of src/ that it may include from, and the public headers that it
# may call. The configuration asks one thing of the layer above it: this node's serial
# number. The picture of the enclosures, in hwinfo, asks for the nodes' snapshots.
LAYERS = {
    "src/foundation": ("foundation", "kevacore zor_filelock"),
    "src/status": ("status foundation", "kevacore zor_filelock zor_status"),
    "src/conf": ("conf foundation", "kevacore zor_filelock zor_status zor_conf zor_core"),
    "src/core": ("core foundation", "kevacore zor_filelock zor_status zor_conf zor_core"),
    "src/constraint": ("foundation", "kevacore zor_filelock zor_status zor_conf zor_constraint"),
    "src/hwinfo": (
        "hwinfo foundation",
        "kevacore zor_filelock zor_status zor_hwinfo_core zor_encinfo zor_webapi_core",
    ),
    "src/webapi": (
        "webapi core foundation",
        "kevacore zor_filelock zor_status zor_conf zor_constraint zor_core zor_hwinfo_core "
        "zor_webapi_core",
    ),
    # What stands outside sees the public headers alone.
    "tools": ("", "*"),
    "lab": ("", "*"),
    "examples": ("", "*"),
    "platform": ("", "kevacore"),
}
# Exceptions of single files: (file, header).
ONLY_HERE = {
    ("src/conf/conf_key.cc", "zor_core"),
    ("src/hwinfo/enclosure_picture.cc", "zor_webapi_core"),
}
RESTRICTED = {("src/conf", "zor_core"), ("src/hwinfo", "zor_webapi_core")}
INCLUDE = re.compile(r'^#include ["<]([^">]+)[">]')


def faults(root):
    internal = {path.name for path in (root / "src").iterdir() if path.is_dir()}
    public = {path.stem for path in (root / "include").glob("*.h")}
    for layer, (folders, headers) in LAYERS.items():
        folders, headers = set(folders.split()), set(headers.split())
        for path in sorted((root / layer).rglob("*.*")):
            if path.suffix not in (".cc", ".h", ".c"):
                continue
            name = str(path.relative_to(root))
            for line in path.read_text().splitlines():
                match = INCLUDE.match(line)
                if not match:
                    continue
                target = pathlib.PurePath(match.group(1))
                folder = target.parts[0] if len(target.parts) > 1 else ""
                if folder in internal and folder not in folders:
                    yield f"{name} includes {target}"
                if folder == "" and target.stem in public:
                    if "*" not in headers and target.stem not in headers:
                        yield f"{name} includes {target}"
                    if (layer, target.stem) in RESTRICTED and (name, target.stem) not in ONLY_HERE:
                        yield f"{name} includes {target}"


def control():
    """A tree in which a low layer looks up: it must be found."""
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for part in ["include", "src/webapi", *LAYERS]:
            (root / part).mkdir(parents=True, exist_ok=True)
        (root / "include/zor_core.h").touch()
        low = root / "src/status/low.cc"
        low.write_text('#include "webapi/ui_cache.h"\n#include "zor_core.h"\n')
        return len(list(faults(root))) == 2


def main():
    root = pathlib.Path(sys.argv[1])
    found = list(faults(root))
    if not control():
        found.append("the check sees nothing")
    for fault in found:
        print("FAILED:", fault)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
