#!/usr/bin/env python3
"""Truth for the physical model: PSFs, Strehl ratios and OTFs of eyes, by quadrature in polar coordinates.

Knows the definitions and nothing of the library. Writes the truth to standard output, computed in long double.
`--check FILE` computes a part of it with mpmath in 30 digits and compares. README.md describes method and format.
"""
import sys
from math import factorial

import numpy as np
from mpmath import mp, mpf

mp.dps = 30
assert np.finfo(np.longdouble).eps < 2e-19, "needs a CPU whose long double has 64 bits of precision"


class LongDouble:
    """Arrays of long double."""

    @staticmethod
    def number(x):
        return np.longdouble(mp.nstr(x, 25)) if isinstance(x, mpf) else np.longdouble(x)

    array = staticmethod(lambda xs: np.array([LongDouble.number(x) for x in xs]))
    cos, sin, exp, sqrt = np.cos, np.sin, np.exp, np.sqrt
    pi = np.longdouble("3.14159265358979323846264338328")


class Digits30:
    """Arrays of mpmath's numbers."""

    number = staticmethod(mpf)
    array = staticmethod(lambda xs: np.array([mpf(x) for x in xs], dtype=object))
    cos, sin, exp, sqrt = (np.frompyfunc(f, 1, 1) for f in (mp.cos, mp.sin, mp.exp, mp.sqrt))
    pi = +mp.pi


def osa(n, m):
    return (n * (n + 2) + m) // 2


# Modes in um by (n, m). Lopsided, so that nothing mirrored, turned or exchanged passes.
SEVEN = {(2, -2): 0.31, (2, 0): 0.55, (2, 2): -0.27, (3, -1): 0.36, (3, 1): -0.22, (3, 3): 0.17, (4, 0): 0.29}


def seven(waves, wavelength_um=0.55):
    """The seven modes with this RMS."""
    rms = sum(c * c for c in SEVEN.values())**0.5
    return {nm: round(c * waves * wavelength_um / rms, 6) for nm, c in SEVEN.items()}


# CIE 1924 V at 400 (10) 700 nm, x 1e6.
PHOTOPIC = [396, 1210, 4000, 11600, 23000, 38000, 60000, 90980, 139020, 208020, 323000, 503000, 710000, 862000, 954000,
            994950, 995000, 952000, 870000, 757000, 631000, 503000, 381000, 265000, 175000, 107000, 61000, 32000, 17000,
            8210, 4102]
WHITE = [(400 + 10 * i, v) for i, v in enumerate(PHOTOPIC)]


class Eye:
    def __init__(self, diameter, modes, light=((550, 1),), reference=0, ellipse=(1, 1, 0, 0, 0), stiles=(0, 0, 0),
                 axis=(0, 0), view="patient", half_field=10.0, side=64, step=8.0, frequencies=64):
        self.diameter, self.modes, self.light, self.reference = diameter, modes, light, reference
        self.ellipse, self.stiles, self.axis, self.view = ellipse, stiles, axis, view
        self.half_field, self.side, self.step, self.frequencies = half_field, side, step, frequencies


# Diameter in mm; light in nm with weights; the reference wavelength in nm; semi-axes, angle and centre of the outline in
# radii; rho and centre of the Stiles-Crawford effect in mm; the achromatic axis in mm. half_field in arcmin and side are
# those of the PSF's grid, step that of the OTF's in c/deg.
EYES = {
    "perfect": Eye(6.0, {}),
    "defocus": Eye(4.0, {(2, 0): 0.21}, view="retina", light=((633, 1),)),
    "coma": Eye(5.2, {(3, -1): -0.37}),
    "order-4": Eye(7.1, {(4, 4): 0.29}, view="retina"),
    "order-6": Eye(6.0, {(6, -2): 0.23}),
    "order-8": Eye(3.3, {(8, -4): 0.19}),
    "order-10-round": Eye(6.0, {(10, 0): 0.16}),
    "order-10-star": Eye(5.0, {(10, -10): -0.13}, view="retina"),
    "half-a-wave": Eye(6.0, seven(0.5)),
    # The eye of the benchmarks: all frequencies up to the cut-off, 190.4 c/deg, in steps of little more than a 128th.
    "one-wave": Eye(6.0, seven(1), side=256, step=1.48749652159, frequencies=256),
    "two-waves": Eye(6.0, seven(2), view="retina"),
    "five-waves": Eye(6.0, seven(5), half_field=20.0),
    "stiles-crawford": Eye(6.0, seven(0.7), stiles=(0.05, 0.4, -0.25)),
    "ellipse": Eye(6.4, seven(0.8), ellipse=(0.9, 0.72, 0.6, 0.06, -0.04), stiles=(0.05, -0.3, 0.2), view="retina"),
    "infrared": Eye(5.0, {(2, 0): -0.3, (2, 2): 0.12, (3, 1): 0.08}, reference=850, light=((555, 1),)),
    "white": Eye(4.5, {(2, -2): 0.06, (2, 0): 0.09, (3, -1): -0.07, (4, 0): 0.05}, reference=555, light=WHITE,
                 axis=(0.3, -0.2), half_field=6.0, step=6.0),
}
ROWS, COLUMNS = [3, 21, 28, 32, 37, 50], [9, 25, 30, 31, 35, 61]  # of 64
MANY = [0, 20, 51, 77, 96, 107, 115, 121, 125, 128, 131, 136, 144, 158, 190, 255]  # rows and columns of 256
OTF_PLACES = [(32, 32), (32, 33), (31, 32), (30, 35), (35, 36), (27, 29), (32, 40), (24, 32), (39, 25), (41, 44), (20, 28),
              (48, 32), (32, 14), (22, 17)]  # of 64
MANY_OTF_PLACES = [(r, c) for r in (40, 96, 112, 121, 128, 133, 150, 190) for c in (66, 104, 118, 125, 128, 129, 137, 203)]


def legendre(count):
    """Nodes and weights of Gauss on [0, 1], by Newton's method; an even count."""
    nodes, weights = [], []
    with mp.workdps(40):
        for i in range(count // 2):
            x = mp.cos(mp.pi * (i + mpf(3) / 4) / (count + mpf(1) / 2))
            change = 1
            while change > mpf(10)**-25:  # the next step is exact to twice the digits
                below, p = mpf(1), x
                for k in range(2, count + 1):
                    below, p = p, ((2 * k - 1) * x * p - (k - 1) * below) / k
                slope = count * (x * p - below) / (x * x - 1)
                x, change = x - p / slope, abs(p / slope)
            nodes += [(1 + x) / 2, (1 - x) / 2]
            weights += [1 / ((1 - x * x) * slope * slope)] * 2
    return nodes, weights


RULES = {}


def rule(count, kind):
    if (count, kind) not in RULES:
        RULES[count, kind] = tuple(kind.array(xs) for xs in legendre(count))
    return RULES[count, kind]


class Pupil:
    """The pupil function of an eye at one wavelength, over places of the unit disc that its outline is mapped to."""

    def __init__(self, eye, wavelength_nm, kind):
        self.kind = kind
        number = kind.number
        self.radius = number(eye.diameter) / 2
        self.wavelength = number(wavelength_nm) / 1000  # um
        self.modes = {nm: number(c) for nm, c in eye.modes.items()}
        if eye.reference:
            def refraction(um):
                return -number("0.63346") / (um - number("0.21410"))
            # W = -difference / 2 * |place - axis|^2 with places in mm.
            difference = refraction(self.wavelength) - refraction(number(eye.reference) / 1000)
            self.lens = difference / 2, number(eye.axis[0]), number(eye.axis[1])
        else:
            self.lens = number(0), number(0), number(0)
        a, b, angle, self.x0, self.y0 = map(number, eye.ellipse)
        c, s = kind.cos(angle), kind.sin(angle)
        self.matrix = a * c, -b * s, a * s, b * c
        self.area = kind.pi * a * b * self.radius * self.radius  # mm^2
        self.rho, self.stiles_x, self.stiles_y = map(number, eye.stiles)

    def place(self, u, v):
        """In radii, from the unit disc."""
        xx, xy, yx, yy = self.matrix
        return xx * u + xy * v + self.x0, yx * u + yy * v + self.y0

    def is_inside(self, x, y):
        xx, xy, yx, yy = self.matrix
        x, y = x - self.x0, y - self.y0
        return (yy * x - xy * y)**2 + (xx * y - yx * x)**2 < (xx * yy - xy * yx)**2

    def phase(self, x, y):
        """k W, by the sums of factorials and the powers of x + iy."""
        square = x * x + y * y
        powers = [(0 * x + 1, 0 * x)]
        for _ in range(max((abs(m) for n, m in self.modes), default=0)):
            re, im = powers[-1]
            powers.append((re * x - im * y, re * y + im * x))
        total = 0 * x
        for (n, m), c in self.modes.items():
            half, other = (n - abs(m)) // 2, (n + abs(m)) // 2
            radial = 0 * x
            for s in range(half + 1):  # the highest power first
                radial = radial * square + (-1)**s * (factorial(n - s) // (factorial(s) * factorial(other - s)
                                                                            * factorial(half - s)))
            norm = self.kind.sqrt(self.kind.number((n + 1) * (1 if m == 0 else 2)))
            total = total + c * norm * radial * powers[abs(m)][1 if m < 0 else 0]
        half_power, ax, ay = self.lens
        if half_power != 0:
            total = total - half_power * ((self.radius * x - ax)**2 + (self.radius * y - ay)**2)
        return total * (2 * self.kind.pi / self.wavelength)

    def amplitude(self, x, y):
        if self.rho == 0:
            return 0 * x + 1
        d2 = (self.radius * x - self.stiles_x)**2 + (self.radius * y - self.stiles_y)**2
        return self.kind.exp(-self.rho / 2 * d2 * self.kind.number(mp.log(10)))


class Nodes:
    """Polar quadrature: Gauss in the radius, equal steps of the angle. Weights add up to 1."""

    def __init__(self, pupil, radial, angular, flat=False):
        kind = pupil.kind
        r, w = rule(radial, kind)
        angle = kind.array(range(angular)) * (2 * kind.pi / angular) + kind.number("0.1")
        u, v = np.outer(r, kind.cos(angle)).ravel(), np.outer(r, kind.sin(angle)).ravel()
        self.weight = np.repeat(2 * w * r / angular, angular)
        self.x, self.y = pupil.place(u, v)
        self.amplitude = pupil.amplitude(self.x, self.y)
        self.phase = 0 * self.x if flat else pupil.phase(self.x, self.y)
        self.kind, self.pupil = kind, pupil
        # In radians per arcmin and radius.
        self.turn = 2 * kind.pi * (pupil.radius * 1000 / pupil.wavelength) * (kind.pi / 10800)

    def light(self):
        return (self.weight * self.amplitude**2).sum()

    def field(self, ax, ay):
        """U towards the slopes (ax, ay) in arcmin: real and imaginary part."""
        phase = self.phase - self.turn * (ax * self.x + ay * self.y)
        a = self.weight * self.amplitude
        return (a * self.kind.cos(phase)).sum(), (a * self.kind.sin(phase)).sum()

    def jet(self, ax, ay):
        """|U|^2, its slopes and curvatures per arcmin."""
        phase = self.phase - self.turn * (ax * self.x + ay * self.y)
        a = self.weight * self.amplitude
        wave = a * self.kind.cos(phase), a * self.kind.sin(phase)
        x, y = self.turn * self.x, self.turn * self.y

        def moment(m):  # (-i)^order is applied below
            return np.array([(wave[0] * m).sum(), (wave[1] * m).sum()])

        def dot(p, q):
            return p[0] * q[0] + p[1] * q[1]

        def cross(p, q):
            return p[0] * q[1] - p[1] * q[0]

        u, ux, uy = moment(0 * x + 1), moment(x), moment(y)
        uxx, uxy, uyy = moment(x * x), moment(x * y), moment(y * y)
        return (dot(u, u), 2 * cross(u, ux), 2 * cross(u, uy), 2 * (dot(ux, ux) - dot(u, uxx)),
                2 * (dot(ux, uy) - dot(u, uxy)), 2 * (dot(uy, uy) - dot(u, uyy)))


def overlap(pupil, gx, gy, count):
    """int P(r - s/2) conj P(r + s/2) over the unit disc's overlap, over pi: s = wavelength x frequency.

    gx, gy in cycles per degree in the sense of the slopes. Polar coordinates about the middle of the lens, whose border
    is one circle's arc on each side of the shift.
    """
    kind = pupil.kind
    scale = pupil.wavelength / pupil.radius * 18 / kind.pi / 100  # radii per cycle per degree
    sx, sy = gx * scale, gy * scale
    xx, xy, yx, yy = pupil.matrix
    det = xx * yy - xy * yx
    su, sv = (yy * sx - xy * sy) / det, (xx * sy - yx * sx) / det
    shift = kind.sqrt(su * su + sv * sv)
    if shift >= 2:
        return kind.number(0), kind.number(0)
    cu, cv = (su / shift, sv / shift) if shift > 0 else (kind.number(1), kind.number(0))
    nodes, weights = rule(count, kind)
    re = im = kind.number(0)
    for side in (1, -1):
        t = kind.pi * (nodes - kind.number("0.5"))
        cosine, sine = kind.cos(t), kind.sin(t)
        h = shift / 2
        border = kind.sqrt(1 - (h * sine)**2) - h * cosine
        r = np.outer(border, nodes)
        w = kind.pi * np.outer(weights * border, weights) * r
        along, across = (side * r * cosine[:, None]).ravel(), (r * sine[:, None]).ravel()
        w = w.ravel()

        def at(offset):
            a = along + offset
            return pupil.place(a * cu - across * cv, a * cv + across * cu)
        here, there = at(-h), at(h)
        phase = pupil.phase(*here) - pupil.phase(*there)
        size = w * pupil.amplitude(*here) * pupil.amplitude(*there)
        re, im = re + (size * kind.cos(phase)).sum() / kind.pi, im + (size * kind.sin(phase)).sum() / kind.pi
    return re, im


class Truth:
    """All results of one eye with one pair of node counts."""

    def __init__(self, eye, radial, angular, kind):
        self.eye, self.kind = eye, kind
        total = sum(kind.number(weight) for _, weight in eye.light)
        self.pupils = [Pupil(eye, nm, kind) for nm, _ in eye.light]
        self.shares = [kind.number(weight) / total for _, weight in eye.light]
        self.nodes = [Nodes(p, radial, angular) for p in self.pupils]
        few = 60
        flat = [Nodes(p, few, 2 * few, flat=True) for p in self.pupils]
        zero = kind.number(0)
        self.lights = [f.light() for f in flat]
        densities = [share * p.area / p.wavelength**2 / light
                     for share, p, light in zip(self.shares, self.pupils, self.lights)]
        perfect = sum(d * f.field(zero, zero)[0]**2 for d, f in zip(densities, flat))
        self.factors = [d / perfect for d in densities]

    def slopes_of(self, x, y):
        """The view's places as directions of slopes; also those of frequencies."""
        return -x, (y if self.eye.view == "patient" else -y)

    def psf(self, x, y):
        """In Strehl units, at a place in arcmin of the view."""
        ax, ay = self.slopes_of(x, y)
        total = self.kind.number(0)
        for factor, nodes in zip(self.factors, self.nodes):
            re, im = nodes.field(ax, ay)
            total += factor * (re * re + im * im)
        return total

    def otf(self, fx, fy):
        """Of unit light, in cycles per degree of the view; with 1.5 times the nodes until nothing changes."""
        gx, gy = self.slopes_of(self.kind.number(fx), self.kind.number(fy))
        re = im = self.kind.number(0)
        for share, pupil, light in zip(self.shares, self.pupils, self.lights):
            count, now = 128, overlap(pupil, gx, gy, 86)
            while True:
                before, now = now, overlap(pupil, gx, gy, count)
                if abs(now[0] - before[0]) + abs(now[1] - before[1]) < 1e-15:
                    break
                count = 2 * (3 * count // 4)
            re, im = re + share * now[0] / light, im + share * now[1] / light
        return re, im

    def peak(self):
        """The highest place of the PSF, and whether no other is nearly as high.

        Finds hills on a dense grid from a lattice of samples in double, and their tops by Newton's method.
        """
        reach, unit = self.reach(), self.unit()
        places = np.arange(-reach - 1.5 * unit, reach + 1.5 * unit, 0.25 * unit)
        count = max(256, int(4 * reach / unit))
        line = LongDouble.array((np.arange(count) + 0.5) * 2 / count - 1)
        x, y = np.meshgrid(line, line)
        plane = np.zeros((len(places), len(places)))
        for factor, n in zip(self.factors, self.nodes):
            field = n.pupil.amplitude(x, y) * n.pupil.is_inside(x, y)
            phase = (n.pupil.phase(x, y) % (2 * LongDouble.pi)).astype(float)
            field = (field / field.sum()).astype(float) * np.exp(1j * phase)
            waves = np.exp(-1j * float(n.turn) * np.outer(places, line.astype(float)))
            plane += float(factor) * np.abs(waves @ field @ waves.T)**2
        inner = plane[1:-1, 1:-1]
        is_top = np.ones(inner.shape, bool)
        for dy in (0, 1, 2):
            for dx in (0, 1, 2):
                is_top &= inner >= plane[dy:dy + inner.shape[0], dx:dx + inner.shape[1]]
        rows, columns = np.nonzero(is_top & (inner > 0.75 * inner.max()))
        order = np.argsort(-inner[rows, columns])[:12]
        best = [self.climb(places[columns[i] + 1], places[rows[i] + 1]) for i in order]
        best.sort(reverse=True, key=lambda b: b[0])
        value, ax, ay = best[0]
        others = [v for v, x, y in best if (x - ax)**2 + (y - ay)**2 > (0.1 * unit)**2]
        return value, *self.slopes_of(ax, ay), not others or max(others) < value - 1e-3

    def unit(self):
        """The smallest wavelength over the diameter, arcmin."""
        return min(float(p.wavelength) / float(2 * p.radius) for p in self.pupils) * 10.8 / np.pi

    def reach(self):
        """The largest slope, arcmin, by differences of the phase."""
        t = np.linspace(0, 2 * np.pi, 60)
        u, v = (np.outer(np.linspace(0, 1, 40), f(t)).ravel() for f in (np.cos, np.sin))
        largest = 0.0
        for p in self.pupils:
            h = 1e-6
            x, y = p.place(LongDouble.array(u), LongDouble.array(v))
            for dx, dy in ((h, 0), (0, h)):
                slope = (p.phase(x + dx, y + dy) - p.phase(x - dx, y - dy)) / (2 * h)
                largest = max(largest, float(abs(slope).max() * p.wavelength / (2 * np.pi * p.radius)) * 10.8 / np.pi)
        return largest

    def climb(self, ax, ay):
        ax, ay = self.kind.number(ax), self.kind.number(ay)
        for _ in range(60):
            value, x, y, xx, xy, yy = (sum(f * j for f, j in zip(self.factors, column))
                                       for column in zip(*(n.jet(ax, ay) for n in self.nodes)))
            det = xx * yy - xy * xy
            if xx < 0 and det > 0:
                dx, dy = (xy * y - yy * x) / det, (xy * x - xx * y) / det
            else:
                size = self.kind.sqrt(xx * xx + 2 * xy * xy + yy * yy)
                dx, dy = x / size, y / size
            ax, ay = ax + dx, ay + dy
            if dx * dx + dy * dy < 1e-30:
                break
        return value, ax, ay


def samples_of(eye):
    """(row, column, x, y) of the PSF, arcmin; x and y are exact."""
    indices = (MANY, MANY) if eye.side == 256 else (ROWS, COLUMNS)
    spacing = 2 * eye.half_field / eye.side
    for r in indices[0]:
        for c in indices[1]:
            yield r, c, (c - (eye.side - 1) / 2) * spacing, ((eye.side - 1) / 2 - r) * spacing


def frequencies_of(eye):
    """(row, column, x, y) of the OTF, c/deg; x and y are rounded to doubles."""
    half = eye.frequencies // 2
    for r, c in OTF_PLACES if eye.frequencies == 64 else MANY_OTF_PLACES:
        yield r, c, (c - half) * eye.step, (half - r) * eye.step


def counts_of(eye, farthest):
    """Enough nodes, and more, up to this distance from the axis in arcmin."""
    shortest = min(nm for nm, _ in eye.light) / 1000
    unit = shortest / eye.diameter * 10.8 / np.pi
    corner = farthest / unit
    phase = 2 * np.pi / shortest * sum(abs(c) * (2 * (n + 1))**0.5 * n for (n, m), c in eye.modes.items())
    if eye.reference:
        phase += 2 * np.pi / shortest * 1.7 * (eye.diameter / 2)**2 / 2 * 2
    bandwidth = np.pi * corner + phase
    return 2 * int(0.225 * bandwidth + 25), 2 * int(0.75 * bandwidth + 50)


def text(x):
    return np.format_float_scientific(x, precision=18, unique=False)


def header(name, eye):
    print(name, "eye", eye.diameter, eye.reference, eye.view, *eye.ellipse, *eye.stiles, *eye.axis)
    for (n, m), c in eye.modes.items():
        print(name, "mode", osa(n, m), c)
    for nm, weight in eye.light:
        print(name, "light", nm, weight)
    print(name, "grid", eye.half_field * 2 / eye.side, eye.side)
    print(name, "frequencies", eye.step, eye.frequencies)


def write():
    for name, eye in EYES.items():
        radial, angular = counts_of(eye, 1.42 * eye.half_field)
        truth, fewer = (Truth(eye, r, a, LongDouble) for r, a in ((radial, angular), (radial - 8, angular - 18)))
        header(name, eye)
        largest = 0.0

        def agreed(x, y):
            nonlocal largest
            value, other = (t.psf(LongDouble.number(x), LongDouble.number(y)) for t in (truth, fewer))
            largest = max(largest, abs(value - other))
            return text(value)

        print(name, "strehl", agreed(0, 0))
        _, x, y, is_alone = truth.peak()
        print(name, "peak", agreed(x, y), *([text(x), text(y)] if is_alone else []))
        for r, c, x, y in samples_of(eye):
            print(name, "psf", r, c, agreed(x, y))
        for r, c, fx, fy in frequencies_of(eye):
            print(name, "otf", r, c, *map(text, truth.otf(fx, fy)))
        print(f"{name}: {radial} x {angular} nodes, {largest:.1e} from fewer", file=sys.stderr, flush=True)
        assert largest < 1e-15, "too few nodes"


IN_30_DIGITS = ("defocus", "order-4", "one-wave", "ellipse")  # the others take too long


def check(path):
    """A part of the file again, four eyes in 30 digits. Returns how many results differ."""
    written = {}
    for fields in map(str.split, open(path, encoding="utf-8")):
        written.setdefault(fields[0], {}).setdefault(fields[1], []).append(fields[2:])
    wrong = 0
    for name, eye in EYES.items():
        kind = Digits30 if name in IN_30_DIGITS else LongDouble
        # The sample nearest to the axis needs fewer nodes than the rim of the field.
        r, c, x, y = min(samples_of(eye), key=lambda s: s[2]**2 + s[3]**2)
        radial, angular = counts_of(eye, np.hypot(x, y))
        # A phase of cos(m angle) has harmonics of many times m.
        truth = Truth(eye, radial, angular + 24 * max((abs(m) for n, m in eye.modes), default=0), kind)
        row, column, fx, fy = list(frequencies_of(eye))[5]
        re, im = truth.otf(fx, fy)
        zero = kind.number(0)
        (psf,) = (f[2] for f in written[name]["psf"] if f[:2] == [str(r), str(c)])
        otf = next(f[2:] for f in written[name]["otf"] if f[:2] == [str(row), str(column)])
        results = [("strehl", truth.psf(zero, zero), written[name]["strehl"][0][0]),
                   ("psf", truth.psf(kind.number(x), kind.number(y)), psf), ("otf", re, otf[0]), ("otf", im, otf[1])]
        largest = max(abs(mpf(str(value)) - mpf(text)) for _, value, text in results)
        print(f"{name}: {mp.nstr(largest, 2)}, {'30 digits' if kind is Digits30 else 'long double'}", flush=True)
        wrong += sum(abs(mpf(str(value)) - mpf(text)) > 1e-15 for _, value, text in results)
    return wrong


def main():
    if len(sys.argv) == 1:
        write()
    elif len(sys.argv) == 3 and sys.argv[1] == "--check":
        sys.exit("the file differs" if check(sys.argv[2]) else 0)
    else:
        sys.exit("usage: truth.py [--check FILE]")


main()
