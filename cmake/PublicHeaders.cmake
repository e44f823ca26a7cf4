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
  crossreference/XRFDataBaseInterface.h
  crossreference/XRF_RTL2LL.h
  hpi/HPICommonUtils.h
  lmx60/AnyInfo.h
  lmx60/CrackedName.h
  lmx60/Drivers.h
  lmx60/Error.h
  lmx60/Exception.h
  lmx60/Integer.h
  lmx60/KnownElements.h
  lmx60/NestedList.h
  lmx60/OptionalValue.h
  lmx60/OwnedChild.h
  lmx60/OwnedList.h
  lmx60/Source.h
  lmx60/Target.h
  lmx60/TextList.h
  lmx60/UnmarshalHelper.h
  lmx60/Validation.h
  lmx60/XmlReader.h
  lmx60/XmlWriter.h
  support/Api.h
  support/Handlers.h
  support/Limits.h
  support/Range.h)

# The same for headers that are made in the build tree, in XRF_GENERATED_DIR.
set(XRF_GENERATED_PUBLIC_HEADERS
  ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h)
