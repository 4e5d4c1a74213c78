#!/usr/bin/env python3
"""Writes the chapter of docs/accuracy.md about the physical model from the results of ./dev bench peers.

Usage: chapter.py RESULTS PAGE. Replaces the chapter, which is the last one of the page, or adds it.
"""
import csv
import sys

TITLE = "\n## The physical model\n"


def power(text):
    """2.31e-05 as 2.3 × 10⁻⁵."""
    value = float(text)
    if value == 0:
        return "0"
    mantissa, exponent = f"{value:.1e}".split("e")
    return f"{mantissa} × 10{str(int(exponent)).translate(str.maketrans('-0123456789', '⁻⁰¹²³⁴⁵⁶⁷⁸⁹'))}"


def table(head, rows):
    return "\n".join(["| " + " | ".join(row) + " |" for row in [head, ["---"] * len(head), *rows]])


def cost_table(first, rows):
    return table([first, "U", "ms", "largest error"],
                 [[r["setting"], r["U"], f'{float(r["ms"]):.2f}', power(r["error"])] for r in rows])


def chapter(path):
    with open(path, encoding="utf-8") as file:
        machine = file.readline().lstrip("# ").strip()
        rows = list(csv.DictReader(file))

    def of(program, result):
        return [r for r in rows if r["program"] == program and r["result"] == result]

    def error(eye, result):
        return float(next(r["error"] for r in of("physical", result) if r["setting"] == eye))

    eyes = [r["setting"] for r in of("physical", "PSF")]
    results = ["PSF", "Strehl", "OTF overlap", "OTF lattice"]
    largest = {result: max(error(eye, result) for eye in eyes) for result in results}
    beyond = [eye for eye in eyes if error(eye, "OTF lattice") > 1e-4]
    excess = "" if not beyond else f"""
The lattice does not keep its bound of 10⁻⁴ for {", ".join(f"`{eye}`" for eye in beyond)}: the error is up to
{power(largest["OTF lattice"])}. These wavefronts are steepest at the rim, whose cells are then too coarse. For these eyes use the
overlap integral where 10⁻⁴ matters. `tests/models/physical/truth_test.cpp` names them.
"""
    peers = sorted((r for r in rows if r["result"] in ("PSF", "OTF", "MTF") and r["program"] not in
                    ("physical", "quadrature", "lattice", "classic")), key=lambda r: (r["result"] != "PSF", r["program"]))
    chosen = next(r for r in of("quadrature", "PSF") if r["setting"].startswith("chosen"))
    return f"""{TITLE}
The numbers above are those of the classic model. The physical model computes in true angles, without a staircase at the
rim of the pupil. Its error is stated in its headers and measured here. This command measures every number of this
chapter, and writes the chapter, the plot and [the results](../{path}):

    ./dev bench peers

The truth is [tests/reference/physical](../tests/reference/physical/README.md). A separate script computes it in long
double, by quadrature in polar coordinates. `./dev truth check` recomputes a part of it in 30 digits. The test
`truth_test.cpp` of `tests/models/physical` compares the model with all of it: `./dev test -R PhysicalTruth`.

### Sixteen eyes

The table has the largest difference from the truth. PSF and Strehl ratios are fractions of the diffraction-limited
peak. The stated errors are 10⁻⁹ for PSF and Strehl ratios, 10⁻⁷ for the overlap integral, and 10⁻⁴ for the lattice.

{table(["eye", "PSF", "Strehl, axis and peak", "OTF, overlap integral", "OTF, lattice"],
       [[eye, *(power(error(eye, result)) for result in results)] for eye in eyes]
       + [["**largest**", *(power(largest[result]) for result in results)]])}
{excess}
### Error and cost

The eye is `one-wave`: seven modes, 1 wave RMS, 6 mm, 550 nm. The PSF has 256 × 256 samples over ±10′; 256 of them are
compared. The OTF has steps of a 128th of the cut-off frequency; 64 frequencies are compared. The cost is that of a new
eye for the same pupil and grid, on one core: the processor time of the fastest of many calls. U is a warm complex
transform of 256 × 256 by FFTW, measured before and after each line. Machine: {machine}.
Where the load average is above 1, other work used the same caches and memory, and costs may be too high.

![Error of PSF and OTF over their cost](images/accuracy-physical.svg)

**Quadrature.** The PSF by chords and nodes. The model chose {chosen["setting"].removeprefix("chosen: ")} from the wavefront and the field.

{cost_table("chords and nodes", of("quadrature", "PSF"))}

**Lattice.** The OTF by samples across the pupil. Finer lattices result from finer steps of the frequencies, whose whole
plane is computed: the cost is that of a plane of 256, 1024 and 2048 frequencies a side.

{cost_table("samples across", of("lattice", "OTF"))}

**Overlap integral.** The 64 frequencies cost {next(r["U"] for r in of("physical", "OTF overlap") if r["setting"] == "one-wave")} U, with an error of {power(error("one-wave", "OTF overlap"))}.

**Classic model.** Its scale is corrected here, and its brightest sample is put back to its place. It is compared with the
physical model at its own wavelength, samples and frequencies. So only the error of its sampling is left. It computes
PSF and MTF on its own plane of 256 × 256, which is another one than that of the other tables.

{cost_table("samples across", of("classic", "PSF") + of("classic", "MTF")).replace("| 128 |", "| 128, PSF |", 1).replace("| 128 |", "| 128, MTF |", 1)}

**Peers.** These are Python packages, with the versions in
[bench/peers/requirements.txt](../bench/peers/requirements.txt), and programs that we wrote with NumPy, SciPy and FFTW.
All have a grey edge: a cell at the rim counts by the share of its area. Modes and grids are computed once. Their settings
are samples across the pupil for matrix transforms and packages, and the side of the transform for FFTs and MTFs. MTFs of
HCIPy and POPPY are transforms of their PSFs by SciPy. The grey edge changes the zero frequency of every peer's MTF; this
is corrected.

{table(["program", "result", "setting", "U", "ms", "largest error"],
       [[r["program"], r["result"], r["setting"], r["U"], f'{float(r["ms"]):.1f}', power(r["error"])] for r in peers])}
"""


def main():
    results, page = sys.argv[1:]
    with open(page, encoding="utf-8") as file:
        text = file.read()
    text = text.split(TITLE)[0].rstrip("\n") + "\n" + chapter(results)
    with open(page, "w", encoding="utf-8") as file:
        file.write(text)


main()
