#!/usr/bin/env python3
"""Filter of Doxygen: gives a header with the comments marked that are docstrings.

The comment right above a declaration is its docstring, and one behind a field or a constant is that
one's. What follows without a comment of its own is told by the last comment before it, which speaks of
several functions or heads a section.
"""
import re
import sys

COMMENT = re.compile(r"/\*.*?\*/", re.S)


def marked(comment: str, opening: str) -> str:
    """The comment as Doxygen knows it, with no character that it would take for a command."""
    text = re.sub(r"([<>#%])", r"\\\1", comment[2:])
    return opening + re.sub(r"`[^`]*`", lambda code: code[0].replace("\\", ""), text)


def filtered(text: str) -> str:
    parts, last, end = [], "", 0
    for found in COMMENT.finditer(text):
        code = text[end:found.start()]
        parts.append(explained(code, last))
        end = found.end()
        before = text[:found.start()]
        if not before:
            parts.append(marked(found[0], "/** @file\n"))
        elif before.rsplit("\n", 1)[-1].strip():
            parts.append(marked(found[0], "/**<"))
        else:
            last = marked(found[0], "/**")
            heads = text[end:].startswith("\n\n")  # a section, and no declaration of its own
            parts.append(found[0] if heads else last)
    parts.append(explained(text[end:], last))
    return "".join(parts)


def explained(code: str, last: str) -> str:
    """The code behind a comment, with that comment before every declaration that has none."""
    lines = code.split("\n")
    for number, line in enumerate(lines):
        right_behind = number == 1 and not lines[0].strip()
        if last and line.startswith(("VN_API", "HEADLESS_API")) and not right_behind:
            lines[number] = last + "\n" + line
    return "\n".join(lines)


if __name__ == "__main__":
    sys.stdout.write(filtered(open(sys.argv[1], encoding="utf-8").read()))
