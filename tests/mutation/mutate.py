#!/usr/bin/env python3
"""Applies plausible one-line mistakes to a copy of the sources, one at a time, and sees that a test notices each.

Usage: mutate.py check          every mistake of mutations.txt can still be applied, and there are enough
       mutate.py run            try them all, and write the table into docs/testing.md
       mutate.py go-on [WORD...]  try those that have not been tried, or survived, in files whose names contain a WORD;
                                the table has what was tried so far
       mutate.py first N [WORD...]  the same, but no more than N of each file; of the exports all
       mutate.py table          write the table of what was tried so far
"""
import collections
import functools
import html
import json
import pathlib
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
LIST = ROOT / "tests/mutation/mutations.txt"
PAGE = ROOT / "docs/testing.md"
COPY = ROOT / "build/mutation/tree"
BUILD = ROOT / "build/mutation/build"
RESULTS = ROOT / "build/mutation/results.json"
LEAST_IN_A_FILE = 5
SECONDS = 300  # of one program of tests; a mistake may make a loop endless

PROGRAMS = {"interface": ["interface", "failing_memory", "reference"],
            "optics": ["optics", "memory", "interface", "golden", "reference"],
            "include": ["optics", "memory", "interface", "golden", "reference"]}

EXPORTS = "interface/exports.cpp"
CPU = set(pathlib.Path("/proc/cpuinfo").read_text().split())

Mutation = collections.namedtuple("Mutation", "file before after occurrence reason needs")


def read_list():
    mutations, file, block = [], None, {}

    def finish():
        if block:
            mutations.append(Mutation(file, block["-"], block["+"], int(block.get("@", 1)), block.get("~", ""),
                                      block.get("!", "")))
            block.clear()

    for line in LIST.read_text().splitlines():
        if line.startswith("#"):
            continue
        if line.startswith("["):
            finish()
            file = line[1:-1]
        elif not line:
            finish()
        else:
            key, text = line[0], line[2:]
            block[key] = block[key] + " " + text if key in block else text
    finish()
    return mutations


def place(mutation, text):
    """Where the mistake goes, or what is wrong with it."""
    places = [found.start() for found in re.finditer(re.escape(mutation.before), text)]
    if mutation.occurrence > len(places) or (mutation.occurrence == 1 and len(places) != 1):
        raise SystemExit(f"tests/mutation/mutations.txt: {mutation.file} has {len(places)} times\n  {mutation.before}\n"
                         "write what stands there now, so that it is there once")
    return places[mutation.occurrence - 1]


def mutated(mutation, text):
    start = place(mutation, text)
    return text[:start] + mutation.after + text[start + len(mutation.before):]


def check(mutations):
    for mutation in mutations:
        mutated(mutation, (ROOT / mutation.file).read_text())
    count = collections.Counter(mutation.file for mutation in mutations)
    sources = [path.relative_to(ROOT).as_posix() for folder in ("optics", "optics/kernels")
               for path in sorted((ROOT / folder).glob("*.cpp"))]
    sources += [f"optics/kernels/{name}.h" for name in ("centred", "image", "lines", "modulation",
                                                         "pupil", "spectrum", "vectors", "wavefront")]
    for source in sources + [EXPORTS, "interface/pattern_asset.cpp"]:
        if count[source] < LEAST_IN_A_FILE:
            raise SystemExit(f"tests/mutation/mutations.txt: {source} has {count[source]} mistakes; "
                             f"give it at least {LEAST_IN_A_FILE}")


def copy_sources():
    names = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                           check=True, capture_output=True).stdout.decode().split("\0")
    for name in filter(None, names):
        source, target = ROOT / name, COPY / name
        if source.is_file() and (not target.exists() or target.read_bytes() != source.read_bytes()):
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)


def build(program):
    """The messages of a build that failed; empty for a good one."""
    target = f"orvanel_{program}_tests"
    done = subprocess.run(["cmake", "--build", BUILD, "--target", target], capture_output=True, text=True)
    return "" if done.returncode == 0 else done.stdout + done.stderr


def first_failure(program, tests="*"):
    """The test that failed first, or ended the program, or did not end; None if all passed."""
    if messages := build(program):
        return "the compiler: " + next((line for line in messages.splitlines() if "error: " in line), messages)[-80:]
    command = [BUILD / f"bin/orvanel_{program}_tests", "--gtest_fail_fast", "--gtest_color=no", f"--gtest_filter={tests}"]
    try:
        done = subprocess.run(command, cwd=BUILD, capture_output=True, timeout=SECONDS)
        output, end = done.stdout, " (ended)"
        if done.returncode == 0:
            return None
    except subprocess.TimeoutExpired as expired:
        output, end = expired.stdout or b"", " (did not end)"
    output = output.decode(errors="replace")
    failed = re.search(r"^\[  FAILED  \] ([\w./]+)", output, re.M)
    if failed:
        return failed.group(1)
    running = re.findall(r"^\[ RUN      \] ([\w./]+)", output, re.M)
    return (running[-1] if running else f"{program} tests") + end


def own_tests(file):
    """The tests beside a source file, as the program and the filter that runs them; none where there are none."""
    source = pathlib.PurePath(file)
    test = ROOT / "tests" / source.parent / f"{source.stem}_test.cpp"
    if not test.exists():
        return []
    suites = sorted(set(re.findall(r"^TEST(?:_F|_P)?\((\w+),", test.read_text(), re.M)))
    return [(source.parts[0], ":".join(f"*{suite}.*" for suite in suites))]


@functools.cache
def require_good(program, tests):
    """Before the tests' verdict counts: they pass without any mistake."""
    if failure := first_failure(program, tests):
        raise SystemExit(f"without any mistake: {failure} fails")


def try_one(mutation):
    """What noticed the mistake; None if nothing did."""
    target = COPY / mutation.file
    original = target.read_text()
    programs = PROGRAMS[mutation.file.split("/")[0]]
    for program, tests in own_tests(mutation.file) + [(program, "*") for program in programs]:
        require_good(program, tests)
        target.write_text(mutated(mutation, original))
        try:
            if noticed := first_failure(program, tests):
                return noticed
        finally:
            target.write_text(original)
    return None


def code(text):
    return "<code>" + html.escape(text.strip()).replace("|", "&#124;") + "</code>"


def write_page(results, mutations):
    left_out = [mutation for mutation in mutations if not can_run(mutation)]
    survivors = [(mutation, found) for mutation, found in results if found is None]
    unexplained = [mutation for mutation, _ in survivors if not mutation.reason]
    lines = [f"{len(results)} of {len(mutations)} listed mistakes have been tried; tests notice "
             f"{len(results) - len(survivors)}. {len(survivors)} survive, {len(unexplained)} of them unexplained. "
             f"{len(left_out)} could not be tried: the CPU lacked the instructions.", "", "| file | instead of | there stood | noticed by |",
             "|---|---|---|---|"]
    for mutation, found in results:
        noticed = "**survives**: " + (mutation.reason or "not explained") if found is None else found
        lines.append(f"| {mutation.file} | {code(mutation.before)} | {code(mutation.after)} | {noticed} |")
    for mutation in left_out:
        lines.append(f"| {mutation.file} | {code(mutation.before)} | {code(mutation.after)} | not tried: no {mutation.needs} |")
    begin, end = "<!-- mutations begin -->\n", "<!-- mutations end -->"
    page = PAGE.read_text()
    head, rest = page.split(begin)
    PAGE.write_text(head + begin + "\n".join(lines) + "\n" + end + rest.split(end)[1])


def key(mutation):
    return "\n".join([mutation.file, str(mutation.occurrence), mutation.before, mutation.after])


def run(mutations, found):
    copy_sources()
    subprocess.run(["cmake", "-S", COPY, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O1",
                    "-DORVANEL_BUILD_PROGRAM=OFF", "-DORVANEL_BUILD_BENCHMARKS=OFF"], check=True,
                   stdout=subprocess.DEVNULL)
    for number, mutation in enumerate(mutations, 1):
        start = time.time()
        found[key(mutation)] = noticed = try_one(mutation)
        print(f"{number}/{len(mutations)} {mutation.file}: {mutation.after.strip()} -> {noticed or 'SURVIVES'} "
              f"({time.time() - start:.0f} s)", flush=True)
        RESULTS.write_text(json.dumps(found, indent=1))


def can_run(mutation):
    """Whether this CPU has the instructions of the code with the mistake."""
    return not mutation.needs or mutation.needs in CPU


def in_turn(mutations):
    """One of each file, then a second of each; last those that take longest: what many files include, and survivors."""
    seen = collections.Counter()

    def rank(mutation):
        seen[mutation.file] += 1
        return bool(mutation.reason), mutation.file.endswith(".h"), seen[mutation.file]

    return sorted(mutations, key=rank)


def first_of_each(number, mutations):
    """So many of each file; all of the exports."""
    seen, chosen = collections.Counter(), []
    for mutation in in_turn(mutations):
        seen[mutation.file] += 1
        if seen[mutation.file] <= number or mutation.file == EXPORTS:
            chosen.append(mutation)
    return chosen


def judge(results):
    for mutation, noticed in results:
        if noticed is not None and mutation.reason:
            raise SystemExit(f"noticed, though explained: {mutation.file}: {mutation.after.strip()}")
        if noticed is None and not mutation.reason:
            raise SystemExit(f"survives without a reason: {mutation.file}: {mutation.after.strip()}")


def main(command="", *words):
    mutations = read_list()
    check(mutations)
    if command == "check":
        return
    if command not in ("run", "go-on", "first", "table"):
        raise SystemExit(__doc__)
    found = json.loads(RESULTS.read_text()) if command != "run" and RESULTS.exists() else {}
    if command != "table":
        number = int(words[0]) if command == "first" else len(mutations)
        words = words[1:] if command == "first" else words
        chosen = [m for m in first_of_each(number, mutations) if not words or any(word in m.file for word in words)]
        run(in_turn([m for m in chosen if can_run(m) and not found.get(key(m))]), found)
    results = [(m, found[key(m)]) for m in mutations if can_run(m) and key(m) in found]
    write_page(results, mutations)
    judge(results)


if __name__ == "__main__":
    main(*sys.argv[1:])
