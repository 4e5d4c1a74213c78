#!/usr/bin/env python3
"""Checks the English of documents and comments: no sentence above a limit, no word from the list of swaps.

Usage: prose.py SOURCE_FOLDER

prose_scope.txt lists the files and folders that are checked, prose_swaps.txt the words. Both are beside this script.
Code, tables, headings and quotations are not checked. A finding is printed as FILE:LINE: WHAT: SENTENCE.
"""
import pathlib
import re
import sys

WORDS_ALLOWED = 30  # in one sentence; most should have fewer than 20
LINE_END = "\x01"

SLASHED = {".h", ".c", ".cpp"}
HASHED = {".sh", ".py", ".cmake", ".in"}
HASHED_NAMES = {"CMakeLists.txt", "dev", "run"}


def listed(name):
    """The lines of a list beside this script, without comments."""
    lines = (pathlib.Path(__file__).parent / name).read_text("utf-8").splitlines()
    return [line.strip() for line in lines if line.strip() and not line.startswith("#")]


def swaps():
    """Pairs of a pattern and the words to write instead."""
    pairs = [line.split(" -> ") for line in listed("prose_swaps.txt")]
    return [(re.compile(rf"(?<![\w-])(?:{word})(?![\w-])", re.IGNORECASE), plain) for word, plain in pairs]


class Blocks:
    """Collects lines of prose into blocks: paragraphs, list items and entries of parameters."""

    def __init__(self):
        self.blocks = []  # each a list of pairs: number of the line, text
        self.end()

    def end(self):
        self.indent = None
        self.marked = False

    def add(self, number, line):
        text = line.strip()
        indent = len(line) - len(line.lstrip())
        if not text:
            self.end()
            return
        if self.indent is None and indent >= 4:
            return  # code
        mark = re.match(r"(?:[-*]|\d+\.) +|\S+(?:, \S+)* {2,}", text)
        if self.indent is not None and not mark and (indent > self.indent if self.marked else indent == self.indent):
            self.blocks[-1].append((number, text))
            return
        self.blocks.append([(number, text[mark.end():] if mark else text)])
        self.indent = indent
        self.marked = bool(mark)

    def add_alone(self, number, text):
        self.end()
        self.add(number, text.strip())
        self.end()


def of_markdown(lines):
    """The paragraphs and list items of a document."""
    blocks = Blocks()
    fenced = False
    for number, line in enumerate(lines, 1):
        fence = line.lstrip().startswith("```")
        fenced = fenced != fence
        if fence or fenced or line.lstrip().startswith(("|", "#", "<!--", "![")):
            blocks.end()
        else:
            blocks.add(number, line)
    return blocks.blocks


def of_slashes(lines):
    """The comments of C and C++."""
    blocks = Blocks()
    inside = False  # a comment between /* and */
    for number, line in enumerate(lines, 1):
        bare = re.sub(r'"(?:\\.|[^"\\])*"', lambda m: "_" * len(m.group()), line)
        start = re.search(r"//|/\*", bare)
        if inside:
            text, closed, _ = line.partition("*/")
            blocks.add(number, re.sub(r"^ *\* ?", "", text))
            inside = not closed
        elif not start:
            blocks.end()
        elif re.match(r"\s*(NOLINT|clang-format)", line[start.end():]):
            blocks.end()
        elif start.group() == "/*":
            text, closed, _ = line[start.end():].partition("*/")
            blocks.end()
            blocks.add(number, text.strip())
            inside = not closed
        elif bare[:start.start()].strip():
            blocks.add_alone(number, line[start.end():])
        else:
            blocks.add(number, line[start.end():].removeprefix(" "))
    return blocks.blocks


def of_hashes(lines):
    """The comments of scripts, and the help that a script prints from a here document named TEXT."""
    blocks = Blocks()
    help_text = False
    for number, line in enumerate(lines, 1):
        if help_text or line.rstrip().endswith("<<'TEXT'"):
            if line.strip() == "TEXT" or not help_text:
                help_text = not help_text
                blocks.end()
            else:
                blocks.add(number, line)
            continue
        comment = re.match(r"((?:[^'\"#]|'[^']*'|\"(?:\\.|[^\"\\])*\"|(?<=\S)#)*?)(?:^|(?<=\s))#(?: (.*)|)$", line)
        if not comment or (comment.group(2) or "").startswith("shellcheck"):
            blocks.end()
            continue
        if comment.group(1).strip():
            blocks.add_alone(number, comment.group(2) or "")
        else:
            blocks.add(number, comment.group(2) or "")
    return blocks.blocks


def blocks_of(path):
    lines = path.read_text("utf-8").splitlines()
    if path.suffix == ".md":
        return of_markdown(lines)
    if path.suffix in SLASHED:
        return of_slashes(lines)
    return of_hashes(lines)


def plain(text):
    """Prose with one word in place of each piece of code, quotation and link target."""
    text = re.sub(r"`[^`]+`", "Code", text)
    text = re.sub(r"!?\[([^]]*)\]\([^)]*\)", r"\1", text)
    text = re.sub(r'"[^"]*"', "Quote", text)
    return re.sub(r"[*]{1,2}([^*\s](?:[^*]*[^*\s])?)[*]{1,2}", r"\1", text)


def sentences(block):
    """Pairs of the line where a sentence begins and its text."""
    # A mark keeps the place of each line's end, while code is replaced and sentences are parted.
    text = plain("".join(f"{line} {LINE_END}" for _, line in block))
    row = 0
    for piece in re.split(rf"(?<=[.!?])[)\"*]*\s(?=[\s{LINE_END}]*[^\sa-z{LINE_END}])", text):
        sentence = piece.lstrip(f" {LINE_END}")
        row += piece[:len(piece) - len(sentence)].count(LINE_END)
        yield block[min(row, len(block) - 1)][0], " ".join(sentence.replace(LINE_END, " ").split())
        row += sentence.count(LINE_END)


def words(sentence):
    """How many words: signs and parts of formulas do not count."""
    bare = (word.strip("\"'(),.;:!?") for word in sentence.split())
    return sum(1 for word in bare
               if re.fullmatch(r"[^\W_][\w'’.,/%-]*", word) and (len(word) > 1 or word in "aAI" or word.isdigit()))


def files(root):
    for entry in listed("prose_scope.txt"):
        found = sorted(root.glob(entry))
        if not found:
            sys.exit(f"prose_scope.txt: nothing is named {entry}")
        for path in found:
            below = sorted(path.rglob("*")) if path.is_dir() else [path]
            for file in below:
                known = file.suffix in SLASHED | HASHED | {".md"} or file.name in HASHED_NAMES
                if file.is_file() and known:
                    yield file


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    root = pathlib.Path(sys.argv[1])
    pairs = swaps()
    checked = findings = 0
    for path in files(root):
        name = path.relative_to(root)
        for block in blocks_of(path):
            for number, sentence in sentences(block):
                checked += 1
                length = words(sentence)
                faults = [f"'{m.group()}', write '{instead}'" for word, instead in pairs if (m := word.search(sentence))]
                if length > WORDS_ALLOWED:
                    faults.append(f"{length} words, at most {WORDS_ALLOWED}")
                for fault in faults:
                    print(f"{name}:{number}: {fault}: {sentence}")
                findings += len(faults)
    if checked == 0:
        sys.exit("no sentence found")
    sys.exit(1 if findings else 0)


if __name__ == "__main__":
    main()
