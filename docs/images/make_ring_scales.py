#!/usr/bin/env python3
"""Draws ring_scales.svg from a run of the program: which ring is the one of acuity 1.0.

Usage: make_ring_scales.py PROGRAM EYE >ring_scales.svg
"""
import base64
import json
import pathlib
import subprocess
import sys
import tempfile

CROP = 64  # central samples that are shown
SIZE = 224  # their side in the drawing


def panel(x, y, png, title):
    data = base64.b64encode(png.read_bytes()).decode()
    first = 128 - CROP // 2
    return (
        f'<text x="{x}" y="{y - 8}">{title}</text>'
        f'<svg x="{x}" y="{y}" width="{SIZE}" height="{SIZE}" viewBox="{first} {first} {CROP} {CROP}">'
        f'<image width="256" height="256" image-rendering="pixelated" href="data:image/png;base64,{data}"/></svg>'
        f'<rect x="{x}" y="{y}" width="{SIZE}" height="{SIZE}" fill="none" stroke="#1b2430"/>'
    )


def ruler(x, y, samples, pitch, scale, colour):
    width = samples * SIZE / CROP
    left = x + SIZE / 2 - width / 2
    return (
        f'<g stroke="{colour}" stroke-width="2"><line x1="{left}" y1="{y}" x2="{left + width}" y2="{y}"/>'
        f'<line x1="{left}" y1="{y - 5}" x2="{left}" y2="{y + 5}"/>'
        f'<line x1="{left + width}" y1="{y - 5}" x2="{left + width}" y2="{y + 5}"/></g>'
        f'<text x="{x + SIZE / 2}" y="{y + 20}" text-anchor="middle" fill="{colour}">'
        f"{samples * pitch:.3g} arc minutes, acuity {5 / (samples * pitch):.2g} ({scale})</text>"
    )


def main():
    program, eye = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        out = pathlib.Path(folder) / "rings"
        subprocess.run([program, "simulate", eye, "-o", out, "--acuity", "1,2"], check=True, stdout=subprocess.DEVNULL)
        summary = json.loads((out / "summary.json").read_text())
        results = summary["results"]
        print(
            '<svg xmlns="http://www.w3.org/2000/svg" width="1040" height="384" viewBox="0 0 1040 384" '
            'font-family="DejaVu Sans, Helvetica, Arial, sans-serif" font-size="13" fill="#1b2430">'
            '<rect width="1040" height="384" fill="#ffffff"/>'
        )
        headings = ["What --acuity 1 draws", "What --acuity 2 draws"]
        for column, (ring, heading) in enumerate(zip(summary["rings"], headings)):
            x, y = 30 + 510 * column, 64
            samples = ring["diameter_samples"]
            print(f'<text x="{x}" y="28" font-size="16" font-weight="bold">{heading}: {samples} samples</text>')
            print(panel(x, y, out / ring["original_file"], "as drawn"))
            print(panel(x + SIZE + 20, y, out / ring["seen_file"], "as seen, perfect 3 mm pupil"))
            middle = x + SIZE / 2 + 10
            print(ruler(middle, y + SIZE + 20, samples, results["psf_sample_arcmin_library_scale"], "library scale",
                        "#4a7abb"))
            print(ruler(middle, y + SIZE + 58, samples, results["psf_sample_arcmin_optical_scale"],
                        "optical scale of 3 mm", "#b4232a"))
        print("</svg>")


if __name__ == "__main__":
    main()
