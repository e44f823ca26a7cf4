"""Where flip-flops lie in the device, and the location file that says so."""

from dataclasses import dataclass

from names import lot

FLIP_FLOP_LATCHES = ("AQ", "BQ", "CQ", "DQ", "A5Q", "B5Q", "C5Q", "D5Q")
MULTIPLEXER_LATCHES = ("AMUX", "BMUX", "CMUX", "DMUX")

HEADER = """\
Revision 3
; Created by the bitstream writer
; Columns: <offset> <frame address> <frame offset> <information>
;
Info STARTSEL0=1
Info Resolution=20 (frames)
"""

OTHER_LINES = """\
Bit 34086752 0x00200000    992 Block=RAMB36_X0Y23 Ram=B:BIT0
Bit 34086784 0x00200000   1024 Block=SLICE_X30Y90 Ram=A:1
Bit 34086816 0x00200040     16 Block=RAMB36_X2Y0 Latch=DOBU15 Net=tmp[3][63]
Bit 34086848 0x00200040     32 Block=B9 Latch=I Net=clk
Bit 34086880 0x00200040     48 Block=OLOGIC_X6Y3 Type=OUTFF
"""


@dataclass(frozen=True)
class Place:
    frame: int
    offset: int
    block: str
    latch: str

    @staticmethod
    def number(slot, is_lut=False):
        """Neighbouring numbers lie apart, so that a mistaken neighbour shows."""
        spread = slot * 577 % 65536
        cluster, letter = divmod(spread, 8)
        column, row = divmod(cluster, 50)
        latch = FLIP_FLOP_LATCHES[letter]
        if is_lut or letter < 4 and lot(str(slot), "latch") % 6 == 0:
            latch = MULTIPLEXER_LATCHES[letter % 4]
        frame = 0x00400000 + (column << 7) + 0x1F
        return Place(frame, row * 64 + letter * 7 + 3, f"SLICE_X{column}Y{row}", latch)


def location_text(lines):
    """`lines` holds places with the full names of their nets."""
    text = [HEADER]
    ordered = sorted(lines, key=lambda line: (line[0].frame, line[0].offset))
    for number, (place, net) in enumerate(ordered):
        text.append(
            f"Bit {10000000 + number * 32:8d} 0x{place.frame:08x} {place.offset:6d} "
            f"Block={place.block} Latch={place.latch} Net={net}\n"
        )
    return "".join(text) + OTHER_LINES
