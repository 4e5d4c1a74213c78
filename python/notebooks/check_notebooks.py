"""Run notebooks again, and compare their outputs with the stored ones.

Usage: check_notebooks.py check|renew NOTEBOOK...

'check' compares the outputs of each cell: their kinds, their texts, the numbers in the texts, and pictures. A number
with decimals may differ by one unit of its last digit, since NumPy rounds differently on other processors. 'renew'
stores the new outputs, without times, versions and other traces of the machine.
"""

from __future__ import annotations

import base64
import importlib
import io
import os
import pathlib
import re
import sys
import tempfile
import time
from decimal import Decimal
from typing import Any

import nbformat
import numpy as np
from nbconvert.preprocessors import CellExecutionError, ExecutePreprocessor
from PIL import Image

SECONDS = 300  # of one cell
LARGEST = 300_000  # bytes of a stored notebook
PICTURE_DIFFERENCE = 2.0  # mean over all samples, of 255
COLOUR = re.compile(r"\x1b\[[\d;]*m")  # of a terminal, in texts of exceptions
NUMBER = re.compile(r"[-+]?\d+(?:\.\d+)?(?:[eE][-+]?\d+)?")


def use_settings_of(folder: str) -> None:
    """Let kernels read settings and keep files in a folder, and not in those of the user."""
    for name in ("IPYTHONDIR", "JUPYTER_CONFIG_DIR", "JUPYTER_DATA_DIR", "JUPYTER_RUNTIME_DIR", "MPLCONFIGDIR"):
        os.environ[name] = folder
    # Stores the list of fonts, so that no kernel reports that it makes it.
    importlib.import_module("matplotlib.font_manager")


def executed(notebook: Any, folder: pathlib.Path) -> Any:
    """Return the notebook with outputs of its own run in a folder."""
    # The kernel listens on this machine only; it would warn that this is not encrypted.
    quiet = ["--IPKernelApp.log_level=ERROR"]
    runner = ExecutePreprocessor(
        timeout=SECONDS,
        kernel_name="python3",
        record_timing=False,
        coalesce_streams=True,
        extra_arguments=quiet,
    )
    result, _ = runner.preprocess(notebook, {"metadata": {"path": str(folder)}})
    result.metadata = {"kernelspec": notebook.metadata.kernelspec, "language_info": {"name": "python"}}
    for cell in result.cells:
        cell.metadata = {}
    return result


def tolerance(number: str) -> Decimal:
    """Return one unit of the last digit of a number's text; 0 for a whole number."""
    exponent = int(Decimal(number).as_tuple().exponent)
    return Decimal(1).scaleb(exponent) if exponent < 0 else Decimal(0)


def compare_texts(stored: str, found: str) -> list[str]:
    """Return the differences of two texts."""
    if NUMBER.sub("#", stored) != NUMBER.sub("#", found):
        return [f"the text was\n{stored}and is\n{found}"]
    pairs = zip(NUMBER.findall(stored), NUMBER.findall(found))
    return [f"{old} is now {new}" for old, new in pairs if abs(Decimal(old) - Decimal(new)) > tolerance(old)]


def compare_pictures(stored: str, found: str) -> list[str]:
    """Return the differences of two PNG pictures in base 64."""
    old, new = (
        np.asarray(Image.open(io.BytesIO(base64.b64decode(text))).convert("RGB"), float) for text in (stored, found)
    )
    if old.shape != new.shape:
        return [f"the picture has {new.shape[1]} x {new.shape[0]} pixels, and had {old.shape[1]} x {old.shape[0]}"]
    difference = np.abs(old - new).mean()
    return [f"the picture differs by {difference:.2f} of 255"] if difference > PICTURE_DIFFERENCE else []


def parts(cell: Any) -> list[tuple[str, str]]:
    """Return the outputs of a cell as pairs of a kind and a text."""
    result: list[tuple[str, str]] = []
    for output in cell.get("outputs", []):
        result += [(output.name, output.text)] if output.output_type == "stream" else sorted(output.data.items())
    return result


def compare(stored: Any, found: Any) -> list[str]:
    """Return the differences of the outputs of two notebooks."""
    differences: list[str] = []
    for number, (old_cell, new_cell) in enumerate(zip(stored.cells, found.cells), 1):
        old, new = parts(old_cell), parts(new_cell)
        here = []
        if [kind for kind, _ in old] != [kind for kind, _ in new]:
            here.append(f"the outputs were {[kind for kind, _ in old]} and are {[kind for kind, _ in new]}")
        else:
            for (kind, before), (_, after) in zip(old, new):
                here += compare_pictures(before, after) if kind == "image/png" else compare_texts(before, after)
        differences += [f"cell {number}: {line}" for line in here]
    return differences


def run(path: pathlib.Path, renew: bool) -> list[str]:
    """Run a notebook; return what is wrong with it."""
    stored = nbformat.read(path, as_version=4)
    try:
        found = executed(nbformat.from_dict(stored), path.parent)
    except CellExecutionError as error:
        return [COLOUR.sub("", str(error))]
    faults = [f"it prints a warning: {text}" for cell in found.cells for kind, text in parts(cell) if kind == "stderr"]
    if renew:
        nbformat.write(found, path)
    elif not any(parts(cell) for cell in stored.cells):
        faults.append("it has no stored outputs")
    else:
        faults += compare(stored, found)
    if path.stat().st_size > LARGEST:
        faults.append(f"the file has {path.stat().st_size} bytes, at most {LARGEST}")
    return faults


def main() -> int:
    """Check or renew each notebook; return the exit status."""
    if len(sys.argv) < 3 or sys.argv[1] not in ("check", "renew"):
        print(__doc__, file=sys.stderr)
        return 2
    status = 0
    with tempfile.TemporaryDirectory() as folder:
        use_settings_of(folder)
        for path in map(pathlib.Path, sys.argv[2:]):
            start = time.monotonic()
            faults = run(path, sys.argv[1] == "renew")
            for fault in faults:
                print(f"{path}: {fault}")
                status = 1
            print(f"{path}: {'wrong' if faults else 'right'}, {time.monotonic() - start:.0f} s", flush=True)
    if status:
        print("If new outputs are right, './dev notebooks renew' stores them; then view the plots.")
    return status


if __name__ == "__main__":
    sys.exit(main())
