#!/usr/bin/env python3
"""Writes the records and functions of the library as a Python ctypes module.

The records are taken from the headers, as the compiler lays them out; the functions
from the description of the binary interface.

Usage: bindings.py SOURCE_FOLDER >kevazorcore.py
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

ABIDW = ["abidw", "--drop-private-types", "--no-show-locs", "--no-corpus-path",
         "--no-comp-dir-path"]
BASE_TYPES = {
    "char": "c_char", "signed char": "c_int8", "unsigned char": "c_uint8", "short int": "c_int16",
    "unsigned short int": "c_uint16", "int": "c_int32", "unsigned int": "c_uint32",
    "long int": "c_int64", "unsigned long int": "c_uint64", "long long int": "c_int64",
}
HEAD = '''"""The records and functions of libkevazorcore.so.6, for Python.

Made by scripts/bindings.py from the headers; not to be edited. The names, units and
results are those of the headers; a function that needs a record takes its address:

    library = kevazorcore.load()
    info = kevazorcore.ZORIfInfo()
    result = library.ZORGetConfIfInfo(ctypes.byref(info))
"""
import ctypes

'''
TAIL = '''

def load(path="libkevazorcore.so.6"):
    """The library, with the arguments and results of its functions declared."""
    library = ctypes.CDLL(path)
    for name, (result, arguments) in FUNCTIONS.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library
'''


class Types:
    """The types of one description, by their ids."""

    def __init__(self, root):
        self.by_id = {node.get("id"): node for node in root.iter() if node.get("id")}

    def base(self, type_id):
        """Goes through typedefs and qualifiers."""
        node = self.by_id[type_id]
        while node.tag in ("typedef-decl", "qualified-type-def"):
            node = self.by_id[node.get("type-id")]
        return node

    def member(self, type_id):
        node = self.base(type_id)
        if node.tag == "array-type-def":
            text = self.member(node.get("type-id"))
            for part in reversed(node.findall("subrange")):
                text = f"{text} * {part.get('length')}"
            return f"({text})"
        if node.tag == "class-decl":
            return node.get("name")
        if node.tag == "pointer-type-def":
            return "ctypes.c_void_p"
        return "ctypes." + BASE_TYPES[node.get("name")]

    def argument(self, type_id):
        node = self.base(type_id)
        if node.tag == "pointer-type-def":
            target = self.base(node.get("type-id"))
            if target.tag == "class-decl" and target.get("name").startswith("ZOR"):
                return f"ctypes.POINTER({target.get('name')})"
            if target.tag == "type-decl" and target.get("name") == "char":
                return "ctypes.c_char_p"
            if target.tag == "pointer-type-def":
                return "ctypes.POINTER(ctypes.c_void_p)"
            if target.tag == "type-decl" and target.get("name") in BASE_TYPES:
                return f"ctypes.POINTER(ctypes.{BASE_TYPES[target.get('name')]})"
            return "ctypes.c_void_p"
        if node.tag == "type-decl" and node.get("name") == "void":
            return "None"
        return self.member(type_id)


def describe_headers(root):
    """A description of every record, made from a file that uses each of them."""
    headers = sorted((root / "include").glob("zor_*.h"))
    names = [name for header in headers
             for name in re.findall(r"typedef struct (ZOR\w+) \{", header.read_text())]
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / "records.c"
        source.write_text("".join(f"#include <{header.name}>\n" for header in headers) +
                          "".join(f"void use{name}({name} *record) {{ (void)record; }}\n"
                                  for name in names))
        library = source.with_suffix(".so")
        subprocess.run(["cc", "-std=c99", "-g", "-shared", "-fPIC", "-I", root / "include", source,
                        "-o", library], check=True)
        text = subprocess.run([*ABIDW, library], check=True, capture_output=True).stdout
    return ElementTree.fromstring(text), names


def records(root):
    description, names = describe_headers(root)
    types = Types(description)
    nodes = {node.get("name"): node for node in description.iter("class-decl")
             if node.get("name") in names and node.get("is-declaration-only") is None}
    written = []

    def write(name):
        if name in written:
            return
        fields = []
        for member in nodes[name].findall("data-member/var-decl"):
            text = types.member(member.get("type-id"))
            for used in re.findall(r"ZOR\w+", text):
                yield from write(used)
            fields.append(f'        ("{member.get("name")}", {text}),\n')
        written.append(name)
        yield (f"\nclass {name}(ctypes.Structure):\n    _fields_ = [\n" + "".join(fields) +
               "    ]\n\n")

    for name in names:
        yield from write(name)
    yield "\nRECORDS = [" + ", ".join(written) + "]\n"


def functions(root):
    description = ElementTree.parse(root / "abi/libkevazorcore.abi").getroot()
    types = Types(description)
    rows = []
    exported = {node.get("name") for node in description.iter("elf-symbol")}
    for node in description.iter("function-decl"):
        if node.get("name") not in exported:
            continue
        arguments = [types.argument(parameter.get("type-id"))
                     for parameter in node.findall("parameter") if parameter.get("type-id")]
        result = types.argument(node.find("return").get("type-id"))
        rows.append(f'    "{node.get("name")}": ({result}, [{", ".join(arguments)}]),\n')
    yield "\nFUNCTIONS = {\n" + "".join(sorted(rows)) + "}\n"


def main():
    root = pathlib.Path(sys.argv[1])
    sys.stdout.write(HEAD + "".join(records(root)) + "".join(functions(root)) + TAIL)


if __name__ == "__main__":
    main()
