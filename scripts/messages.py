#!/usr/bin/env python3
"""Writes docs/messages.md: every line that the library writes to the system log.

Usage: messages.py SOURCE_FOLDER >docs/messages.md
"""
import pathlib
import re
import sys

HEAD = """# Messages

Every line that the library writes to the system log, as log watchers match them: letter for letter,
misspellings included. Made by `scripts/messages.py` from the sources; a test compares them.

A line is `[ZOR-LEVEL] MODULE:LINE(FUNCTION): TEXT`, with the priority of its level (ERROR 3, NOTICE 5).
`%m` is the meaning of errno. Where the function is given in italics, a helper reports in the name of the
function that called it.
"""
CALL = re.compile(
    r'ZOR_(ERROR|NOTICE)(_OF)?\(\s*(?:([A-Za-z_]\w*)\s*,\s*)?((?:"(?:[^"\\]|\\.)*"\s*)+)', re.S)
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')
MODULE = re.compile(r'constexpr char kLogModule\[\] = "(\w+)";')
CONSTANT = re.compile(r'constexpr char (k\w+)\[\] = "(\w+)";')
FUNCTION = re.compile(r'^(?:extern "C" )?[A-Za-z_][\w:<>&* ,]*?[ *&](\w+)\((?:[^;{}]*)\)[^;{}]*\{', re.M)


def table_texts(text):
    """The texts of a table whose rows name what is reported."""
    return [row for row in LITERAL.findall(text) if row.startswith("Error:")]


def calls(path):
    """Yields (function, is in another's name, level, text) of a source file."""
    text = path.read_text()
    constants = dict(CONSTANT.findall(text))
    starts = [(match.start(), match.group(1)) for match in FUNCTION.finditer(text)]
    for match in CALL.finditer(text):
        level, _, reporter, literals = match.groups()
        is_others = reporter is not None and reporter not in constants
        before = [name for start, name in starts if start < match.start()]
        function = constants[reporter] if reporter in constants else before[-1]
        message = "".join(LITERAL.findall(literals))
        for one in table_texts(text) if message == "%s" else [message]:
            yield function, is_others, level, one


def main():
    root = pathlib.Path(sys.argv[1])
    modules = {}
    for path in sorted((root / "src").rglob("*.cc")):
        module = MODULE.search(path.read_text())
        for function, is_others, level, message in calls(path):
            modules.setdefault(module.group(1), []).append(
                (path.relative_to(root), function, is_others, level, message))
    sys.stdout.write(HEAD)
    for module in sorted(modules):
        sys.stdout.write(f"\n## {module}\n\n| Function | Level | Text | File |\n|---|---|---|---|\n")
        seen = set()
        for path, function, is_others, level, message in modules[module]:
            name = f"*{function}*" if is_others else f"`{function}`"
            escaped = message.replace("|", "\\|")
            row = f"| {name} | {level} | `{escaped}` | `{path}` |\n"
            if row not in seen:
                sys.stdout.write(row)
            seen.add(row)


if __name__ == "__main__":
    main()
