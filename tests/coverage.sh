#!/usr/bin/env bash
# Reports the coverage of the tests by folder. Branches of exceptions that no test can throw are excluded.
# Usage: coverage.sh BUILD_FOLDER
set -euo pipefail
build=$1 report=$1/report
mkdir -p "$report"
gcovr --root . --filter '(base|include|interface|matrix|models|optics)/' --exclude-throw-branches --exclude-unreachable-branches \
  --gcov-ignore-parse-errors --object-directory "$build" --html-details "$report/index.html" --json-summary "$report/summary.json" \
  --txt "$report/files.txt" "$build" >/dev/null
python3 - "$report/summary.json" <<'PYTHON'
import collections, json, os, sys
sums = collections.defaultdict(lambda: [0, 0, 0, 0])
for file in json.load(open(sys.argv[1]))["files"]:
    keys = ("line_covered", "line_total", "branch_covered", "branch_total")
    folder = sums[os.path.dirname(file["filename"])]
    for i, key in enumerate(keys):
        folder[i] += file[key]
print("| folder | lines | branches |\n|---|---|---|")
for folder, (lines, all_lines, branches, all_branches) in sorted(sums.items()):
    print(f"| `{folder}` | {lines} of {all_lines} | {branches} of {all_branches} |")
PYTHON
echo "$report/index.html"
