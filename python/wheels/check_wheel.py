"""Checks a wheel: its tags, the list of its files with their hashes, and what its library needs and exports.

Usage: python check_wheel.py WHEEL LIBRARY PLATFORM EXPORTS_MAP
  LIBRARY   its name in the wheel: liborvanel.so or orvanel.dll
  PLATFORM  a regular expression that the platform's tag matches as a whole
"""

import base64
import hashlib
import pathlib
import re
import subprocess
import sys
import tempfile
import zipfile

# What every system has. Windows 10 has the C library ucrt, and older ones msvcrt.
NEEDED = {
    "liborvanel.so": r"lib(c|m|dl|pthread)\.so\.6|libpthread\.so\.0|ld-linux-x86-64\.so\.2",
    "orvanel.dll": r"KERNEL32\.dll|msvcrt\.dll|api-ms-win-crt-.*\.dll",
}


def require(condition: bool, what: str) -> None:
    """End the program unless the condition holds."""
    if not condition:
        sys.exit(f"{sys.argv[1]}: {what}")


def check_record(wheel: zipfile.ZipFile, information: str) -> None:
    """Compare the list of files with the files."""
    listed = set()
    for line in wheel.read(f"{information}/RECORD").decode().splitlines():
        name, digest, size = line.rsplit(",", 2)
        listed.add(name)
        if name.endswith("/RECORD"):
            continue
        data = wheel.read(name)
        expected = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
        require(digest == f"sha256={expected}" and int(size) == len(data), f"{name} is not as RECORD has it")
    files = {name for name in wheel.namelist() if not name.endswith("/")}
    require(listed == files, f"RECORD and files differ: {sorted(listed ^ files)}")


def output_of(*words: str) -> str:
    """Return what a command prints."""
    return subprocess.run(words, check=True, capture_output=True, text=True).stdout


def names_of_library(path: str) -> tuple[set[str], set[str]]:
    """Return the libraries that a library needs, and the names that it exports."""
    if path.endswith(".so"):
        needed = set(re.findall(r"\(NEEDED\).*\[(.*)\]", output_of("readelf", "-d", "--wide", path)))
        symbols = output_of("nm", "-D", "--defined-only", path)
        return needed, set(re.findall(r" T (\w+)", symbols))
    tables = output_of("x86_64-w64-mingw32-objdump", "-p", path)
    exports = tables[tables.index("[Ordinal/Name Pointer] Table") :].split("\n\n")[0]
    return set(re.findall(r"DLL Name: (\S+)", tables)), set(re.findall(r"\[ *\d+\] (\w+)", exports))


def main() -> None:
    """Check all of it."""
    path, library, platform, exports_map = sys.argv[1:]
    match = re.fullmatch(r"(orvanel-[0-9.]+)-py3-none-(.+)\.whl", pathlib.Path(path).name)
    require(match is not None and re.fullmatch(platform, match[2]) is not None, f"its platform is not {platform}")
    assert match is not None
    information = f"{match[1]}.dist-info"
    with zipfile.ZipFile(path) as wheel, tempfile.TemporaryDirectory() as folder:
        check_record(wheel, information)
        tags = re.findall(r"(?m)^Tag: (.*?)\r?$", wheel.read(f"{information}/WHEEL").decode())
        require(sorted(tags) == sorted(f"py3-none-{tag}" for tag in match[2].split(".")), f"its tags are {tags}")
        files = set(wheel.namelist())
        require({"orvanel/__init__.py", "orvanel/py.typed", f"orvanel/{library}"} <= files, "files are missing")
        require({"orvanel/LICENSE", "orvanel/THIRD-PARTY-NOTICES"} <= files, "the terms of its parts are missing")
        terms = wheel.read("orvanel/THIRD-PARTY-NOTICES").decode()
        for part in ("GCC's runtime libraries", "JSON for Modern C++"):
            require(f"  * {part}" in terms, f"THIRD-PARTY-NOTICES does not name {part}")
        mingw = "the MinGW-w64 runtime" in terms
        require(mingw == library.endswith(".dll"), "THIRD-PARTY-NOTICES is that of another platform")
        libraries = {name for name in files if re.search(r"\.(so|dll|dylib)(\.|$)", name)}
        require(libraries == {f"orvanel/{library}"}, f"its libraries are {sorted(libraries)}")
        needed, exported = names_of_library(wheel.extract(f"orvanel/{library}", folder))
    others = {name for name in needed if not re.fullmatch(NEEDED[library], name)}
    require(not others, f"{library} needs {sorted(others)}")
    declared = set(re.findall(r"(orvanel_\w+);", pathlib.Path(exports_map).read_text()))
    require(exported == declared, f"{library} exports other names: {sorted(exported ^ declared)}")
    print(f"{path}: {len(files)} files, {len(exported)} functions")


main()
