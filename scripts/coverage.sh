#!/usr/bin/env bash
# Branches and lines that the tests take, folder by folder: a figure to look at.
#
#   scripts/coverage.sh BUILD
set -eu
cd "$(dirname "$0")/.."
build=$1

gcovr --root . --json-summary --exclude-throw-branches --exclude-unreachable-branches \
  --filter '(kernel|color|geometry|compose|region|device|platform|tools)/' "$build" \
  >"$build/coverage.json"
python3 - "$build/coverage.json" <<'END'
import collections, json, sys
folders = collections.defaultdict(lambda: [0, 0, 0, 0])
for file in json.load(open(sys.argv[1]))["files"]:
    for name in (file["filename"].split("/")[0], "all"):
        for i, key in enumerate(("branch_covered", "branch_total", "line_covered", "line_total")):
            folders[name][i] += file[key]
print("folder      branches    lines")
for name in sorted(folders, key=lambda name: (name == "all", name)):
    taken, branches, run, lines = folders[name]
    print(f"{name:10} {taken / max(branches, 1):8.1%} {run / max(lines, 1):8.1%}")
END
