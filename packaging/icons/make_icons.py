#!/usr/bin/env python3
"""Writes the program's icon: sonarello.svg, and sonarello-<size>.png for the common sizes.

usage: make_icons.py [FOLDER]     without a folder, into the one that this file lies in

The icon is a rounded square with three faders at 40, 70 and 55 %. Both kinds of file come from the
same list of shapes, so that they cannot differ.
"""
import pathlib
import struct
import sys
import zlib

SIZES = (16, 22, 24, 32, 48, 64, 128, 256)
GROUND = (0x1A, 0x6F, 0xAE)
WHITE = (0xFF, 0xFF, 0xFF)
HEIGHTS = (0.40, 0.70, 0.55)
SAMPLES = 6  # per pixel and direction


def shapes():
    """(x, y, width, height, radius, colour, opacity) of rounded rectangles in a square of 128."""
    yield 0, 0, 128, 128, 28.16, GROUND, 1.0
    top, bottom, slot, cap, cap_height = 22, 106, 8, 26, 18
    for index, height in enumerate(HEIGHTS):
        centre = 32 + 32 * index
        y = bottom - (bottom - top) * height
        yield centre - slot / 2, top, slot, bottom - top, slot / 2, WHITE, 0.4
        yield centre - slot / 2, y, slot, bottom - y, slot / 2, WHITE, 1.0
        yield centre - cap / 2, y - cap_height / 2, cap, cap_height, 5, WHITE, 1.0
        yield centre - cap / 2 + 4, y - 1.5, cap - 8, 3, 1.5, GROUND, 1.0


def number(value):
    return f"{value:.2f}".rstrip("0").rstrip(".")


def svg():
    lines = ['<svg xmlns="http://www.w3.org/2000/svg" width="128" height="128" viewBox="0 0 128 128">',
             "  <title>Sonarello</title>"]
    for x, y, width, height, radius, colour, opacity in shapes():
        seen = "" if opacity == 1 else f' fill-opacity="{number(opacity)}"'
        lines.append(f'  <rect x="{number(x)}" y="{number(y)}" width="{number(width)}" height="{number(height)}" '
                     f'rx="{number(radius)}" fill="#{bytes(colour).hex()}"{seen}/>')
    return "\n".join([*lines, "</svg>", ""])


def covers(shape, px, py):
    x, y, width, height, radius = shape[:5]
    if not (x <= px <= x + width and y <= py <= y + height):
        return False
    dx = max(x + radius - px, px - (x + width - radius), 0)
    dy = max(y + radius - py, py - (y + height - radius), 0)
    return dx * dx + dy * dy <= radius * radius


def colour_at(drawn, px, py):
    """Red, green, blue and opacity of a point; the ground is opaque, so what lies on it mixes plainly."""
    mixed = None
    for shape in drawn:
        if covers(shape, px, py):
            colour, opacity = shape[5:]
            mixed = colour if mixed is None else tuple(b + (f - b) * opacity for f, b in zip(colour, mixed))
    return (0, 0, 0, 0) if mixed is None else (*mixed, 255)


def pixel(drawn, size, column, row):
    scale = 128 / size / SAMPLES
    if size >= 64:  # no shape is smaller than a pixel there
        corners = {colour_at(drawn, (column + i) * 128 / size, (row + j) * 128 / size)
                   for i in (0, 1) for j in (0, 1)}
        if len(corners) == 1:
            return bytes(map(round, corners.pop()))
    points = [colour_at(drawn, (column * SAMPLES + i + 0.5) * scale, (row * SAMPLES + j + 0.5) * scale)
              for j in range(SAMPLES) for i in range(SAMPLES)]
    opaque = [p for p in points if p[3]]
    if not opaque:
        return bytes(4)
    mean = [round(sum(p[k] for p in opaque) / len(opaque)) for k in range(3)]
    return bytes([*mean, round(255 * len(opaque) / len(points))])


def png(size):
    drawn = list(shapes())
    rows = b"".join(b"\0" + b"".join(pixel(drawn, size, column, row) for column in range(size))
                    for row in range(size))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else __file__)
    folder = folder if folder.is_dir() else folder.parent
    (folder / "sonarello.svg").write_text(svg(), encoding="utf-8")
    for size in SIZES:
        (folder / f"sonarello-{size}.png").write_bytes(png(size))


if __name__ == "__main__":
    main()
