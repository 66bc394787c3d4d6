#!/usr/bin/env python3
"""Writes the manual pages: of the functions from the header comments (section 3), of
files, records, messages and JSON from docs/ (sections 5 and 7), of the tools from their
own help (section 1).

Usage: man_pages.py SOURCE_FOLDER OUTPUT_FOLDER [TOOL ...]
"""
import pathlib
import re
import subprocess
import sys

FOOTER = "kevazorcore 6"
DATE = "2026-11-21"
DOCUMENTS = {
    # document: (page, section, what it is)
    "files.md": ("kevazor-files", 5, "files of a node"),
    "records.md": ("kevazor-records", 7, "records, messages and health bits, byte by byte"),
    "codes.md": ("kevazor-codes", 7, "commands, bits of the health word, exit codes"),
    "messages.md": ("kevazor-messages", 7, "lines of the system log"),
    "json.md": ("kevazor-json", 7, "JSON of zorctl"),
    "reliability.md": ("kevazor-reliability", 7, "what is promised when things go wrong"),
    "abi.md": ("kevazor-abi", 7, "what may change in the binary interface"),
}
DECLARATION = re.compile(r"^(?:extern )?(.*?[\s*])(\w+)(\(.*\)|\[.*\])(?: __attribute__.*)?;$")


def escape(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return re.sub(r"^([.'])", r"\\&\1", text, flags=re.M)


def inline(text):
    """Markdown within a line."""
    text = re.sub(r"\[([^\]]+)\]\([^)]*\)", r"\1", text.replace("\\|", "|"))
    return re.sub(r"(`+)(.+?)\1|\*\*(.+?)\*\*|\*(\w+)\*",
                  lambda match: "\\fB" + (match[2] or match[3] or match[4]) + "\\fR",
                  escape(text))


def heading(page, section, meaning, table=False):
    return (("'\\\" t\n" if table else "") +
            f'.TH {escape(page)} {section} "{DATE}" "{FOOTER}"\n' +
            (".ad l\n.nh\n" if table else "") +
            f".SH NAME\n{escape(page)} \\- {escape(meaning)}\n")


def table(rows):
    columns = max(len(row) for row in rows)
    layout = " ".join(["lb"] * columns) + "\n" + " ".join(["l"] * (columns - 1) + ["lx"]) + ".\n"
    cells = ["\t".join(f"T{{\n{inline(cell)}\nT}}" for cell in row) for row in rows]
    return ".TS\nallbox;\n" + layout + "\n".join(cells) + "\n.TE\n"


def from_markdown(text):
    """The body of a page; the first heading is its name already."""
    out, rows = [], []
    code = False
    for line in text.splitlines() + [""]:
        if line.startswith("|"):
            cells = [cell.strip() for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
            if not all(set(cell) <= set("-: ") for cell in cells) or not rows:
                rows.append(cells)
            continue
        if rows:
            out.append(table(rows))
            rows = []
        if line.startswith("    "):
            out.append((".EX\n" if not code else "") + escape(line[4:]) + "\n")
            code = True
            continue
        if code:
            out.append(".EE\n")
            code = False
        if line.startswith("# "):
            continue
        if line.startswith("### "):
            out.append(f".SS {inline(line[4:])}\n")
        elif line.startswith("## "):
            out.append(f".SH {inline(line[3:])}\n")
        elif line.startswith("- "):
            out.append(f".IP \\(bu 2\n{inline(line[2:])}\n")
        elif not line.strip():
            out.append(".PP\n")
        else:
            out.append(inline(line.strip()) + "\n")
    body = re.sub(r"(\.PP\n)+(?=\.(SH|SS|IP|TS|PP|EX)|$)", "", "".join(out))
    body = re.sub(r"(\.S[HS] [^\n]*\n)\.PP\n", r"\1", body)
    return body if body.startswith(".SH") else ".SH DESCRIPTION\n" + re.sub(r"^\.PP\n", "", body)


def declarations(header):
    """Yields (comment, [(name, declaration)]) of a header."""
    comment, group, lines = "", [], iter(header.read_text().splitlines())
    for line in lines:
        if line.startswith("/*"):
            text = line
            while "*/" not in text:
                text += "\n" + next(lines)
            if group:
                yield comment, group
            group = []
            comment = re.sub(r"^\s*\*? ?", "", re.sub(r"^/\*|\*/$", "", text), flags=re.M).strip()
            comment = "" if comment.startswith("---") else comment
        elif re.match(r"^[A-Za-z_].*[\w*] ?\*?\w+[(\[]", line) and not line.startswith("typedef"):
            while not line.endswith(";"):
                line += " " + next(lines).strip()
            match = DECLARATION.match(line)
            if match:
                group.append((match.group(2), line))
        elif not line.strip() and group:
            yield comment, group
            group = []
    if group:
        yield comment, group


def function_pages(root):
    exported = {line for line in (root / "src/exports.list").read_text().splitlines()
                if line and not line.startswith("#")}
    for header in sorted((root / "include").glob("zor_*.h")):
        for comment, group in declarations(header):
            names = [name for name, _ in group if name in exported]
            for name, declaration in group:
                if name not in exported:
                    continue
                sentence = re.split(r"(?<=[.;:])\s", " ".join(comment.split()))[0].rstrip(".;:")
                others = [f"\\fB{other}\\fR(3)" for other in names if other != name]
                yield name, (
                    heading(name, 3, sentence or "of " + header.name) +
                    f".SH SYNOPSIS\n.EX\n#include <{header.name}>\n\n{escape(declaration)}\n.EE\n"
                    f".PP\nLink with \\fB\\-lkevazorcore\\fR.\n"
                    f".SH DESCRIPTION\n{escape(comment)}\n" +
                    (".SH SEE ALSO\n" + ",\n".join(others) + "\n" if others else ""))


def tool_page(tool):
    help_text = subprocess.run([tool, "--help"], check=True, capture_output=True, text=True).stdout
    lines = help_text.splitlines()
    name = pathlib.Path(tool).name
    meaning = next(line for line in lines if line.strip()).rstrip(".")
    return name, (heading(name, 1, meaning.split(": ")[-1]) + ".SH SYNOPSIS\n"
                  f"\\fB{name}\\fR [options]\n.SH DESCRIPTION\n.EX\n" +
                  escape(help_text.rstrip()) + "\n.EE\n.SH SEE ALSO\n"
                  "\\fBkevazor\\-files\\fR(5),\n\\fBkevazor\\-messages\\fR(7)\n")


def main():
    root, output = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])

    def write(name, section, text):
        folder = output / f"man{section}"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / f"{name}.{section}").write_text(text)

    for name, text in function_pages(root):
        write(name, 3, text)
    for document, (name, section, meaning) in DOCUMENTS.items():
        body = from_markdown((root / "docs" / document).read_text())
        write(name, section, heading(name, section, meaning, ".TS\n" in body) + body)
    for tool in sys.argv[3:]:
        name, text = tool_page(tool)
        write(name, 1, text)


if __name__ == "__main__":
    main()
