"""The pictures of this system. What one means is told by its shape; colour only adds to it."""

import math

from pictures.shapes import Picture, strip

INK = "#2b2f36"
STEEL = "#6f7985"  # for free-standing parts, visible on light and dark backgrounds
WHITE = "#ffffff"
SHADE = "#c9d1d9"
GREY = "#7d858f"
BLUE = "#2f6fbf"
GREEN = "#2e8b57"
RED = "#c8322b"
YELLOW = "#f2b705"
ORANGE = "#cf6a12"
PURPLE = "#7a4fa3"
TEAL = "#1b8585"

LETTERS = {
    "A": "..##.. .####. ##..## ##..## ###### ##..## ##..## ##..##",
    "C": ".####. ##..## ##.... ##.... ##.... ##.... ##..## .####.",
    "c": ".###. ##.## ##... ##... ##... ##... ##.## .###.",
    "T": "###### ###### ..##.. ..##.. ..##.. ..##..",
    "f": "..### .##.. .##.. ##### .##.. .##.. .##.. .##..",
    "h": "##.... ##.... ##.... #####. ##..## ##..## ##..## ##..##",
    "i": "##. ##. ... ##. ##. ##. ##.",
    "v": "##..## ##..## ##..## .####. .####. ..##..",
    "+": ".#. ### .#.",
}

BUG = """
    ..#......#..
    ...#....#...
    ....####....
    #..######..#
    .##########.
    ..########..
    ############
    ..########..
    ..########..
    .##########.
    #..######..#
    ....####....
"""
BUG_BODY = """
    .####.
    ######
    ######
    ######
    ######
    ######
    ######
    ######
    .####.
"""
BUG_BACK = """
    .##..##.
    .##..##.
    ###..###
    .##..##.
    .##..##.
    .##..##.
    ..#..#..
"""


def centred(picture, width, height):
    """The picture in the middle of a larger one; what doesn't divide goes to the right and below."""
    whole = Picture(width, height)
    whole.place(picture, (width - picture.width) // 2, (height - picture.height) // 2)
    return whole


# --- Parts of icons ---


def page(size):
    p = Picture(size, size)
    left, right, bottom = (3, 15, 17) if size == 18 else (3, 13, 15)
    p.polygon([(left, 1), (right - 4, 1), (right, 5), (right, bottom), (left, bottom)], INK)
    p.rect(left + 1, 2, right - left - 5, 4, WHITE)
    p.rect(left + 1, 6, right - left - 2, bottom - 7, WHITE)
    p.polygon([(right - 4, 2), (right - 1, 5), (right - 4, 5)], SHADE)
    return p


def lettered_page(letter, colour):
    p = page(18)
    p.glyph(6, 7, LETTERS[letter], colour)
    return p


def ruled_page(size):
    p = page(size)
    for y in range(7, size - 3, 2):
        p.rect(5, y, size - 10, 1, GREY)
    return p


def add_bug(p, x, y):
    p.glyph(x, y, BUG, STEEL)
    p.glyph(x + 3, y + 3, BUG_BODY, INK)
    p.glyph(x + 2, y + 4, BUG_BACK, RED)


def chip():
    p = Picture(18, 18)
    for y in (4, 7, 10, 13):
        p.rect(1, y, 16, 1, STEEL)
    p.rect(4, 2, 10, 14, INK)
    p.rect(5, 3, 8, 12, TEAL)
    p.disc(7, 5, 1, WHITE)
    return p


def octagon(p, near, far, corner, colour):
    a, b = near + corner, far - corner
    p.polygon(
        [(a, near), (b, near), (far, a), (far, b), (b, far), (a, far), (near, b), (near, a)], colour
    )


# --- Columns of the build report and of the globals ---


def plain():
    p = Picture(16, 16)
    p.disc(8, 8, 3, GREY)
    return p


def warning():
    p = Picture(16, 16)
    p.polygon([(7, 1), (9, 1), (16, 15), (0, 15)], INK)
    p.polygon([(7.6, 2.5), (8.4, 2.5), (14.4, 14), (1.6, 14)], YELLOW)
    p.rect(7, 5, 2, 5, INK)
    p.rect(7, 11, 2, 2, INK)
    return p


def error():
    p = Picture(16, 16)
    octagon(p, 1, 15, 4, INK)
    octagon(p, 2, 14, 3.6, RED)
    p.glyph(5, 5, "##..## ###### .####. .####. ###### ##..##", WHITE)
    return p


def system_row():
    p = Picture(16, 16)
    p.polygon([(4, 3), (7, 3), (12, 8), (7, 13), (4, 13), (9, 8)], GREY)
    return p


def information():
    p = Picture(16, 16)
    p.disc(8, 8, 7, INK)
    p.disc(8, 8, 6, BLUE)
    p.glyph(7, 4, "## ## .. ## ## ## ## ##", WHITE)
    return p


def heading():
    p = Picture(16, 16)
    p.rect(2, 3, 12, 4, STEEL)
    for y in (9, 12):
        p.rect(2, y, 9, 1, GREY)
    return p


def function():
    p = Picture(16, 16)
    p.disc(8, 8, 7.5, INK)
    p.disc(8, 8, 6.5, PURPLE)
    p.glyph(6, 4, LETTERS["f"], WHITE)
    return p


def variable():
    p = Picture(16, 16)
    p.rect(1, 2, 14, 12, INK)
    p.rect(2, 3, 12, 10, BLUE)
    p.glyph(5, 5, LETTERS["v"], WHITE)
    return p


def type_name():
    p = Picture(16, 16)
    p.polygon([(8, 0), (16, 8), (8, 16), (0, 8)], INK)
    p.polygon([(8, 1.4), (14.6, 8), (8, 14.6), (1.4, 8)], GREEN)
    p.glyph(5, 5, LETTERS["T"], WHITE)
    return p


def define():
    p = Picture(16, 16)
    for x in (4, 10):
        p.rect(x, 2, 2, 12, ORANGE)
    for y in (5, 9):
        p.rect(2, y, 12, 2, ORANGE)
    return p


def label():
    p = Picture(16, 16)
    p.polygon([(0, 8), (5, 3), (15, 3), (15, 13), (5, 13)], INK)
    p.polygon([(1.4, 8), (5.4, 4), (14, 4), (14, 12), (5.4, 12)], YELLOW)
    p.disc(5, 8, 1.5, INK)
    p.rect(8, 6, 4, 1, INK)
    p.rect(8, 9, 4, 1, INK)
    return p


# --- Nodes of a project ---


def project():
    p = Picture(18, 18)
    p.polygon([(9, 1), (17, 5), (17, 13), (9, 17), (1, 13), (1, 5)], INK)
    p.polygon([(9, 2), (15, 5), (9, 8), (3, 5)], SHADE)
    p.polygon([(2, 6), (8, 9), (8, 15.5), (2, 12.5)], BLUE)
    p.polygon([(16, 6), (10, 9), (10, 15.5), (16, 12.5)], WHITE)
    return p


def application():
    p = Picture(18, 18)
    p.rect(1, 2, 16, 14, INK)
    p.rect(2, 5, 14, 10, WHITE)
    p.rect(3, 3, 1, 1, WHITE)
    p.rect(5, 3, 1, 1, WHITE)
    p.polygon([(7, 6), (8, 6), (12, 10), (8, 14), (7, 14)], GREEN)
    return p


def group():
    p = Picture(18, 18)
    p.polygon([(1, 4), (2, 3), (7, 3), (9, 5), (17, 5), (17, 16), (1, 16)], INK)
    p.polygon([(2, 4), (6.4, 4), (8.4, 6), (16, 6), (16, 7), (2, 7)], SHADE)
    p.rect(2, 8, 14, 7, YELLOW)
    return p


def assembler():
    p = lettered_page("A", RED)
    for y in (7, 10, 13):
        p.rect(1, y, 2, 1, STEEL)
        p.rect(15, y, 2, 1, STEEL)
    return p


def header():
    p = lettered_page("h", GREEN)
    p.rect(4, 2, 7, 3, GREEN)
    return p


def c_plus_plus():
    p = page(18)
    p.glyph(4, 7, LETTERS["c"], PURPLE)
    for y in (7, 12):
        p.glyph(10, y, LETTERS["+"], INK)
    return p


def library():
    p = Picture(18, 18)
    for x, top, colour in ((1, 3, BLUE), (5, 1, GREEN)):
        p.rect(x, top, 5, 16 - top, INK)
        p.rect(x + 1, top + 1, 3, 14 - top, colour)
        p.rect(x + 1, top + 3, 3, 1, WHITE)
    p.polygon([(9, 4), (13, 3), (17, 15), (13, 16)], INK)
    p.polygon([(10.4, 4.8), (12.4, 4.2), (15.6, 14.2), (13.6, 14.8)], RED)
    p.rect(1, 16, 16, 1, INK)
    return p


def linker_script():
    p = page(18)
    for y, height, colour in ((7, 3, BLUE), (10, 2, WHITE), (12, 4, GREY)):
        p.rect(5, y - 1, 8, height + 1, INK)
        p.rect(6, y, 6, height - 1, colour)
    return p


def debug_session():
    p = Picture(18, 18)
    add_bug(p, 3, 3)
    return p


def live_debug_session():
    p = Picture(18, 18)
    add_bug(p, 0, 0)
    p.polygon([(9, 8), (11, 8), (18, 13), (11, 18), (9, 18)], INK)
    p.polygon([(10, 9.6), (16.2, 13), (10, 16.6)], GREEN)
    return p


def debugger_source():
    p = ruled_page(18)
    p.polygon([(0, 9), (5, 9), (5, 6), (11, 11), (5, 16), (5, 13), (0, 13)], INK)
    p.polygon([(1, 10), (6, 10), (6, 8), (9.6, 11), (6, 14), (6, 12), (1, 12)], YELLOW)
    return p


def dependencies():
    p = Picture(18, 18)
    for x, y in ((1, 1), (10, 10)):
        p.rect(x, y, 7, 7, INK)
        p.rect(x + 1, y + 1, 5, 5, WHITE)
    p.rect(4, 8, 1, 6, STEEL)
    p.rect(4, 13, 4, 1, STEEL)
    p.polygon([(6, 11), (7, 11), (9, 13), (9, 14), (7, 16), (6, 16)], STEEL)
    return p


# --- Commands in tool bars and menus ---


def arc(p, centre, outer, inner, start, end, colour):
    """A piece of a ring, from one angle to another in degrees, clockwise from the right."""
    angles = [math.radians(start + (end - start) * step / 12) for step in range(13)]
    x, y = centre
    rim = [(x + outer * math.cos(a), y + outer * math.sin(a)) for a in angles]
    hole = [(x + inner * math.cos(a), y + inner * math.sin(a)) for a in reversed(angles)]
    p.polygon([(round(a, 2), round(b, 2)) for a, b in rim + hole], colour)


def add_plus(p):
    p.rect(11, 9, 2, 6, GREEN)
    p.rect(9, 11, 6, 2, GREEN)


def small_page(p, x, y, lines=3):
    p.rect(x, y, 9, 11, STEEL)
    p.rect(x + 1, y + 1, 7, 9, WHITE)
    for line in range(lines):
        p.rect(x + 2, y + 3 + 2 * line, 5, 1, GREY)


def small_folder(p):
    p.polygon([(1, 3), (6, 3), (8, 5), (15, 5), (15, 14), (1, 14)], ORANGE)
    p.rect(2, 7, 12, 6, YELLOW)


def hammer(colour=ORANGE):
    p = Picture(16, 16)
    p.polygon([(1, 13), (3, 15), (10, 8), (8, 6)], colour)
    p.polygon([(4, 4), (8, 1), (11, 2), (15, 7), (12, 10)], STEEL)
    return p


def command_build_application():
    p = hammer()
    p.rect(6, 7, 10, 9, STEEL)
    p.rect(7, 9, 8, 6, WHITE)
    p.polygon([(9, 9), (13, 12), (9, 15)], GREEN)
    return p


def command_rebuild():
    p = Picture(16, 16)
    for start in (200, 20):
        arc(p, (8, 8), 7, 5, start, start + 125, BLUE)
    p.polygon([(10, 6), (16, 6), (13.4, 0.6)], BLUE)
    p.polygon([(6, 10), (0, 10), (2.6, 15.4)], BLUE)
    return p


def command_stop():
    p = Picture(16, 16)
    octagon(p, 1, 15, 4, RED)
    p.rect(5, 5, 6, 6, WHITE)
    return p


def command_clean():
    p = Picture(16, 16)
    p.polygon([(13, 0), (16, 2), (9, 9), (7, 7)], ORANGE)
    p.polygon([(5, 6), (10, 11), (7, 15), (3, 14), (5, 12), (1, 13), (1, 9)], YELLOW)
    return p


def command_add_files():
    p = Picture(16, 16)
    small_page(p, 2, 1)
    add_plus(p)
    return p


def command_new_folder():
    p = Picture(16, 16)
    small_folder(p)
    add_plus(p)
    return p


def command_new_application():
    p = Picture(16, 16)
    p.rect(1, 2, 13, 11, STEEL)
    p.rect(2, 5, 11, 7, WHITE)
    add_plus(p)
    return p


def command_options():
    p = Picture(16, 16)
    for y, knob in ((3, 10), (8, 5), (13, 11)):
        p.rect(1, y - 1, 14, 2, STEEL)
        p.disc(knob, y, 2.5, BLUE)
    return p


def command_open():
    p = Picture(16, 16)
    small_page(p, 3, 3)
    p.polygon([(8, 1), (15, 1), (15, 8), (13, 6), (9, 10), (6, 7), (10, 3)], BLUE)
    return p


def command_copy():
    p = Picture(16, 16)
    small_page(p, 1, 1, 2)
    small_page(p, 6, 4)
    return p


def command_paste():
    p = Picture(16, 16)
    p.rect(1, 2, 12, 13, ORANGE)
    p.rect(4, 1, 6, 3, STEEL)
    small_page(p, 6, 5)
    return p


def command_remove():
    p = Picture(16, 16)
    p.polygon([(4, 2), (8, 6), (12, 2), (14, 4), (10, 8), (14, 12), (12, 14), (8, 10), (4, 14), (2, 12), (6, 8), (2, 4)], RED)
    return p


def command_activate():
    p = Picture(16, 16)
    p.polygon([(2, 8), (4, 6), (7, 9), (12, 3), (14, 5), (7, 13)], GREEN)
    return p


# --- Others ---


def marker():
    p = Picture(16, 16)
    p.rect(3, 1, 2, 14, STEEL)
    p.polygon([(5, 1), (14, 5), (5, 9)], INK)
    p.polygon([(5, 2.4), (11.4, 5), (5, 7.6)], RED)
    return p


def sort():
    p = Picture(16, 16)
    p.rect(3, 2, 2, 8, STEEL)
    p.polygon([(0, 9), (8, 9), (8, 10), (4, 14), (0, 10)], STEEL)
    for row, width in enumerate((2, 4, 6, 8)):
        p.rect(8, 2 + 3 * row, width, 2, BLUE)
    return p


def wizard():
    p = Picture(48, 48)
    for y in (12, 18, 24, 30, 36):
        p.rect(5, y, 34, 3, STEEL)
    p.rect(10, 8, 24, 36, INK)
    p.rect(11, 9, 22, 34, TEAL)
    p.disc(15, 13, 2, WHITE)
    p.rect(15, 34, 14, 2, WHITE)
    p.rect(15, 38, 9, 2, WHITE)
    star = [(36, 1), (39, 9), (47, 12), (39, 15), (36, 23), (33, 15), (25, 12), (33, 9)]
    p.polygon(star, INK)
    inner = [(36, 4), (38.2, 9.8), (44, 12), (38.2, 14.2), (36, 20), (33.8, 14.2), (28, 12), (33.8, 9.8)]
    p.polygon(inner, YELLOW)
    return p


# By file name. A list is a strip, whose positions are the numbers used by rows.
PICTURES = {
    "errors": [plain(), warning(), error(), system_row(), information(), heading()],
    "globals": [function(), variable(), type_name(), define(), ruled_page(16), label()],
    "marker": marker(),
    "dependencies": dependencies(),
    "target": chip(),
    "wizard": wizard(),
    "class-func": centred(function(), 18, 18),
    "class-variable": centred(variable(), 18, 18),
    "class-type": centred(type_name(), 18, 18),
    "class-define": centred(define(), 18, 18),
    "class-file": ruled_page(18),
    "class-toolbar": sort(),
    "node-project": project(),
    "node-application": application(),
    "node-debug": debug_session(),
    "node-debug-live": live_debug_session(),
    "node-group": group(),
    "node-c": lettered_page("C", BLUE),
    "node-cpp": c_plus_plus(),
    "node-asm": assembler(),
    "node-header": header(),
    "node-text": ruled_page(18),
    "node-library": library(),
    "node-linker": linker_script(),
    "node-debug-text": debugger_source(),
}


# Used by the desktop host only, so drawn as SVG only.
COMMANDS = {
    "command-build": hammer(),
    "command-build-application": command_build_application(),
    "command-rebuild": command_rebuild(),
    "command-clean": command_clean(),
    "command-stop": command_stop(),
    "command-add-files": command_add_files(),
    "command-new-folder": command_new_folder(),
    "command-new-application": command_new_application(),
    "command-options": command_options(),
    "command-open": command_open(),
    "command-copy": command_copy(),
    "command-paste": command_paste(),
    "command-remove": command_remove(),
    "command-activate": command_activate(),
}


def whole(picture):
    return strip(picture) if isinstance(picture, list) else picture
