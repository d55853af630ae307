"""Pictures out of simple shapes, drawn twice: as pixels and as SVG.

A picture is a list of filled shapes, the later over the earlier. Coordinates are in pixels, with the
origin at the upper left corner of the picture; a pixel belongs to a shape when its centre lies in
it, so there are no mixed colours at edges. Colours are written "#rrggbb". What no shape covers is
transparent.
"""

import struct
import zlib

TRANSPARENT = "#ff00ff"


def _number(value):
    return f"{value:g}"


class Rect:
    def __init__(self, x, y, width, height):
        self.x, self.y, self.width, self.height = x, y, width, height

    def holds(self, x, y):
        return self.x <= x < self.x + self.width and self.y <= y < self.y + self.height

    def svg(self, x, y):
        place = [_number(v) for v in (self.x + x, self.y + y, self.width, self.height)]
        return '<rect x="{}" y="{}" width="{}" height="{}"'.format(*place)


class Disc:
    def __init__(self, x, y, radius):
        self.x, self.y, self.radius = x, y, radius

    def holds(self, x, y):
        return (x - self.x) ** 2 + (y - self.y) ** 2 <= self.radius**2

    def svg(self, x, y):
        place = [_number(v) for v in (self.x + x, self.y + y, self.radius)]
        return '<circle cx="{}" cy="{}" r="{}"'.format(*place)


class Polygon:
    def __init__(self, points):
        self.points = points

    def holds(self, x, y):
        inside = False
        for (x1, y1), (x2, y2) in zip(self.points, self.points[1:] + self.points[:1]):
            if (y1 > y) != (y2 > y) and x < x1 + (y - y1) * (x2 - x1) / (y2 - y1):
                inside = not inside
        return inside

    def svg(self, x, y):
        points = " ".join(f"{_number(px + x)},{_number(py + y)}" for px, py in self.points)
        return f'<polygon points="{points}"'


class Picture:
    def __init__(self, width, height):
        self.width, self.height = width, height
        self.shapes = []  # shape, colour, offset

    def rect(self, x, y, width, height, colour):
        self.shapes.append((Rect(x, y, width, height), colour, (0, 0)))

    def disc(self, x, y, radius, colour):
        self.shapes.append((Disc(x, y, radius), colour, (0, 0)))

    def polygon(self, points, colour):
        self.shapes.append((Polygon(points), colour, (0, 0)))

    def glyph(self, x, y, rows, colour):
        """A small drawing given as rows of text, "#" for a pixel."""
        for down, row in enumerate(rows.split()):
            start = None
            for right, mark in enumerate(row + "."):
                if mark == "#" and start is None:
                    start = right
                if mark != "#" and start is not None:
                    self.rect(x + start, y + down, right - start, 1, colour)
                    start = None

    def place(self, other, x, y):
        """Draws another picture with its corner at that place."""
        for shape, colour, (dx, dy) in other.shapes:
            self.shapes.append((shape, colour, (dx + x, dy + y)))

    def pixels(self):
        """Rows from top to bottom, each a list of colours."""
        rows = [[TRANSPARENT] * self.width for _ in range(self.height)]
        for shape, colour, (dx, dy) in self.shapes:
            for y in range(self.height):
                for x in range(self.width):
                    if shape.holds(x + 0.5 - dx, y + 0.5 - dy):
                        rows[y][x] = colour
        return rows

    def svg(self):
        size = f'width="{self.width}" height="{self.height}"'
        lines = [
            '<?xml version="1.0" encoding="UTF-8"?>',
            f'<svg xmlns="http://www.w3.org/2000/svg" {size} viewBox="0 0 {self.width} {self.height}">',
        ]
        for shape, colour, offset in self.shapes:
            lines.append(f'  {shape.svg(*offset)} fill="{colour}"/>')
        return "\n".join(lines + ["</svg>", ""]).encode()


def strip(pictures):
    """Pictures of one size side by side."""
    whole = Picture(sum(p.width for p in pictures), pictures[0].height)
    at = 0
    for picture in pictures:
        whole.place(picture, at, 0)
        at += picture.width
    return whole


def _bytes_of(colour):
    return bytes.fromhex(colour[1:])


def bmp(rows):
    """24 bits a pixel, rows from bottom to top, each filled up to four bytes."""
    width, height = len(rows[0]), len(rows)
    data = b""
    for row in reversed(rows):
        line = b"".join(_bytes_of(colour)[::-1] for colour in row)
        data += line + bytes(-len(line) % 4)
    header = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(data), 2835, 2835, 0, 0)
    offset = 14 + len(header)
    return struct.pack("<2sIHHI", b"BM", offset + len(data), 0, 0, offset) + header + data


def png(rows):
    def chunk(name, body):
        return struct.pack(">I", len(body)) + name + body + struct.pack(">I", zlib.crc32(name + body))

    data = b"".join(b"\0" + b"".join(_bytes_of(colour) for colour in row) for row in rows)
    header = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 2, 0, 0, 0)
    return (
        b"\x89PNG\r\n\x1a\n"
        + chunk(b"IHDR", header)
        + chunk(b"IDAT", zlib.compress(data))
        + chunk(b"IEND", b"")
    )
