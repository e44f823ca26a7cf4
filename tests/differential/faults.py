"""Damages files, always in the same way for the same seed."""

import re

STRUCTURAL = b'()" \n\t\\<>[]/_-09\0\xff'
NUMBERS = (b"0", b"-1", b"1", b"4294967295", b"4294967296", b"99999999999999999999", b"007", b"x")
NUMBER = re.compile(rb"(?<![\w.])\d+(?![\w.])")


class Random:
    """A generator that gives the same numbers whatever runs it."""

    def __init__(self, seed):
        self._state = seed & 0xFFFFFFFFFFFFFFFF

    def below(self, limit):
        self._state = (self._state + 0x9E3779B97F4A7C15) & 0xFFFFFFFFFFFFFFFF
        mixed = self._state
        mixed = ((mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9) & 0xFFFFFFFFFFFFFFFF
        mixed = ((mixed ^ (mixed >> 27)) * 0x94D049BB133111EB) & 0xFFFFFFFFFFFFFFFF
        return (mixed ^ (mixed >> 31)) % limit


def seed_of(text):
    """A seed that depends on every byte of a text."""
    seed = 0xCBF29CE484222325
    for byte in text.encode():
        seed = ((seed ^ byte) * 0x100000001B3) & 0xFFFFFFFFFFFFFFFF
    return seed


def cut(data, random, place, places):
    """Keeps the bytes before the place-th of so many places, which lie anywhere in their share."""
    share = max(len(data) // places, 1)
    return data[: min(place * share + random.below(share), len(data))]


def flip(data, random):
    """Changes one to three bytes: a bit of each, or the byte for one that means something."""
    damaged = bytearray(data)
    for _ in range(1 + random.below(3)):
        at = random.below(len(damaged))
        if random.below(2) == 0:
            damaged[at] ^= 1 << random.below(8)
        else:
            damaged[at] = STRUCTURAL[random.below(len(STRUCTURAL))]
    return bytes(damaged)


def shuffle_lines(data, random):
    """Loses a line, doubles it or puts it elsewhere."""
    lines = data.splitlines(keepends=True)
    at = random.below(len(lines))
    how = random.below(3)
    line = lines[at] if how == 1 else lines.pop(at)
    if how > 0:
        lines.insert(random.below(len(lines) + 1), line)
    return b"".join(lines)


def change_number(data, random):
    """Puts another number, or a word, where a number stands."""
    numbers = list(NUMBER.finditer(data))
    if not numbers:
        return data
    number = numbers[random.below(len(numbers))]
    return data[: number.start()] + NUMBERS[random.below(len(NUMBERS))] + data[number.end() :]


def damaged_files(data, name, count):
    """Pairs of a fault's name and the damaged bytes: so many cuts and flips, half as many others."""
    for number in range(count):
        random = Random(seed_of(f"{name} cut {number}"))
        yield f"cut{number}", cut(data, random, number, count)
    for number in range(1, 5):
        yield f"end{number}", data[:-number]
    for kind, change, times in (
        ("flip", flip, count),
        ("line", shuffle_lines, count // 2),
        ("number", change_number, count // 2),
    ):
        for number in range(times):
            yield f"{kind}{number}", change(data, Random(seed_of(f"{name} {kind} {number}")))


def odd_files():
    """Pairs of a name and bytes that no tool would write."""
    yield "empty", b""
    yield "blank", b" \n"
    yield "nul", bytes(4096)
    yield "nested", b"(" * 200000
    yield "closed", b")" * 10
    yield "word", b"(" + b"w" * 1500000 + b")"
    yield "unquoted", b'(edif "never closed'
    yield "latin", bytes(range(1, 256)) * 4
    yield "bom", b"\xef\xbb\xbf(edif top)"
