"""Makes the wheel for Windows from that for Linux and from orvanel.dll: the Python files of both are the same.

Usage: python windows_wheel.py LINUX_WHEEL DLL NOTICES FOLDER
  NOTICES  the terms of what the DLL contains
"""

import base64
import hashlib
import pathlib
import re
import sys
import zipfile

TAG = "py3-none-win_amd64"


def files_of(linux: pathlib.Path, dll: pathlib.Path, notices: pathlib.Path) -> dict[str, bytes]:
    """Return the files of the new wheel but its RECORD."""
    files = {}
    with zipfile.ZipFile(linux) as wheel:
        for name in wheel.namelist():
            if name.endswith((".so", "/RECORD", "/")):
                continue
            files[name] = wheel.read(name)
            if name.endswith(".dist-info/WHEEL"):
                files[name] = re.sub(rb"(?m)^Tag: .*\n", b"", files[name]).rstrip() + f"\nTag: {TAG}\n".encode()
    files["orvanel/orvanel.dll"] = dll.read_bytes()
    files["orvanel/THIRD-PARTY-NOTICES"] = notices.read_bytes()
    return files


def main() -> None:
    """Write the wheel and print its name."""
    linux, dll, notices, folder = (pathlib.Path(word) for word in sys.argv[1:])
    files = files_of(linux, dll, notices)
    information = next(name for name in files if name.endswith(".dist-info/WHEEL")).split("/")[0]
    record = ""
    for name, data in files.items():
        digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
        record += f"{name},sha256={digest},{len(data)}\n"
    files[f"{information}/RECORD"] = (record + f"{information}/RECORD,,\n").encode()
    path = folder / f"{information.removesuffix('.dist-info')}-{TAG}.whl"
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as wheel:
        for name, data in files.items():
            # The same bytes each time: no date of today.
            wheel.writestr(zipfile.ZipInfo(name, (2020, 1, 1, 0, 0, 0)), data, zipfile.ZIP_DEFLATED)
    print(path)


main()
