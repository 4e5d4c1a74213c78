#!/usr/bin/env python3
"""Truth for tests/golden/truth_test.cpp: chosen samples of seven eyes, to 30 digits, by direct sums with mpmath.

Knows the formulas and nothing of the library. Writes the truth to standard output; README.md tells the format.
"""
from mpmath import mp, mpc, mpf

mp.dps = 45  # sums of 12,853 numbers of size 1 keep 40 of them; 30 are written

N, RADIUS = 256, 64  # samples: side of the planes, radius of the pupil
PUPIL_SAMPLES = 2 * RADIUS + 1
FOCAL_LENGTH = mpf(17)

# Constants and inputs are doubles, from here on exact. The wavelength is given by its bits, one unit in the last place
# below the double nearest to 0.00058756; the others are the doubles nearest to these decimals.
WAVELENGTH = mpf(float.fromhex("0x1.340cf7e020e77p-11"))
TWO_PI_OF_THE_PHASE = mpf(6.28318530717958)
PERFECT_PEAK = mpf(0.038463531294838)
DEGREES_PER_RADIAN = mpf(57.29577951308239)


def eye(diameter, terms):
    coefficients = [0.0] * 28
    for j, c in terms.items():
        coefficients[j] = c
    return diameter, coefficients


# Lopsided, so that nothing mirrored, turned or exchanged passes; millimetres. Terms 0 to 2 must not matter.
EYES = {
    "white": eye(3.0, {}),
    "coma-alone": eye(4.1, {7: -2.3e-4}),
    "small-pupil": eye(2.3, {0: 0.3, 3: 3.1e-5, 4: -8.7e-5, 5: 2.2e-5, 6: -1.9e-5, 8: 4.3e-5, 12: 1.7e-5}),
    "ordinary": eye(6.0, {3: 2.7e-4, 4: 4.9e-4, 5: -3.6e-4, 6: 3.2e-4, 7: -4.6e-4, 8: 8.6e-4, 9: -1.9e-4, 10: 8.6e-5,
                          11: 3.6e-5, 12: 5.4e-4, 13: 7.2e-5, 14: 2.5e-4}),
    "many-waves": eye(7.5, {3: -1.3e-3, 4: 3.7e-3, 5: 8.1e-4, 6: 4.4e-4, 7: 9.2e-4, 8: -5.3e-4, 12: -3.8e-4, 16: 1.2e-4}),
    "negative-pupil": eye(-5.2, {1: 0.2, 4: -6.1e-4, 5: 2.8e-4, 7: 3.3e-4, 9: -2.4e-4, 13: 1.1e-4}),
    "every-term": eye(3.0, {j: (1 if j * j % 7 > 2 else -1) * (13 + 5 * j % 31) * 4e-6 for j in range(28)}),
}

WAVEFRONT_SAMPLES = [(128, 128), (128, 192), (64, 128), (192, 128), (128, 64), (117, 153), (83, 92), (171, 97), (150, 180),
                     (99, 179), (128, 193)]
FIELD_SAMPLES = [(0, 0), (0, 1), (255, 0), (3, 254), (7, 5), (250, 9), (19, 238), (128, 128), (60, 201)]
PSF_SAMPLES = [(128, 128), (128, 129), (127, 128), (129, 127), (126, 131), (133, 122), (121, 125), (140, 141), (128, 90),
               (171, 128), (12, 240)]
MTF_SAMPLES = [(128, 128), (128, 129), (129, 128), (128, 144), (112, 128), (139, 117), (128, 192), (128, 0), (96, 160), (75, 110),
               (190, 150), (128, 250), (201, 201), (40, 60)]


def radial(n, m, rho2):
    """R(n, m) / rho^m as a polynomial in rho^2."""
    half = (n - m) // 2
    return sum((-1)**s * mp.factorial(n - s) / (mp.factorial(s) * mp.factorial((n + m) // 2 - s) * mp.factorial(half - s))
               * rho2**(half - s) for s in range(half + 1))


def wavefront(coefficients):
    """{(row, column): W} inside the pupil, rows and columns from the centre."""
    disc = [(y, x) for y in range(-RADIUS, RADIUS + 1) for x in range(-RADIUS, RADIUS + 1) if x * x + y * y <= RADIUS**2]
    terms = []
    for j, c in enumerate(coefficients):
        n = next(order for order in range(7) if j < (order + 1) * (order + 2) // 2)
        m = -n + 2 * (j - n * (n + 1) // 2)
        if n >= 2 and c != 0:
            terms.append((n, m, mpf(c)))
    radii = {x * x + y * y for y, x in disc}
    table = {(n, m, r2): radial(n, abs(m), mpf(r2) / RADIUS**2) for n, m, _ in terms for r2 in radii}
    result = {}
    for y, x in disc:
        # rho^m (cos m theta + i sin m theta) is the m-th power of X + iY, exact in integers.
        power, re, im = [], 1, 0
        for _ in range(7):
            power.append((re, im))
            re, im = re * x - im * y, re * y + im * x
        result[y, x] = sum((c * table[n, m, x * x + y * y] * power[abs(m)][0 if m >= 0 else 1] / mpf(RADIUS)**abs(m)
                            for n, m, c in terms), mpf(0))
    return result


ROOTS = [mp.expjpi(mpf(2 * k) / N) for k in range(N)]


def fft(line):
    """Sum over j of line[j] exp(2 pi i j k / len(line)); the length divides N."""
    n = len(line)
    if n == 1:
        return line
    even, odd = fft(line[::2]), fft(line[1::2])
    turned = [ROOTS[k * (N // n)] * odd[k] for k in range(n // 2)]
    return [e + t for e, t in zip(even, turned)] + [e - t for e, t in zip(even, turned)]


def field_plane(pupil):
    """The backward transform of the pupil, scaled by 1 / N^2; origins at (0, 0)."""
    rows = []
    for r in range(N):
        y = r - N // 2
        rows.append(fft([pupil.get((y, c - N // 2), mpc(0)) for c in range(N)]) if abs(y) <= RADIUS else [mpc(0)] * N)
    columns = [fft([rows[r][c] for r in range(N)]) for c in range(N)]
    return [[columns[c][r] / N**2 for c in range(N)] for r in range(N)]


def field_sample(pupil, p, q):
    """One sample of the same by its definition."""
    return sum(v * ROOTS[((y + N // 2) * p + (x + N // 2) * q) % N] for (y, x), v in pupil.items()) / N**2


def transfer(pupil, row, column):
    """The modulus of the pupil's autocorrelation, 1 at (N/2, N/2), repeated every N samples."""
    total = mpc(0)
    for v in (row - N // 2, row + N // 2):
        for u in (column - N // 2, column + N // 2):
            total += sum((value * mp.conj(pupil[y - v, x - u]) for (y, x), value in pupil.items() if (y - v, x - u) in pupil),
                         mpc(0))
    return abs(total) / len(pupil)


def line(*fields):
    print(*(mp.nstr(f, 30, strip_zeros=False) if isinstance(f, mpf) else f for f in fields), flush=True)


def main():
    for name, (diameter, coefficients) in EYES.items():
        line(name, "eye", repr(diameter), *(repr(c) for c in coefficients))
        w = wavefront(coefficients)
        assert len(w) == 12853
        for r, c in WAVEFRONT_SAMPLES:
            line(name, "wavefront", r, c, w.get((r - N // 2, c - N // 2), mpf(1000)))

        pupil = {at: mp.expj(value / WAVELENGTH * TWO_PI_OF_THE_PHASE) for at, value in w.items()}
        field = field_plane(pupil)
        for r, c in FIELD_SAMPLES:
            value = field_sample(pupil, r, c)
            assert abs(value - field[r][c]) < mpf(10)**-38
            line(name, "field", r, c, value.real, value.imag)

        intensity = {(r, c): abs(field[r][c])**2 for r in range(N) for c in range(N)}
        (_, second), (peak, (row, column)) = sorted((v, at) for at, v in intensity.items())[-2:]
        assert intensity[second] < peak * (1 - mpf(10)**-6), "the brightest sample is a matter of rounding"
        line(name, "peak", (row + N // 2) % N, (column + N // 2) % N)
        for r, c in PSF_SAMPLES:
            line(name, "psf", r, c, intensity[(r - N // 2 + row) % N, (c - N // 2 + column) % N] / peak)
        for r, c in MTF_SAMPLES:
            line(name, "mtf", r, c, transfer(pupil, r, c))

        half_width = (PUPIL_SAMPLES - 1) // 4 * FOCAL_LENGTH * WAVELENGTH / mpf(diameter)
        degrees_per_mm = mp.atan(1 / FOCAL_LENGTH) * DEGREES_PER_RADIAN
        line(name, "strehl", peak / PERFECT_PEAK)
        line(name, "half-width", half_width)
        line(name, "pitch", 2 * half_width / (N - 1))
        line(name, "frequency-step", 2 * (N / mpf(4) / half_width) / degrees_per_mm / (N - 1))


main()
