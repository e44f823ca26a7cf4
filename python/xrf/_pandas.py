"""The register table as a DataFrame."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

if TYPE_CHECKING:
    import numpy.typing
    import pandas  # type: ignore[import]

    from ._xrf import Design


def register_frame(design: Design) -> pandas.DataFrame:
    """The columns of the structured array; what is not known is missing, names are categories."""
    import pandas

    table, names = design.registers_numpy()
    located = table["kind"] == "STATE"
    constant = table["kind"] == "CNST"

    def known(column: str, mask: numpy.typing.NDArray[Any], nullable: str) -> pandas.Series[Any]:
        return pandas.Series(table[column], dtype=nullable).where(mask)

    return pandas.DataFrame(
        {
            "signal": pandas.Categorical.from_codes(table["signal"].astype("i4"), names),
            "index": table["index"],
            "kind": pandas.Categorical(table["kind"]),
            "frame": known("frame", located, "UInt32"),
            "offset": known("offset", located, "UInt32"),
            "slr": known("slr", located, "UInt32"),
            "value": known("value", constant, "Int8"),
        }
    )
