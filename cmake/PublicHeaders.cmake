# Every header a user may include: installed under include/xrf in this very tree, and compiled alone
# by the tests. A header that is not named here belongs to the library.
set(XRF_PUBLIC_HEADERS
  crossreference/Bit.h
  crossreference/Design.h
  crossreference/Export.h
  crossreference/Model.h
  crossreference/ModelText.h
  crossreference/Module.h
  crossreference/Netlist.h
  crossreference/Signal.h
  crossreference/TokenMap.h
  crossreference/Types.h
  crossreference/Utils.h
  crossreference/XRF_RTL2LL.h
  support/Api.h
  support/Handlers.h
  support/Range.h)
