#!/usr/bin/env python3
"""Writes colour_tables.cpp beside this script: the colours of the figures, 256 a map.

viridis and inferno are the data of matplotlib (Nathaniel J. Smith, Stefan van der Walt, Eric Firing), released under
CC0. The diverging map is made here: lightness falls by equal steps of CIELAB from the middle to either end.
"""

import pathlib

import matplotlib

MIDDLE = (97.0, 0.0, 0.0)  # CIELAB, D65
LOW = (33.0, 17.0, -53.0)  # blue; the whole way lies inside sRGB
HIGH = (33.0, 48.0, 28.0)  # red, equally far from grey
WHITE = (0.95047, 1.0, 1.08883)


def srgb(lab):
    """CIELAB to sRGB bytes; a colour outside sRGB is clipped."""
    fy = (lab[0] + 16.0) / 116.0
    f = (fy + lab[1] / 500.0, fy, fy - lab[2] / 200.0)
    x, y, z = (w * (t**3 if t > 6 / 29 else 3 * (6 / 29) ** 2 * (t - 4 / 29)) for t, w in zip(f, WHITE))
    linear = (
        3.2404542 * x - 1.5371385 * y - 0.4985314 * z,
        -0.9692660 * x + 1.8760108 * y + 0.0415560 * z,
        0.0556434 * x - 0.2040259 * y + 1.0572252 * z,
    )
    coded = (12.92 * c if c <= 0.0031308 else 1.055 * max(c, 0.0) ** (1 / 2.4) - 0.055 for c in linear)
    return tuple(round(255 * min(max(c, 0.0), 1.0)) for c in coded)


def diverging(index):
    t = (index - 127.5) / 127.5
    end = LOW if t < 0 else HIGH
    return srgb(tuple(m + abs(t) * (e - m) for m, e in zip(MIDDLE, end)))


def published(name):
    return [tuple(round(255 * c) for c in colour) for colour in matplotlib.colormaps[name].colors]


def table(name, colours):
    codes = ["0x%02x%02x%02x" % colour for colour in colours]
    lines = ["    " + ", ".join(codes[i : i + 11]) + "," for i in range(0, 256, 11)]
    return "const std::uint32_t %s[256] = {\n%s\n};\n" % (name, "\n".join(lines).rstrip(","))


def main():
    tables = [
        table("kViridis", published("viridis")),
        table("kInferno", published("inferno")),
        table("kDiverging", [diverging(i) for i in range(256)]),
    ]
    pathlib.Path(__file__).with_name("colour_tables.cpp").write_text(
        "// The colours of the figures as 0xRRGGBB, written by make_colour_tables.py, which names their sources.\n"
        '#include "drawing/canvas/colour_map.h"\n\nnamespace orvanel::drawing {\n\n// clang-format off\n'
        + "\n".join(tables)
        + "// clang-format on\n\n}  // namespace orvanel::drawing\n"
    )


if __name__ == "__main__":
    main()
