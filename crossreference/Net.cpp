#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>
#include <crossreference/Signal.h>

#include <algorithm>

namespace XRF_RTL2LL {

void* Net::operator new(std::size_t size) {
  // The caller may have been compiled with an older, smaller class.
  return ModelState::current().arena.allocate(std::max(size, sizeof(Net)));
}

Net::Net() : Net(ModelState::current()) {}

Net::Net(ModelState& model) : m_id(model.nextNetId++) { model.nets.add(this); }

unsigned int Net::getId() const { return m_id; }

Range<Signal> Net::getSignals() const {
  members::settle<Signal>(m_signals, true);
  return members::range<Signal>(m_signals, false);
}

bool Net::isEnabled() const { return m_enabled; }

void Net::enable() { m_enabled = true; }

void Net::disable() { m_enabled = false; }

void Net::addSignal(Signal* signal) { signal->setNet(this); }

Range<Net> Net::getAllNets() { return ModelState::current().nets.range(); }

}  // namespace XRF_RTL2LL
