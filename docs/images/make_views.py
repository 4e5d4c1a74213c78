#!/usr/bin/python3
"""Draws views.svg from a run of the program: a letter F through a lopsided eye, each panel in its view.

Usage: make_views.py PROGRAM >views.svg
"""
import base64
import json
import pathlib
import subprocess
import sys
import tempfile

import numpy
from PIL import Image

EYE = {
    "name": "A lopsided right eye",
    "pupil_diameter_mm": 4,
    "eye": "OD",
    "convention": {"name": "osa"},
    "coefficients": [0, 0, 0, 0.3, 0.2, 0.15, 0, -0.2, 0.12],
}
CROP = 128  # central samples that are shown
SIZE = 256  # their side in the drawing


def letter_f():
    """White on black, 256 x 256: no mirror image of it is the letter itself."""
    picture = numpy.zeros((256, 256), "uint8")
    picture[98:158, 108:118] = picture[98:108, 108:148] = picture[122:132, 108:138] = 255
    return Image.fromarray(picture)


def panel(x, png, title, view, left, right):
    y, first = 44, 128 - CROP // 2
    data = base64.b64encode(png.read_bytes()).decode()
    return (
        f'<text x="{x}" y="28" font-size="16" font-weight="bold">{title}</text>'
        f'<svg x="{x}" y="{y}" width="{SIZE}" height="{SIZE}" viewBox="{first} {first} {CROP} {CROP}">'
        f'<image width="256" height="256" image-rendering="pixelated" href="data:image/png;base64,{data}"/></svg>'
        f'<rect x="{x}" y="{y}" width="{SIZE}" height="{SIZE}" fill="none" stroke="#1b2430"/>'
        f'<text x="{x + SIZE / 2}" y="{y + SIZE + 42}" text-anchor="middle">{view}</text>'
        f'<text x="{x}" y="{y + SIZE + 20}">{left}</text>'
        f'<text x="{x + SIZE}" y="{y + SIZE + 20}" text-anchor="end">{right}</text>'
    )


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as folder:
        place = pathlib.Path(folder)
        (place / "eye.json").write_text(json.dumps(EYE))
        letter_f().save(place / "letter_f.png")
        subprocess.run([program, "simulate", place / "eye.json", "-o", place / "seen", "--acuity", "1", "--picture",
                        place / "letter_f.png", "--format", "npy"], check=True, stdout=subprocess.DEVNULL)
        # The root of the PSF, so that its faint parts show.
        psf = numpy.sqrt(numpy.load(place / "seen" / "psf.npy"))
        Image.fromarray(numpy.rint(255 * psf).astype("uint8")).save(place / "psf.png")
        print(
            '<svg xmlns="http://www.w3.org/2000/svg" width="900" height="356" viewBox="0 0 900 356" '
            'font-family="DejaVu Sans, Helvetica, Arial, sans-serif" font-size="13" fill="#1b2430">'
            '<rect width="900" height="356" fill="#ffffff"/>'
        )
        print(panel(30, place / "psf.png", "PSF (its root)", "view: retina, as the examiner sees it", "temporal",
                    "nasal"))
        field = ("view: patient", "nasal field", "temporal field")
        print(panel(322, place / "seen" / "picture_original.png", "A letter F", *field))
        print(panel(614, place / "seen" / "picture_contrast_kept.png", "as the person sees it", *field))
        print("</svg>")


if __name__ == "__main__":
    main()
