#!/usr/bin/env python3
"""Measures PSF and OTF of Python packages and of NumPy with SciPy: time and error, as CSV.

The eye is `one-wave` of tests/reference/physical/truth.txt: PSF of 256 x 256 samples over +-10', OTF in steps of a 128th
of the cut-off. Modes, apertures and grids are computed once. The time is that of a new eye: from its coefficients to
the result. Each program is used by its documented interface, at several samplings of the pupil.

Usage: peers.py TRUTH UNIT_PROGRAM, the program that measures the unit of time when a line is sent to it.
"""
import os

for variable in ("OMP", "OPENBLAS", "MKL", "NUMEXPR"):
    os.environ[variable + "_NUM_THREADS"] = "1"

import logging
import math
import subprocess
import sys
import time
import warnings

import numpy as np
import scipy.fft

warnings.simplefilter("ignore")
logging.disable(logging.WARNING)
ARCMIN = math.pi / 10800


class Truth:
    def __init__(self, path, name="one-wave"):
        self.modes, self.psf, self.otf = {}, [], []
        for f in map(str.split, open(path, encoding="utf-8")):
            if f[0] != name:
                continue
            if f[1] == "eye":
                self.diameter = float(f[2])  # mm
            elif f[1] == "mode":
                self.modes[int(f[2])] = float(f[3])  # um
            elif f[1] == "light":
                self.wavelength = float(f[2]) * 1e-6  # mm
            elif f[1] == "grid":
                self.spacing, self.side = float(f[2]) * ARCMIN, int(f[3])
            elif f[1] == "frequencies":
                self.step, self.frequencies = float(f[2]) * 180 / math.pi, int(f[3])  # cycles per radian
            elif f[1] == "psf":
                self.psf.append((int(f[2]), int(f[3]), float(f[4])))
            elif f[1] == "otf":
                self.otf.append((int(f[2]), int(f[3]), complex(float(f[4]), float(f[5]))))

    def psf_error(self, psf):
        return max(abs(psf[r, c] - value) for r, c, value in self.psf)

    def otf_error(self, otf):
        return max(abs(otf[r, c] - value) for r, c, value in self.otf)

    def mtf_error(self, otf):
        return max(abs(abs(otf[r, c]) - abs(value)) for r, c, value in self.otf)


class Meter:
    """Processor times of calls, in ms and in units that are measured beside them."""

    def __init__(self, program):
        self.unit_program = subprocess.Popen([program, "--unit"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def unit(self):
        self.unit_program.stdin.write("\n")
        self.unit_program.stdin.flush()
        return float(self.unit_program.stdout.readline())

    def row(self, program, result, setting, call, error):
        unit = self.unit()
        value = call()
        least, start = math.inf, time.process_time()
        count = 0
        while count < 3 or (count < 200 and time.process_time() - start < 0.5):
            before = time.process_time()
            call()
            least = min(least, time.process_time() - before)
            count += 1
        unit = min(unit, self.unit())
        print(f"{program},{result},{setting},{1e3 * least:.3f},{1e3 * least / unit:.2f},{error(value):.2e}", flush=True)


def osa(j):
    n = math.ceil((math.sqrt(8 * j + 9) - 3) / 2)
    return n, 2 * j - n * (n + 2)


def mode(j, x, y):
    """An orthonormal mode over the unit disc."""
    n, m = osa(j)
    rho, size = np.hypot(x, y), abs(m)
    theta = np.arctan2(y, x)
    radial = sum((-1)**s * math.factorial(n - s) / (math.factorial(s) * math.factorial((n + size) // 2 - s)
                                                    * math.factorial((n - size) // 2 - s)) * rho**(n - 2 * s)
                 for s in range((n - size) // 2 + 1))
    return math.sqrt((n + 1) * (1 if m == 0 else 2)) * radial * (np.sin(size * theta) if m < 0 else np.cos(m * theta))


def lattice(truth, dx, count=None):
    """Places over the pupil in radii, y up in ascending rows, and the shares of cells, by 32 x 32 points in each."""
    count = count or math.ceil(truth.diameter / dx - 1e-9)
    line = (np.arange(count) - (count - 1) / 2) * dx / (truth.diameter / 2)
    x, y = np.meshgrid(line, line)
    width = dx / (truth.diameter / 2)
    share = (np.hypot(x, y) < 1).astype(float)
    rim = abs(np.hypot(x, y) - 1) < width
    part = ((np.arange(32) + 0.5) / 32 - 0.5) * width
    px, py = np.meshgrid(part, part)
    share[rim] = [np.mean((a + px)**2 + (b + py)**2 < 1) for a, b in zip(x[rim], y[rim])]
    return x, y, share


class OnLattice:
    """What NumPy's users keep for the next eye: shares and modes on a lattice."""

    def __init__(self, truth, dx):
        self.dx = dx
        x, y, self.share = lattice(truth, dx)
        self.line = x[0] * truth.diameter / 2
        self.index = list(truth.modes)
        self.basis = np.array([mode(j, x, y) for j in self.index])
        self.k = 2 * math.pi / truth.wavelength * 1e-3  # per um
        self.coefficients = np.array([truth.modes[j] for j in self.index])

    def field(self):
        phase = self.k * np.tensordot(self.coefficients, self.basis, 1)
        return self.share * np.exp(1j * phase)


# ---- NumPy and SciPy


def numpy_fft(truth, meter):
    """A zero-padded transform, whose step is that of the grid."""
    for side in (512, 1024, 2048, 4096):
        pupil = OnLattice(truth, truth.wavelength / truth.spacing / side)
        count = len(pupil.line)
        i = np.arange(count)
        tilt = np.exp(-1j * math.pi * (truth.side - 1) / side * (i[:, None] + i)) / pupil.share.sum()

        def psf():
            padded = np.zeros((side, side), complex)
            padded[:count, :count] = pupil.field() * tilt
            field = scipy.fft.ifft2(padded, norm="forward", overwrite_x=True, workers=1)[:truth.side, :truth.side]
            return field.real**2 + field.imag**2
        meter.row("NumPy/SciPy FFT", "PSF", side, psf, truth.psf_error)


def numpy_matrix(truth, meter):
    """Two products with matrices of exponentials, for the grid alone."""
    for across in (128, 256, 512, 1024):
        pupil = OnLattice(truth, truth.diameter / across)
        places = (np.arange(truth.side) - (truth.side - 1) / 2) * truth.spacing
        waves = np.exp(2j * math.pi / truth.wavelength * np.outer(places, pupil.line))
        unit = 1 / pupil.share.sum()

        def psf():
            field = waves @ pupil.field() @ waves.T
            return (field.real**2 + field.imag**2) * unit**2
        meter.row("NumPy matrices", "PSF", across, psf, truth.psf_error)


def numpy_otf(truth, meter):
    """The autocorrelation of the pupil, by FFT."""
    for finer in (1, 2, 4):
        pupil = OnLattice(truth, truth.wavelength * truth.step / finer)
        count, side = len(pupil.line), truth.frequencies * finer
        area = pupil.share.sum()
        half = truth.frequencies // 2
        pick = ((half - np.arange(truth.frequencies)) * finer) % side

        def otf():
            padded = np.zeros((side, side), complex)
            padded[:count, :count] = pupil.field()
            field = scipy.fft.fft2(padded, overwrite_x=True, workers=1)
            # Row and column of the result are shifts of the pupil: up and to the left.
            result = scipy.fft.fft2(field.real**2 + field.imag**2, workers=1)[np.ix_(pick, pick)] / (area * side * side)
            result[half, half] = 1
            return result
        meter.row("NumPy/SciPy FFT", "OTF", 256 * finer, otf, truth.otf_error)


# ---- Packages. They differ in the directions of rows and columns, so that the mirror image counts that fits best.


def mirrored(plane):
    return plane, plane[::-1], plane[:, ::-1], plane[::-1, ::-1]


def psf_row(meter, truth, program, setting, psf, peak):
    """peak: that of the pupil without aberration."""
    meter.row(program, "PSF", setting, psf, lambda p: min(truth.psf_error(q / peak) for q in mirrored(p)))


def mtf_row(meter, truth, program, setting, otf, finer):
    """otf: with zero frequency at n/2, in steps of the truth's over finer."""
    def error(plane):
        half, middle = truth.frequencies // 2, plane.shape[0] // 2
        places = (np.arange(truth.frequencies) - half) * finer + middle
        modulus = np.abs(plane[np.ix_(places, places)])
        # The mirror image about zero frequency.
        other = np.roll(modulus[::-1], 1, axis=0)
        return min(truth.mtf_error(modulus), truth.mtf_error(other))
    meter.row(program, "MTF", setting, otf, error)


def transfer(intensity):
    """By SciPy's FFT, where a package has no function for it."""
    otf = scipy.fft.fftshift(scipy.fft.fft2(scipy.fft.ifftshift(intensity), workers=1))
    return otf / abs(otf).max()


def rim_corrected(otf, share):
    """Cells at the rim count less than their area in the sum of squares, by which zero frequency is 1."""
    corrected = otf * ((share**2).sum() / share.sum())
    corrected[otf.shape[0] // 2, otf.shape[1] // 2] = 1
    return corrected


def prysm_peer(truth, meter):
    from prysm.coordinates import cart_to_polar, make_xy_grid
    from prysm.otf import otf_from_psf
    from prysm.polynomials import sum_of_2d_modes, zernike_nm_sequence
    from prysm.propagation import Wavefront
    radius, efl, wavelength_um = truth.diameter / 2, 1000.0, truth.wavelength * 1e3
    for across in (128, 256, 512, 1024):
        dx = truth.diameter / across
        x, y = make_xy_grid(across + 1, dx=dx)  # an odd number, so that the middle sample is the middle of the pupil
        r, t = cart_to_polar(x, y)
        aperture = lattice(truth, dx, across + 1)[2]  # its own circle has a staircase for a rim
        basis = np.array(list(zernike_nm_sequence([osa(j) for j in truth.modes], r / radius, t, norm=True)))
        weights = np.array(list(truth.modes.values())) * 1000  # nm

        def focused(opd, samples):
            pupil = Wavefront.from_amp_and_phase(aperture, opd, wavelength_um, dx)
            step = truth.spacing * efl * 1e3
            shift = -step / 2 if samples % 2 == 0 else 0  # even grids are half a sample off the middle
            return pupil.focus_fixed_sampling(efl, step, samples, shift=(shift, shift)).intensity.data

        def otf():
            pupil = Wavefront.from_amp_and_phase(aperture, sum_of_2d_modes(basis, weights), wavelength_um, dx)
            return rim_corrected(otf_from_psf(pupil.focus(efl, Q=2).intensity).data, aperture)
        psf_row(meter, truth, "prysm", across, lambda: focused(sum_of_2d_modes(basis, weights), truth.side),
                focused(None, 1).max())
        if across <= 512:
            mtf_row(meter, truth, "prysm", 2 * across, otf, across // 128)


def hcipy_peer(truth, meter):
    import hcipy
    diameter, wavelength = truth.diameter * 1e-3, truth.wavelength * 1e-3  # m
    for across in (128, 256, 512, 1024):
        grid = hcipy.make_pupil_grid(across, diameter)
        aperture = hcipy.evaluate_supersampled(hcipy.make_circular_aperture(diameter), grid, 16)
        basis = hcipy.ModeBasis([hcipy.zernike(*osa(j), D=diameter, grid=grid, radial_cutoff=False) for j in truth.modes])
        weights = np.array(list(truth.modes.values())) * 1e-6

        def to(samples):
            focal = hcipy.make_uniform_grid([samples, samples], [samples * truth.spacing] * 2)
            return hcipy.FraunhoferPropagator(grid, focal, focal_length=1)
        to_grid, to_axis = to(truth.side), to(1)

        def pupil(weights):
            phase = 2 * math.pi / wavelength * basis.linear_combination(weights)
            return hcipy.Wavefront(hcipy.Field(aperture * np.exp(1j * phase), grid), wavelength)
        transform = hcipy.FastFourierTransform(grid, q=2)

        def otf():
            field = transform.forward(pupil(weights).electric_field).shaped
            return rim_corrected(transfer(np.abs(field)**2), aperture)
        psf_row(meter, truth, "HCIPy", across, lambda: np.array(to_grid(pupil(weights)).intensity.shaped),
                np.max(to_axis(pupil(0 * weights)).intensity))
        if across <= 512:
            mtf_row(meter, truth, "HCIPy", 2 * across, otf, across // 128)


def poppy_peer(truth, meter):
    import astropy.units as u
    import poppy
    poppy.conf.use_multiprocessing = False
    diameter, wavelength = truth.diameter * 1e-3 * u.m, truth.wavelength * 1e-3 * u.m
    scale = truth.spacing / ARCMIN * 60
    for across in (128, 256, 512, 1024):
        x, y, share = lattice(truth, truth.diameter / across)
        basis = np.array([mode(j, x, y) for j in truth.modes])
        weights = np.array(list(truth.modes.values())) * 1e-6

        def focused(weights, arcsec, samples):
            system = poppy.OpticalSystem(npix=across, pupil_diameter=diameter, oversample=1)
            system.add_pupil(poppy.CircularAperture(radius=diameter / 2, gray_pixel=True))
            system.add_pupil(poppy.ArrayOpticalElement(opd=np.tensordot(weights, basis, 1), transmission=np.ones_like(x),
                                                       pixelscale=diameter / across / u.pixel))
            system.add_detector(pixelscale=arcsec, fov_pixels=samples, oversample=1)
            return system.calc_psf(wavelength)[0].data
        psf_row(meter, truth, "POPPY", across, lambda: focused(weights, scale, truth.side), focused(0 * weights, scale, 1).max())
        if across <= 512:
            # Twice as many samples as across the pupil, half of wavelength / diameter apart.
            fine = truth.wavelength / truth.diameter / 2 / ARCMIN * 60

            def otf():
                return rim_corrected(transfer(focused(weights, fine, 2 * across)), share)
            mtf_row(meter, truth, "POPPY", 2 * across, otf, across // 128)


def main():
    truth, meter = Truth(sys.argv[1]), Meter(sys.argv[2])
    failed = 0
    for peer in (numpy_fft, numpy_matrix, numpy_otf, prysm_peer, hcipy_peer, poppy_peer):
        try:
            peer(truth, meter)
        except Exception as error:  # one that does not run leaves the others
            print(f"peers.py: {peer.__name__}: {type(error).__name__}: {error}", file=sys.stderr)
            failed = 1
    sys.exit(failed)


if __name__ == "__main__":
    main()
