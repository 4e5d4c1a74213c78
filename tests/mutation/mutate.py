#!/usr/bin/env python3
"""Applies plausible one-line mistakes to a copy of the sources, one at a time, and sees that a test notices each.

Usage: mutate.py check          every mistake of mutations.txt can still be applied, and there are enough
       mutate.py run            try them all, and write the table into docs/testing.md
       mutate.py go-on [WORD...]  try those that the table lacks, or that survived, in files whose names contain a WORD
       mutate.py first N [WORD...]  the same, but no more than N of each file; of the exports all
       mutate.py sample N       try N at random, whether the table has them or not
       mutate.py table          write the table anew, without those that the list no longer has

The table of docs/testing.md is what is known of earlier runs; it says when each mistake was tried last.
"""
import collections
import datetime
import functools
import html
import pathlib
import random
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
BEGIN, END = "<!-- mutations begin -->\n", "<!-- mutations end -->"
LEAST_IN_A_FILE = 5
LEAST_IN_A_FILE_OF_THE_PROGRAM = 3
SECONDS = 300  # of one program of tests; a mistake may make a loop endless

ENGINE = ["models", "memory", "interface", "golden", "reference"]
PROGRAMS = {"interface": ["interface", "failing_memory", "reference"],
            "base": ["base", "optics", "golden", "reference"],
            "optics": ["optics", *ENGINE], "models": ENGINE, "include": ["models", "optics", *ENGINE[1:]],
            "models/physical": ["physical"],
            "targets": ["targets", "interface", "golden"],
            "eye": ["eye", "evaluation", "cases"], "metrics": ["metrics", "evaluation", "cases"],
            "evaluation": ["evaluation", "cases"], "files": ["files", "cases"], "drawing": ["drawing", "cases"],
            "cli": ["cli", "cases"]}
CASES = "cases"  # not a program of tests, but what tests/cli/cases runs from outside

# Tests that stand beside another file than the one that they test.
TESTS_OF = {"files/pictures/jpeg_decoder.cpp": "tests/files/pictures/picture_file_test.cpp",
            "files/pictures/tiff_decoder.cpp": "tests/files/pictures/picture_file_test.cpp",
            "files/pictures/stb_decoder.cpp": "tests/files/pictures/picture_file_test.cpp",
            "models/physical/kernels/chords.h": "tests/models/physical/kernels/variant_test.cpp",
            "models/physical/kernels/lines.h": "tests/models/physical/transform/plane_transform_test.cpp",
            "models/physical/kernels/planes.h": "tests/models/physical/transform/plane_transform_test.cpp"}

# Of the program, what computes, reads or keeps something.
PROGRAM_FILES = [f"{name}.cpp" for name in (
    "base/number_text", "eye/conventions/mode", "eye/conventions/column_name", "eye/conventions/convention",
    "eye/conventions/partial_convention", "eye/adjustments",
    "eye/refraction", "eye/pupil_rescale", "eye/rms", "eye/population/covariance", "eye/population/random",
    "metrics/metrics", "files/eyes/eye_file", "files/tables/csv", "files/tables/ndjson", "files/tables/eye_table",
    "files/tables/covariance_table", "files/pictures/exif", "files/pictures/tiff_decoder", "files/pictures/png_damage",
    "files/planes/hdf5_stack", "files/new_file", "cli/batch/join", "cli/batch/run", "cli/batch/run_record",
    "cli/batch/shard", "cli/batch/statistics", "cli/batch/whole_rows")]

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
    folders = ("optics", "optics/pipeline", "optics/kernels", "models/classic")
    sources = [path.relative_to(ROOT).as_posix() for folder in folders
               for path in sorted((ROOT / folder).glob("*.cpp"))]
    sources += [f"optics/kernels/{name}.h" for name in ("centred", "dft", "image", "lines", "modulation",
                                                         "pupil", "spectrum", "vectors", "wavefront")]
    least = {source: LEAST_IN_A_FILE for source in sources + [EXPORTS, "targets/bitmap.cpp"]}
    least |= {source: LEAST_IN_A_FILE_OF_THE_PROGRAM for source in PROGRAM_FILES}
    for source, number in least.items():
        if count[source] < number:
            raise SystemExit(f"tests/mutation/mutations.txt: {source} has {count[source]} mistakes; "
                             f"give it at least {number}")
    if len({key(mutation) for mutation in mutations}) != len(mutations):
        raise SystemExit("tests/mutation/mutations.txt: a mistake is listed twice")


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
    target = "orvanel_program" if program == CASES else f"orvanel_{program}_tests"
    done = subprocess.run(["cmake", "--build", BUILD, "--target", target], capture_output=True, text=True)
    return "" if done.returncode == 0 else done.stdout + done.stderr


def first_failure(program, tests="*"):
    """The test that failed first, or ended the program, or did not end; None if all passed."""
    if messages := build(program):
        return "the compiler: " + next((line for line in messages.splitlines() if "error: " in line), messages)[-80:]
    if program == CASES:
        return first_failing_case()
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


def first_failing_case():
    """The case of the program that failed first; None if all passed."""
    done = subprocess.run(["ctest", "--test-dir", BUILD, "-R", r"^program\.", "-E", "formats_read_back", "--stop-on-failure",
                           "--timeout", str(SECONDS)], capture_output=True, text=True)
    if done.returncode == 0:
        return None
    failed = re.search(r"Test\s+#\d+: (\S+) \.*\*\*\*", done.stdout)
    return failed.group(1) if failed else "cases of the program"


def part_of(file):
    """The part of the sources that PROGRAMS knows: a model of its own, or a layer."""
    return "models/physical" if file.startswith("models/physical/") else file.split("/")[0]


def own_tests(file):
    """The tests beside a source file, as the program and the filter that runs them; none where there are none."""
    source = pathlib.PurePath(file)
    test = ROOT / TESTS_OF.get(file, f"tests/{source.parent}/{source.stem}_test.cpp")
    if not test.exists():
        return []
    suites = sorted(set(re.findall(r"^TEST(?:_F|_P)?\((\w+),", test.read_text(), re.M)))
    return [(part_of(file).split("/")[-1], ":".join(f"*{suite}.*" for suite in suites))]


@functools.cache
def require_good(program, tests):
    """Before the tests' verdict counts: they pass without any mistake."""
    if failure := first_failure(program, tests):
        raise SystemExit(f"without any mistake: {failure} fails")


def try_one(mutation):
    """What noticed the mistake; None if nothing did."""
    target = COPY / mutation.file
    original = target.read_text()
    programs = PROGRAMS[part_of(mutation.file)]
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


def key(mutation):
    return mutation.file, code(mutation.before), code(mutation.after), mutation.occurrence


def read_page():
    """What the table has, as (date, what noticed it or None) by key."""
    found = {}
    for row in PAGE.read_text().split(BEGIN)[1].split(END)[0].splitlines():
        cells = re.fullmatch(r"\| (\S+) \| (<code>.*?</code>)(?: \(place (\d+)\))? \| (<code>.*?</code>) \| (.*?) \| (\S+) \|", row)
        if cells:
            file, before, occurrence, after, noticed, date = cells.groups()
            found[file, before, after, int(occurrence or 1)] = date, None if noticed.startswith("**survives**") else noticed
    return found


def write_page(found, mutations):
    results = [(mutation, *found[key(mutation)]) for mutation in mutations if key(mutation) in found]
    untried = [mutation for mutation in mutations if key(mutation) not in found]
    left_out = [mutation for mutation in untried if not can_run(mutation)]
    survivors = [(mutation, noticed) for mutation, _, noticed in results if noticed is None]
    unexplained = [mutation for mutation, _ in survivors if not mutation.reason]
    lines = [f"{len(results)} of {len(mutations)} listed mistakes have been tried; tests notice "
             f"{len(results) - len(survivors)}. {len(survivors)} survive, {len(unexplained)} of them unexplained. "
             f"{len(untried)} have not been tried" +
             (f", {len(left_out)} of them for want of a CPU with the instructions." if left_out else "."), "",
             "| file | instead of | there stood | noticed by | on |", "|---|---|---|---|---|"]
    for mutation, date, noticed in results:
        verdict = "**survives**: " + (mutation.reason or "not explained") if noticed is None else noticed
        place_of = f" (place {mutation.occurrence})" if mutation.occurrence != 1 else ""
        lines.append(f"| {mutation.file} | {code(mutation.before)}{place_of} | {code(mutation.after)} | {verdict} | {date} |")
    untried_in = collections.Counter(mutation.file for mutation in untried)
    if untried_in:
        lines += ["", "Not tried:", ""] + [f"- {count} of {file}" for file, count in untried_in.items()]
    head, rest = PAGE.read_text().split(BEGIN)
    PAGE.write_text(head + BEGIN + "\n".join(lines) + "\n" + END + rest.split(END)[1])


def run(chosen, found, mutations):
    copy_sources()
    subprocess.run(["cmake", "-S", COPY, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O1",
                    "-DORVANEL_BUILD_BENCHMARKS=OFF"], check=True,
                   stdout=subprocess.DEVNULL)
    for number, mutation in enumerate(chosen, 1):
        start = time.time()
        noticed = try_one(mutation)
        found[key(mutation)] = datetime.datetime.now(datetime.timezone.utc).date().isoformat(), noticed
        print(f"{number}/{len(chosen)} {mutation.file}: {mutation.after.strip()} -> {noticed or 'SURVIVES'} "
              f"({time.time() - start:.0f} s)", flush=True)
        write_page(found, mutations)


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


def judge(found, mutations):
    for mutation in mutations:
        _, noticed = found.get(key(mutation), (None, ""))
        if noticed and mutation.reason:
            raise SystemExit(f"noticed, though explained: {mutation.file}: {mutation.after.strip()}")
        if noticed is None and not mutation.reason:
            raise SystemExit(f"survives without a reason: {mutation.file}: {mutation.after.strip()}")


def chosen_by(command, words, mutations, found):
    if command == "table":
        return []
    if command == "sample":
        return random.sample(mutations, min(int(words[0]) if words else 40, len(mutations)))
    if command == "run":
        return mutations
    number = int(words[0]) if command == "first" else len(mutations)
    words = words[1:] if command == "first" else words
    return [mutation for mutation in first_of_each(number, mutations)
            if (not words or any(word in mutation.file for word in words))
            and found.get(key(mutation), (None, None))[1] is None]


def main(command="", *words):
    mutations = read_list()
    check(mutations)
    if command == "check":
        return
    if command not in ("run", "go-on", "first", "sample", "table"):
        raise SystemExit(__doc__)
    found = read_page()
    run(in_turn([mutation for mutation in chosen_by(command, words, mutations, found) if can_run(mutation)]), found, mutations)
    write_page(found, mutations)
    judge(found, mutations)


if __name__ == "__main__":
    main(*sys.argv[1:])
