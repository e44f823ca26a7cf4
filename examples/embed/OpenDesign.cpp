#include "OpenDesign.h"

#include "Guest.h"

using namespace XRF_RTL2LL;

OpenDesign::OpenDesign(const std::string& file) {
  const ModelScope scope(m_model);
  // Extended reading finds the registers under the names of the source.
  m_design = std::make_unique<Design>(Matching::Extended);
  m_design->parse_xrf(file);
  if (m_design->getNetlist()->getTop(RTL) == nullptr) {
    throw BadFile("it holds no RTL view", file, 0);
  }
}

OpenDesign::Register OpenDesign::find(const std::string& name) const {
  const Module* top = m_design->getNetlist()->getTop(RTL);
  const bool full = !name.empty() && name.front() == '/';
  const Signal* signal =
      m_design->findSignal(RTL, full ? name : std::string("/") + top->getName() + "/" + name);
  if (signal == nullptr) return {};
  Register found{signal->getFullName(), {}};
  for (unsigned index = signal->getMsb() + 1; index-- > signal->getLsb();) {
    const BitRef* reference = signal->getBitRef(index, true);
    found.bits.push_back({index, reference == nullptr ? nullptr : reference->getBit()});
  }
  return found;
}

std::vector<std::string> OpenDesign::registersAt(unsigned frame, unsigned offset) const {
  std::vector<std::string> names;
  for (const XRF_RTL2LL::RegisterBit& bit : m_design->registersAt(frame, offset)) {
    names.push_back(m_design->writtenName(bit));
  }
  return names;
}
