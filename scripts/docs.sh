#!/usr/bin/env bash
# Makes the pages of the public headers with Doxygen, and fails where it warns or where an exported
# function has no docstring.
#
#   docs.sh FOLDER      the pages go to FOLDER/html
set -eu

folder=$(mkdir -p "$1" && cd "$1" && pwd)
cd "$(dirname "$0")/.."
version=$(cmake -P cmake/Version.cmake 2>&1)
{ cat docs/api/Doxyfile; echo "OUTPUT_DIRECTORY=$folder"; echo "PROJECT_NUMBER=$version"; } | doxygen -

python3 - "$folder/xml" kernel/vncore32.def <<'END'
import pathlib, re, sys
from xml.etree import ElementTree
told = set()
for page in pathlib.Path(sys.argv[1]).glob("*_8h.xml"):
    for member in ElementTree.parse(page).iter("memberdef"):
        texts = [member.find(kind) for kind in ("briefdescription", "detaileddescription")]
        if any("".join(text.itertext()).strip() for text in texts):
            told.add(member.findtext("name"))
exports = set(re.findall(r"^ +(Vn_\w+) ", pathlib.Path(sys.argv[2]).read_text(), re.M))
missing = sorted(exports - told)
print(f"{len(exports) - len(missing)} of {len(exports)} exported functions have their docstring", *missing)
sys.exit(bool(missing))
END
