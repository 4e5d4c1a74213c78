#!/usr/bin/python3
"""Makes the pictures in files/, 7 x 5 pixels but for the photographs; their pixels are formulas that the tests know."""
import os
import struct
import zlib

import numpy
from PIL import Image

os.chdir(os.path.join(os.path.dirname(os.path.abspath(__file__)), "files"))
y, x = numpy.mgrid[0:5, 0:7]
red, green, blue = 30 * x + 7 * y + 1, 30 * y + 5, 200 - 20 * x


def png(name, bits, colour_type, samples):
    """A PNG file of 16 bits, which PIL writes in grey only."""
    def chunk(letters, data):
        return struct.pack(">I", len(data)) + letters + data + struct.pack(">I", zlib.crc32(letters + data))
    rows = b"".join(b"\0" + row.astype(">u%d" % (bits // 8)).tobytes() for row in samples)
    header = struct.pack(">IIBBBBB", samples.shape[1], samples.shape[0], bits, colour_type, 0, 0, 0)
    with open(name, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


colour = numpy.stack([red, green, blue], 2)
Image.fromarray(red.astype("uint8")).save("grey_8.png")
Image.fromarray((red * 251 + 17).astype("uint16")).save("grey_16.png")
Image.fromarray(colour.astype("uint8")).save("colour_8.png")
png("colour_16.png", 16, 2, colour * 251 + 17)
opacity = numpy.where(x < 2, 0, numpy.where(x < 4, 128, 255))
Image.fromarray(numpy.dstack([colour, opacity]).astype("uint8")).save("opacity_8.png")
Image.fromarray(colour.astype("uint8")).quantize(35).save("palette.png")
Image.fromarray((red * 251 + 17).astype("uint16")).save("grey_16.tiff")
Image.fromarray(colour.astype("uint8")).save("colour_8.tiff", compression="tiff_lzw")

# As cameras held in eight ways store one and the same view: red, green, blue and white quarters.
view = numpy.zeros((32, 48, 3), "uint8")
view[:16, :24], view[:16, 24:], view[16:, :24], view[16:, 24:] = (255, 0, 0), (0, 255, 0), (0, 0, 255), 255
stored = {1: view, 2: view[:, ::-1], 3: view[::-1, ::-1], 4: view[::-1], 5: view.transpose(1, 0, 2),
          6: numpy.rot90(view, 1), 7: numpy.rot90(view, 2).transpose(1, 0, 2), 8: numpy.rot90(view, -1)}
for orientation, pixels in stored.items():
    exif = Image.Exif()
    exif[0x0112] = orientation
    Image.fromarray(numpy.ascontiguousarray(pixels)).save("held_%d.jpg" % orientation, quality=95, exif=exif)
