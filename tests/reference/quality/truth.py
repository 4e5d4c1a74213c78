#!/usr/bin/env python3
"""Truth for the metrics of image quality, by other methods than the library's.

Knows the definitions and nothing of the library. The OTF is an overlap integral over the common lens of two pupils, by
Gauss-Legendre quadrature; volumes are integrals in polar coordinates of frequency. The library sums samples of the light
on a lattice. Writes lines to standard output; README.md describes them.
"""
import sys
from math import factorial

import numpy as np
from numpy.polynomial.legendre import leggauss

ARCMIN = 10.8 / np.pi  # a milliradian
DIRECTIONS, RADII, NODES = 60, 56, 48

# Eye: diameter in mm, wavelength in nm, and modes in um by OSA/ANSI index. Lopsided, so that nothing mirrored or
# exchanged passes.
EYES = {
    "perfect": (6.0, 550, {}),
    "quarter-dioptre": (4.0, 550, {4: 0.25 * 4 / (4 * 3**0.5)}),
    "astigmatic": (5.0, 555, {3: 0.11, 4: -0.05, 5: 0.17}),
    "young": (6.0, 550, {3: 0.04, 4: 0.06, 5: -0.03, 6: 0.05, 7: -0.08, 8: 0.04, 9: -0.03, 12: 0.07, 14: 0.02}),
    "half-a-wave": (6.0, 550, {2: 0.3, 3: 0.09, 4: 0.16, 5: -0.08, 6: 0.1, 7: 0.11, 8: -0.06, 9: 0.05, 12: 0.08}),
    "one-wave": (6.0, 550, {3: 0.18, 4: 0.35, 5: -0.16, 6: 0.2, 7: 0.2, 8: -0.12, 9: 0.1, 12: 0.17, 17: 0.03}),
    "small-pupil": (3.0, 600, {3: 0.05, 4: 0.1, 5: -0.03, 7: 0.05, 8: 0.02, 12: -0.03}),
    "large-pupil": (7.5, 520, {3: -0.05, 4: 0.12, 5: 0.08, 7: 0.15, 8: -0.11, 11: 0.04, 12: 0.16, 24: 0.02}),
}


def sensitivity(f):
    """Contrast sensitivity by c/deg, from 0 to 60."""
    return 10.0**(2.8876e-8 * f**5 - 5.2957e-6 * f**4 + 3.5818e-4 * f**3 - 1.1241e-2 * f**2 + 0.12704 * f + 1.8636)


def order_of(j):
    n = 0
    while (n + 1) * (n + 2) // 2 <= j:
        n += 1
    return n, 2 * j - n * (n + 2)


def wavefront(modes, x, y):
    """In um, at places in radii."""
    r, t = np.hypot(x, y), np.arctan2(y, x)
    total = np.zeros_like(r)
    for j, c in modes.items():
        n, m = order_of(j)
        p = abs(m)
        radial = sum((-1)**s * factorial(n - s) /
                     (factorial(s) * factorial((n + p) // 2 - s) * factorial((n - p) // 2 - s)) * r**(n - 2 * s)
                     for s in range((n - p) // 2 + 1))
        angular = np.cos(p * t) if m >= 0 else np.sin(p * t)
        total += c * np.sqrt((1 if m == 0 else 2) * (n + 1.0)) * radial * angular
    return total


class Eye:
    def __init__(self, diameter, wavelength, modes):
        self.modes, self.diameter, self.k = modes, diameter, 2 * np.pi / (wavelength * 1e-3)
        self.unit = wavelength * 1e-3 / diameter * ARCMIN  # wavelength / diameter in arcmin
        self.pupil = self.nodes()

    def otf(self, v, t):
        """At v cut-offs in the direction t; in the sense of the slopes: light of slope s has exp(-2 pi i f s)."""
        nodes, weights = leggauss(NODES)
        half = np.arccos(min(v, 1.0))
        a = half * nodes[:, None]  # across the shift, by the arc
        length = np.cos(a) - v
        u, w = length * nodes[None, :], np.sin(a) + 0.0 * nodes[None, :]
        c, s = np.cos(t), np.sin(t)

        def phase(shift):
            return self.k * wavefront(self.modes, (u + shift) * c - w * s, (u + shift) * s + w * c)

        field = np.exp(1j * (phase(-v) - phase(v)))
        return np.sum(weights[:, None] * weights[None, :] * half * np.cos(a) * length * field) / np.pi

    def polar(self, end):
        """Frequencies in c/arcmin up to an end, weights of area, and the OTF there, over half a turn (the rest are
        conjugates)."""
        nodes, weights = leggauss(RADII)
        f = end * (nodes + 1) / 2
        t = np.pi * ((np.arange(DIRECTIONS) + 0.5) / DIRECTIONS - 0.5)
        otf = np.array([[self.otf(g * self.unit, a) for a in t] for g in f])
        area = np.repeat((weights * end / 2 * f * 2 * np.pi / DIRECTIONS)[:, None], DIRECTIONS, 1)
        return f[:, None] * np.cos(t), f[:, None] * np.sin(t), area, otf, f

    def nodes(self):
        """Places in the pupil, and the weighted field there."""
        nodes, weights = leggauss(100)
        r, angles = (nodes + 1) / 2, 2 * np.pi * np.arange(200) / 200
        x, y = np.outer(r, np.cos(angles)), np.outer(r, np.sin(angles))
        p = np.exp(1j * self.k * wavefront(self.modes, x, y)) * (weights / 2 * r)[:, None] * 2 / 200
        return x.ravel(), y.ravel(), p.ravel()

    def intensity(self, x, y):
        """|U|^2 in a direction in arcmin."""
        px, py, p = self.pupil
        return abs(np.sum(p * np.exp(-1j * np.pi / self.unit * (px * x + py * y))))**2

    def separable(self, xs, ys):
        """|U|^2 on a grid of directions in arcmin."""
        nodes, weights = leggauss(160)
        chord = np.sqrt(1 - nodes**2)
        total = 0
        for v, w, h in zip(nodes, weights, chord):
            x = h * nodes
            p = np.exp(1j * self.k * wavefront(self.modes, x, np.full_like(x, v))) * weights * h * w / np.pi
            columns = np.exp(-1j * np.pi * np.outer(xs / self.unit, x)) @ p
            total = total + np.outer(np.exp(-1j * np.pi * ys / self.unit * v), columns)
        return np.abs(total)**2


def bessel1(x):
    t = np.pi * (np.arange(400) + 0.5) / 400
    return np.mean(np.cos(t[:, None] - np.outer(np.sin(t), x)), 0)


def newton(of, x, y, step, count=40):
    """The maximum of a smooth function near a place, by parabolas through nine samples."""
    for _ in range(count):
        g = [[of(x + i * step, y + j * step) for j in (-1, 0, 1)] for i in (-1, 0, 1)]
        gx, gy = (g[2][1] - g[0][1]) / 2, (g[1][2] - g[1][0]) / 2
        xx, yy = g[2][1] - 2 * g[1][1] + g[0][1], g[1][2] - 2 * g[1][1] + g[1][0]
        xy = (g[2][2] - g[2][0] - g[0][2] + g[0][0]) / 4
        d = xx * yy - xy * xy
        dx, dy = (xy * gy - yy * gx) / d, (xy * gx - xx * gy) / d
        size = max(1.0, np.hypot(dx, dy) / 2)
        x, y = x + dx / size * step, y + dy / size * step
        step = max(step * 0.7, 1e-3)
    return x, y, of(x, y)


def perfect_otf(v):
    v = np.minimum(v, 1)
    return 2 / np.pi * (np.arccos(v) - v * np.sqrt(1 - v * v))


def half_area(values, cell):
    return np.count_nonzero(values > values.max() / 2) * cell


def metrics(name):
    eye = Eye(*EYES[name])
    out = {}
    cutoff = 1 / eye.unit
    end = min(1.0, cutoff)
    low, all_ = eye.polar(end), eye.polar(cutoff)
    ideal_low, ideal_all = perfect_otf(low[4] * eye.unit)[:, None], perfect_otf(all_[4] * eye.unit)[:, None]
    weight = low[2] * sensitivity(60 * low[4])[:, None]
    reference = np.sum(weight * ideal_low)

    def neural(x, y):
        return np.sum(weight * np.real(low[3] * np.exp(2j * np.pi * (low[0] * x + low[1] * y)))) / reference

    # The best place, from a grid.
    places = np.arange(-14, 14.01, 0.4)
    grid = [[neural(x, y) for y in places] for x in places]
    i, j = np.unravel_index(np.argmax(grid), np.shape(grid))
    x, y, best = newton(neural, places[i], places[j], 0.2)
    out["VSX"] = out["VSOTF"] = best
    out["VSX.axis"] = neural(0, 0)
    out["place"] = (-x, y)  # as the patient sees it
    out["VSMTF"] = np.sum(weight * np.abs(low[3])) / reference
    out["VNOTF"] = best * reference / np.sum(weight * np.abs(low[3]))
    for origin, (px, py) in (("", (x, y)), (".axis", (0, 0))):
        turned = np.real(all_[3] * np.exp(2j * np.pi * (all_[0] * px + all_[1] * py)))
        gauss = np.exp(-2 * np.pi**2 * all_[4]**2)[:, None]
        out["NS" + origin] = np.sum(all_[2] * gauss * turned) / np.sum(all_[2] * gauss * ideal_all)
        out["SROTF" + origin] = np.sum(all_[2] * turned) / np.sum(all_[2] * ideal_all)
        out["VOTF" + origin] = np.sum(all_[2] * turned) / np.sum(all_[2] * np.abs(all_[3]))

        def within(r):
            kernel = r / all_[4] * bessel1(2 * np.pi * r * all_[4])
            return np.sum(all_[2] * kernel[:, None] * turned)

        out["LIB" + origin] = within(1.219670 * eye.unit)
        radii = np.arange(0.05, 8, 0.05) * 1.0
        r = next((r for r in radii if within(r) >= 0.5))
        a, b = r - 0.05, r
        for _ in range(30):
            a, b = ((a + b) / 2, b) if within((a + b) / 2) < 0.5 else (a, (a + b) / 2)
        out["D50" + origin] = a + b
    out["STD"] = np.sqrt(np.sum(all_[2] * np.abs(all_[3])**2) / np.sum(all_[2] * ideal_all**2))
    out["SRMTF"] = np.sum(all_[2] * np.abs(all_[3])) / np.sum(all_[2] * ideal_all)
    # Means over angle: between Gauss nodes, from polynomials of 24 neighbouring nodes.
    f = np.linspace(0, end, 2401)
    threshold = 1 / sensitivity(60 * f)
    turned = low[3] * np.exp(2j * np.pi * (low[0] * x + low[1] * y))

    def interpolated(values):
        nodes, table = np.concatenate([[0], low[4]]), np.concatenate([[1], values])
        result = []
        for g in f:
            first = int(np.clip(np.searchsorted(nodes, g) - 6, 0, len(nodes) - 12))
            near, here = nodes[first:first + 12], table[first:first + 12]
            total = 0
            for a in range(12):
                others = np.delete(near, a)
                total += here[a] * np.prod((g - others) / (near[a] - others))
            result.append(total)
        return np.array(result)

    for kind, table in (("MTF", np.mean(np.abs(low[3]), 1)), ("OTF", np.mean(np.real(turned), 1))):
        above, ideal = interpolated(table) - threshold, perfect_otf(f * eye.unit) - threshold

        def cut(excess):
            positive = excess > 0
            if kind == "MTF":
                last = np.max(np.nonzero(positive))
            else:
                last = np.argmin(positive) - 1 if not positive.all() else len(f) - 1
            if last == len(f) - 1:
                return f[-1], np.trapz(excess, f)
            rest = excess[last] / (excess[last] - excess[last + 1]) * (f[1] - f[0])
            return f[last] + rest, np.trapz(excess[:last + 1], f[:last + 1]) + rest * excess[last] / 2

        out["SFc" + kind], area = cut(above)
        out["SFc" + kind] *= 60
        out["Area" + kind] = area / cut(ideal)[1]
    # The peak, from a dense grid.
    span = np.arange(-8, 8.001, 0.4 * eye.unit)
    psf = eye.separable(span, span)
    best = None
    for index in np.argsort(psf, axis=None)[::-1][:6]:
        r, c = np.unravel_index(index, psf.shape)
        px, py, value = newton(eye.intensity, span[c], span[r], 0.1 * eye.unit, 12)
        if best is None or value > best[2]:
            best = (px, py, value)
    out["SRX"] = best[2]
    # Areas above half, by counting.
    rows, columns = np.nonzero(psf > 0.3 * best[2])
    lows = span[[columns.min(), rows.min()]] - 1.2 * eye.unit
    highs = span[[columns.max(), rows.max()]] + 1.2 * eye.unit
    xs, ys = (np.linspace(a, b, 1200) for a, b in zip(lows, highs))
    fine = eye.separable(xs, ys)
    out["HWHH"] = np.sqrt(np.count_nonzero(fine > best[2] / 2) * (xs[1] - xs[0]) * (ys[1] - ys[0]) / np.pi)
    square = (all_[2] * np.abs(all_[3])**2).ravel()
    reach = 8 * eye.unit
    while True:
        xs = np.linspace(-reach, reach, 241)
        ys = xs[120:]
        table = np.zeros((len(ys), len(xs)))
        fx, fy = all_[0].ravel(), all_[1].ravel()
        for r, y_ in enumerate(ys):
            table[r] = np.cos(2 * np.pi * (np.outer(xs, fx) + y_ * fy)) @ square
        above = table - np.sum(square) / 2
        if (above[:, [0, -1]] < 0).all() and (above[-1] < 0).all():
            break
        reach *= 1.6
    # Linear between places, row by row; rows by the trapezoidal rule.
    step = xs[1] - xs[0]
    widths = []
    for row in above:
        width = 0
        for a, b in zip(row[:-1], row[1:]):
            width += step * (1 if a > 0 and b > 0 else 0 if a <= 0 and b <= 0 else max(a, b) / (abs(a) + abs(b)))
        widths.append(width)
    out["CW"] = np.sqrt(2 * step * (sum(widths) - widths[0] / 2) / np.pi)
    return eye, out


if __name__ == "__main__":
    for name in sys.argv[1:] or EYES:
        eye, out = metrics(name)
        print(f"EYE {name} {eye.diameter} {EYES[name][1]}")
        for j, c in eye.modes.items():
            print(f"{name} mode {j} {c!r}")
        for key, value in out.items():
            if key == "place":
                print(f"{name} place {value[0]:.9f} {value[1]:.9f}")
            else:
                metric, _, origin = key.partition(".")
                print(f"{name} {origin or 'best'} {metric} {value:.10f}")
        sys.stdout.flush()
