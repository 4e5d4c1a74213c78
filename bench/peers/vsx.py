#!/usr/bin/env python3
"""Measures VSX by NumPy and SciPy, as a careful user writes it: time and error, as a table.

The eye is `one-wave` of tests/reference/quality/truth.txt, and the origin is `best`. All that does not depend on the
coefficients is computed once: shares of the pupil's cells, modes, weights, and the sum without aberration. A new eye takes
three transforms: to the light, to its spectrum, and back to the light weighted by the contrast sensitivity.

Usage: vsx.py TRUTH UNIT_PROGRAM, the program that measures the unit of time when a line is sent to it.
"""
import sys

import peers  # first, since it limits the threads of NumPy
import numpy as np
import scipy.fft

DEGREE = 60 * peers.ARCMIN


class Truth:
    """What peers.OnLattice reads of an eye, and its VSX."""

    def __init__(self, path, name="one-wave"):
        self.modes = {}
        for f in map(str.split, open(path, encoding="utf-8")):
            if f[:2] == ["EYE", name]:
                self.diameter, self.wavelength = float(f[2]), float(f[3]) * 1e-6  # mm
            elif f[:2] == [name, "mode"]:
                self.modes[int(f[2])] = float(f[3])  # um
            elif f[:3] == [name, "best", "VSX"]:
                self.vsx = float(f[3])


def sensitivity(f):
    """Campbell and Green (1965), by cycles per degree."""
    powers = (1.8636, 0.12704, -1.1241e-2, 3.5818e-4, -5.2957e-6, 2.8876e-8)
    inside = np.minimum(f, 60)
    return np.where(f <= 60, 10 ** sum(a * inside**i for i, a in enumerate(powers)), 0)


def summit(image):
    """The largest value, between samples by a parabola along each axis."""
    r, c = np.unravel_index(image.argmax(), image.shape)
    top = image[r, c]
    for low, high in ((image[r - 1, c], image[(r + 1) % len(image), c]), (image[r, c - 1], image[r, (c + 1) % len(image)])):
        curvature = low - 2 * image[r, c] + high
        top -= (high - low)**2 / (8 * curvature) if curvature < 0 else 0
    return top


def vsx(truth, meter, across, side):
    """across: samples of the pupil; side: of the transforms, at least twice as many."""
    pupil = peers.OnLattice(truth, truth.diameter / across)
    count = len(pupil.line)
    step = pupil.dx / truth.wavelength * DEGREE  # cycles per degree, of a sample of the spectrum
    line = scipy.fft.fftfreq(side, 1 / side) * step
    weights = sensitivity(np.hypot(line[:, None], line[:side // 2 + 1]))

    def weighted(field):
        padded = np.zeros((side, side), complex)
        padded[:count, :count] = field
        light = scipy.fft.fft2(padded, overwrite_x=True, workers=1)
        spectrum = scipy.fft.rfft2(light.real**2 + light.imag**2, workers=1)
        spectrum *= weights
        return scipy.fft.irfft2(spectrum, (side, side), overwrite_x=True, workers=1)
    limit = weighted(pupil.share.astype(complex))[0, 0]
    meter.row("NumPy/SciPy FFT", "VSX", f"{across} of {side}", lambda: summit(weighted(pupil.field())) / limit,
              lambda value: abs(value - truth.vsx))


def main():
    truth, meter = Truth(sys.argv[1]), peers.Meter(sys.argv[2])
    print("program,result,samples across the pupil,ms,U,error")
    for across, side in ((64, 128), (128, 256), (256, 512), (256, 1024), (512, 1024)):
        vsx(truth, meter, across, side)


main()
