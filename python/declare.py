"""Writes vncore/declarations.h, what the package knows of the library, from the public headers.

    declare.py HEADERS... [--check]

HEADERS are the folders that <vncore/vncore.h> is found in. With --check nothing is written: the exit
status is 1 where the file does not say what the headers say. The compiler is $CC, or cc.
"""
import os
import re
import subprocess
import sys
from pathlib import Path

DECLARATIONS = Path(__file__).parent / "vncore" / "declarations.h"
HEAD = """\
/* The library's public interface as the package loads it. Written by declare.py from the headers, and
 * compared with them by a test. */
"""


def preprocessed(folders: list[str]) -> str:
    """The text of the library's own headers, without comments and without other people's headers."""
    compiler = [os.environ.get("CC", "cc"), "-E", "-x", "c", "-"]
    source = "#define VNCORE_PREFIXED\n#include <vncore/vncore.h>\n"
    output = subprocess.run(compiler + [f"-I{folder}" for folder in folders], input=source,
                            capture_output=True, text=True, check=True).stdout
    lines, own = [], False
    for line in output.splitlines():
        marker = re.match(r'# \d+ "(.*?)"', line)
        if marker:
            own = "/vncore/" in marker.group(1)
        elif own and line.strip():
            lines.append(line)
    return "\n".join(lines)


def declarations(folders: list[str]) -> str:
    """What cffi is to read: no attributes, and one declaration after the other."""
    text = re.sub(r'__attribute__\s*\(\(visibility\("default"\)\)\)', "", preprocessed(folders))
    return re.sub(r"\s+", " ", text).strip().replace("; ", ";\n")


def words(text: str) -> list[str]:
    """The text without comments and white space: what a formatter leaves alone."""
    return re.findall(r"\w+|[^\w\s]", re.sub(r"/\*.*?\*/", "", text, flags=re.S))


def main() -> int:
    folders = [argument for argument in sys.argv[1:] if argument != "--check"]
    present = declarations(folders)
    if "--check" in sys.argv:
        if words(DECLARATIONS.read_text()) == words(present):
            return 0
        print(f"{DECLARATIONS.name} is not what the headers declare: run declare.py", file=sys.stderr)
        return 1
    formatted = subprocess.run(["clang-format", f"--assume-filename={DECLARATIONS}"], input=present,
                               capture_output=True, text=True, check=True).stdout
    DECLARATIONS.write_text(HEAD + formatted + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
