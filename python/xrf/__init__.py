"""Where in an FPGA's configuration memory the value of an RTL register lives.

    import xrf

    design = xrf.Design.load("top.xrf")
    for bit in design.signal("u0/cnt"):
        print(bit)

Names that are no UTF-8 in a file come and go with lone surrogates, as the names of files do.
"""

from . import metadata, types
from ._error import Error
from ._xrf import Bit, Design, HardwareEmulationMap, Module, Signal, __version__

__all__ = [
    "Bit", "Design", "Error", "HardwareEmulationMap", "Module", "Signal", "__version__", "metadata",
    "types",
]
