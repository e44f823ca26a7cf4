#include <python/OpenDesign.h>
#include <support/FileReplacement.h>
#include <tools/xrf/Doubts.h>
#include <tools/xrf/Failure.h>
#include <tools/xrf/InputCheck.h>

#include <algorithm>
#include <new>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace xrf::python {

using XRF_RTL2LL::Design;
using XRF_RTL2LL::EdifView;
using XRF_RTL2LL::ModelScope;

OpenDesign::OpenDesign(const DesignReading& how) {
  const ModelScope scope(m_model);
  m_design = std::make_unique<Design>(how.matching);
  m_design->setLimits(how.limits);
}

XRF_RTL2LL::Module* OpenDesign::top(EdifView view) const {
  return m_design->getNetlist()->getTop(view);
}

void OpenDesign::save(const std::string& path, bool hideHidden) const {
  XRF_RTL2LL::FileReplacement file(path);
  if (file.error() == 0) m_design->exportDesign(file.path(), !hideHidden);
  if (!file.commit()) {
    throw Failure("cannot write: " + std::system_category().message(file.error()), path);
  }
}

// Strict reading leaves the highest bit id of a loaded file undeclared, and what is saved without
// it does not read back.
void OpenDesign::declareBits() {
  const ModelScope scope(m_model);
  unsigned highest = 0;
  for (const XRF_RTL2LL::Bit* bit : XRF_RTL2LL::Bit::getAllBits()) {
    highest = std::max(highest, bit->getId());
  }
  XRF_RTL2LL::Bit::setMaxBitId(highest);
}

void OpenDesign::readDesign(const DesignFiles& files, Read& read) {
  if (files.xrf.empty()) {
    read.setInput(files.rtl);
    m_design->parse_rtl(files.rtl);
    read.setInput(files.synth);
    m_design->parse_synth(files.synth);
    if (m_design->getFamily() == XRF_RTL2LL::TORVAL7) return;
    throw Failure(
        "the device family is not known: the netlist's header does not name the program "
        "\"Tarvona\"",
        files.rtl);
  }
  read.setInput(files.xrf);
  m_design->parse_xrf(files.xrf);
  if (top(XRF_RTL2LL::RTL) == nullptr && top(XRF_RTL2LL::SYNTH) == nullptr) {
    throw Failure("holds no design; is it a cross-reference file?", files.xrf);
  }
  declareBits();
  const bool more = !files.locations.empty() || !files.log.empty();
  if (more && m_design->getFamily() != XRF_RTL2LL::TORVAL7) {
    throw Failure("the device family is not known: the file has no (FAMILY TORVAL7) line",
                  files.xrf);
  }
}

void OpenDesign::readDeviceFiles(const DesignFiles& files, Read& read) {
  if (!files.locations.empty()) {
    read.setInput(files.locations);
    m_design->parse_ll(files.locations);
    if (m_design->locationReport().lines == 0) {
      read.warn(files.locations + ": no line tells a location");
    }
  }
  if (!files.log.empty()) {
    read.setInput(files.log);
    m_design->parse_log(files.log);
    return;
  }
  read.setInput({});
  // What was complete when it was saved stays as it is.
  if (!files.xrf.empty() && files.locations.empty()) return;
  m_design->getNetlist()->finalPostProcess();
  m_design->initializeBits();
}

std::shared_ptr<OpenDesign> OpenDesign::read(const DesignFiles& files, const DesignReading& how,
                                             Read::Progress progress) {
  const auto check = [](const std::string& input, FileKind kind) {
    if (!input.empty()) requireReadable(input, kind);
  };
  check(files.rtl, FileKind::Netlist);
  check(files.synth, FileKind::Netlist);
  check(files.xrf, FileKind::CrossReference);
  check(files.locations, FileKind::Locations);
  check(files.log, FileKind::Log);
  auto opened = std::make_shared<OpenDesign>(how);
  Read read(std::move(progress));
  try {
    opened->readDesign(files, read);
    opened->readDeviceFiles(files, read);
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::logic_error&) {
    throw Failure("the file is malformed", read.input());
  }
  if (files.xrf.empty() || !files.locations.empty() || !files.log.empty()) {
    const DeviceFiles device{files.locations, files.log, how.matching};
    for (const std::string& doubt : doubtsOf(*opened->m_design, device)) {
      read.warn(doubt);
    }
  }
  opened->m_warnings = read.warnings();
  return opened;
}

}  // namespace xrf::python
