"""The synthesis log: which registers became constants, and which were merged."""

from names import lot

HEADER = """\
#-----------------------------------------------------------
# Tarvona 2024.1 (64-bit)
#-----------------------------------------------------------
Starting RTL Elaboration : Time (s): cpu = 00:00:03 ; elapsed = 00:00:04
Start Cross Boundary and Area Optimization
WARNING: [Synth 8-3936] Found unconnected internal register and it is trimmed
"""

FOOTER = """\
Finished Cross Boundary and Area Optimization : Time (s): cpu = 00:01:40
synth_design completed successfully
"""


def log_text(outcomes):
    lines = []
    for outcome in outcomes:
        if outcome.kind == "constant":
            lines.append(_constant(outcome))
        elif outcome.kind == "merged":
            lines.append(_merge(outcome))
    return HEADER + "".join(lines) + FOOTER


def _constant(outcome):
    choice = lot(outcome.element, "spelling") % 4
    severity = "" if choice == 3 else "INFO: "
    blank = "" if choice == 2 else " "
    element = outcome.element
    if choice < 2:
        level = element.rfind("/") + 1
        element = f"{element[:level]}\\{element[level:]}"
    return (
        f"{severity}[Synth 8-3333] propagating constant {outcome.value} "
        f"across sequential element ({element}{blank})\n"
    )


def _merge(outcome):
    return (
        f"INFO: [Synth 8-3886] merging instance '{outcome.element}' ({outcome.cell}) "
        f"to '{outcome.survivor}'\n"
    )
