#!/usr/bin/env python3
"""Writes sector_star.dib beside this script: the built-in test pattern as a device-independent bitmap."""

import math
import pathlib
import struct

SIDE = 256
BLACK, WHITE = 0, 255

# Samples (row, column) that are white although the rule of the sectors makes them black.
EXCEPTIONS = {(139, 130), (140, 59)}

# The twenty fixed colours of the usual 8-bit system palette, as (red, green, blue).
FIXED = {
    0: (0, 0, 0), 1: (128, 0, 0), 2: (0, 128, 0), 3: (128, 128, 0), 4: (0, 0, 128),
    5: (128, 0, 128), 6: (0, 128, 128), 7: (192, 192, 192), 8: (192, 220, 192), 9: (166, 202, 240),
    246: (255, 251, 240), 247: (160, 160, 164), 248: (128, 128, 128), 249: (255, 0, 0), 250: (0, 255, 0),
    251: (255, 255, 0), 252: (0, 0, 255), 253: (255, 0, 255), 254: (0, 255, 255), 255: (255, 255, 255),
}


def colour(index):
    """Three bits of red, three of green, two of blue, but for the fixed colours."""
    return FIXED.get(index, ((index & 7) * 32, (index >> 3 & 7) * 32, (index >> 6) * 64))


def sample(row, column):
    """40 sectors of 9 degrees around (127.5, 127.5), a white one centred on each axis."""
    if (row, column) in EXCEPTIONS:
        return WHITE
    angle = math.degrees(math.atan2(127.5 - row, column - 127.5)) % 360.0
    return WHITE if math.floor((angle + 4.5) / 9.0) % 2 == 0 else BLACK


def main():
    header = struct.pack("<IiiHHIIiiII", 40, SIDE, SIDE, 1, 8, 0, SIDE * SIDE, 0, 0, 0, 0)
    palette = b"".join(bytes((b, g, r, 0)) for r, g, b in map(colour, range(256)))
    rows = (bytes(sample(row, column) for column in range(SIDE)) for row in reversed(range(SIDE)))
    pathlib.Path(__file__).with_name("sector_star.dib").write_bytes(header + palette + b"".join(rows))


if __name__ == "__main__":
    main()
