#!/usr/bin/env python3
"""Tests that the binary interface of liborvanel is the recorded one: exported names, declarations, constants, and the
sizes and offsets of structs.

Usage: c_abi.py C_COMPILER NM LIBRARY HEADER RECORD [renew]
"""

import difflib
import os
import re
import subprocess
import sys
import tempfile


def without_comments(text):
    return re.sub(r"/\*.*?\*/", " ", text, flags=re.S)


def declarations(header):
    found = re.findall(r"ORVANEL_C_API([^;{}]*?)ORVANEL_C_CALL\s+(orvanel_\w+)(\([^;{}]*\))\s*ORVANEL_C_NOEXCEPT", header)
    return {name: " ".join((result + " " + name + arguments).split()) for result, name, arguments in found}


def layout(compiler, path, header):
    """Sizes and offsets as the compiler lays the structs out, and the values of constants."""
    lines = []
    for name, body in re.findall(r"typedef struct (orvanel_\w+) \{(.*?)\}", header, flags=re.S):
        lines.append(f'printf("struct {name} %zu\\n", sizeof({name}));')
        for member in re.findall(r"(\w+)(?:\[\d+\])?;", body):
            lines.append(f'printf("  {member} %zu\\n", offsetof({name}, {member}));')
    for body in re.findall(r"enum \{(.*?)\}", header, flags=re.S):
        for constant in re.findall(r"(ORVANEL_\w+) =", body):
            lines.append(f'printf("constant {constant} %d\\n", {constant});')
    lines.append('printf("interface %d\\n", ORVANEL_INTERFACE);')
    program = '#include <stddef.h>\n#include <stdio.h>\n#include "{}"\nint main(void) {{\n{}\nreturn 0;\n}}\n'.format(path, "\n".join(lines))
    with tempfile.TemporaryDirectory() as folder:
        source, binary = os.path.join(folder, "abi.c"), os.path.join(folder, "abi")
        with open(source, "w", encoding="utf-8") as file:
            file.write(program)
        subprocess.run([compiler, "-std=c99", source, "-o", binary], check=True)
        return subprocess.run([binary], check=True, capture_output=True, text=True).stdout.splitlines()


def exported(nm, library):
    output = subprocess.run([nm, "-D", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    names = [line.split()[-1] for line in output.splitlines()]
    return sorted(name.split("@")[0] for name in names if not re.fullmatch(r"ORVANEL_\d+(@.*)?", name))


def main(compiler, nm, library, path, record, renew=""):
    with open(path, encoding="utf-8") as file:
        header = without_comments(file.read())
    declared = declarations(header)
    names = exported(nm, library)
    if names != sorted(declared):
        print("declared but not exported:", sorted(set(declared) - set(names)))
        print("exported but not declared:", sorted(set(names) - set(declared)))
        return 1
    text = [declared[name] for name in sorted(declared)] + layout(compiler, os.path.abspath(path), header)
    if renew == "renew":
        with open(record, "w", encoding="utf-8") as file:
            file.write("\n".join(text) + "\n")
        return 0
    with open(record, encoding="utf-8") as file:
        recorded = file.read().splitlines()
    difference = list(difflib.unified_diff(recorded, text, "recorded", "built", lineterm="", n=0))
    if difference:
        print("\n".join(difference))
        print("The binary interface differs. Add new names instead, or raise ORVANEL_INTERFACE and renew the record.")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
