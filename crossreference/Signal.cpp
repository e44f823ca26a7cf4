#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>
#include <crossreference/Signal.h>
#include <support/Report.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

namespace XRF_RTL2LL {

namespace {

void checkRange(const Limits& limits, const Signal& signal, std::uint64_t lsb, std::uint64_t msb) {
  if (msb > limits.signalIndex || lsb > limits.signalIndex) {
    fatalHere("Index %llu of signal %s is above the highest index, %llu.",
              static_cast<unsigned long long>(std::max(lsb, msb)), signal.getName(),
              static_cast<unsigned long long>(limits.signalIndex));
  }
}

void checkWidth(const Limits& limits, const Signal& signal, std::uint64_t lsb, std::uint64_t msb) {
  if (msb >= lsb && msb - lsb >= limits.signalWidth) {
    fatalHere("Signal %s from %llu to %llu is wider than %llu bits.", signal.getName(),
              static_cast<unsigned long long>(lsb), static_cast<unsigned long long>(msb),
              static_cast<unsigned long long>(limits.signalWidth));
  }
}

}  // namespace

// An array of references, with room for more indices.
struct alignas(BitRef*) Signal::Wide {
  std::uint32_t first = 0;
  std::uint32_t count = 0;
  std::uint32_t capacity = 0;

  BitRef** refs() { return reinterpret_cast<BitRef**>(this + 1); }
  static std::size_t bytes(std::size_t capacity) {
    return sizeof(Wide) + capacity * sizeof(BitRef*);
  }
  // An array that is made with the signal fits; one that grows has room to grow on.
  static Wide* make(Arena& arena, std::uint32_t count, const Wide* outgrown) {
    const std::size_t wanted =
        outgrown == nullptr ? count : std::max<std::size_t>(count, 2UL * outgrown->capacity);
    const std::size_t size = outgrown == nullptr ? bytes(wanted) : std::bit_ceil(bytes(wanted));
    void* place = outgrown == nullptr ? arena.allocate(size) : arena.allocateArray<char>(size);
    Wide* made = new (place) Wide;
    made->capacity = static_cast<std::uint32_t>((size - sizeof(Wide)) / sizeof(BitRef*));
    return made;
  }
  static void giveBack(Arena& arena, Wide* outgrown) {
    const std::size_t size = bytes(outgrown->capacity);
    if (std::has_single_bit(size)) arena.recycle(reinterpret_cast<char*>(outgrown), size);
  }
};

void* Signal::operator new(std::size_t size) {
  // The caller may have been compiled with an older, smaller class.
  return ModelState::current().arena.allocate(std::max(size, sizeof(Signal)));
}

Signal::Signal(Module* module, const char* name, unsigned int id, unsigned int lsb,
               unsigned int msb, bool noBits)
    : Signal(ModelState::current(), module, ModelState::current().names.intern(name), id, lsb, msb,
             noBits) {}

Signal::Signal(ModelState& model, Module* module, const Word* name, unsigned int id,
               unsigned int lsb, unsigned int msb, bool noBits)
    : m_name(name), m_module(module), m_refs{nullptr}, m_id(id), m_lsb(lsb), m_msb(msb) {
  m_kind = WIRE;
  m_wide = false;
  m_hidden = false;
  m_src_state = false;
  m_port = false;
  m_inferred_left = true;
  m_earlier_path = false;
  m_held = 0;
  m_dropped = false;
  enter(model, noBits);
}

void Signal::enter(ModelState& model, bool noBits) {
  checkRange(model.limits, *this, m_lsb, m_msb);
  if (!noBits && m_lsb <= m_msb) {
    checkWidth(model.limits, *this, m_lsb, m_msb);
    cover(model, m_lsb, m_msb);
    for (std::uint32_t index = m_lsb; index <= m_msb; ++index) addBit(model, index);
  }
  m_module->m_named_signals = true;
  model.signals.add(this);
}

void Signal::addBit(ModelState& model, unsigned int index) {
  auto* ref = new (model.arena.allocate(sizeof(BitRef))) BitRef(this, index);
  ref->m_bit = new (model.takeBit()) Bit(model);
  ref->m_bit->append(ref);
  store(index, ref);
}

void Signal::promiseBits(ModelState& model) {
  cover(model, m_lsb, m_msb);
  for (std::uint64_t index = m_lsb; index <= m_msb; ++index) {
    const auto at = static_cast<std::uint32_t>(index);
    auto* ref = new (model.arena.allocate(sizeof(BitRef))) BitRef(this, at);
    model.promiseBit(*ref);
    store(at, ref);
  }
  m_inferred_left = false;
}

void Signal::clearInferred() {
  const Entries all = entries();
  for (std::uint32_t at = 0; at < all.count; ++at) all.refs[at]->m_bit->m_inferred = false;
  m_inferred_left = false;
}

Signal::Entries Signal::entries() const {
  if (m_wide) return {m_refs.wide->refs(), m_refs.wide->first, m_refs.wide->count};
  auto** one = const_cast<BitRef**>(&m_refs.one);
  return {one, m_lsb, m_refs.one == nullptr ? 0U : 1U};
}

BitRef* Signal::entry(std::uint64_t index) const {
  const Entries all = entries();
  return index < all.first || index - all.first >= all.count ? nullptr
                                                             : all.refs[index - all.first];
}

void Signal::store(std::uint32_t index, BitRef* ref) {
  if (m_wide) {
    m_refs.wide->refs()[index - m_refs.wide->first] = ref;
  } else {
    m_refs.one = ref;
  }
}

// Makes room for the references of first..last beside those that are there.
void Signal::cover(ModelState& model, std::uint64_t first, std::uint64_t last) {
  const Entries before = entries();
  if (before.count != 0) {
    first = std::min<std::uint64_t>(first, before.first);
    last = std::max<std::uint64_t>(last, std::uint64_t{before.first} + before.count - 1);
  }
  const auto count = static_cast<std::uint32_t>(last - first + 1);
  const bool onlyIndex = first == last && first == m_lsb && m_lsb == m_msb;
  if ((!m_wide && onlyIndex) || count == before.count) return;
  Wide* outgrown = m_wide ? m_refs.wide : nullptr;
  const bool fits = m_wide && outgrown->capacity >= count;
  Wide* wide = fits ? outgrown : Wide::make(model.arena, count, outgrown);
  const std::uint32_t shift =
      before.count == 0 ? 0 : before.first - static_cast<std::uint32_t>(first);
  BitRef** after = wide->refs();
  std::memmove(after + shift, before.refs, before.count * sizeof(BitRef*));
  std::fill_n(after, shift, nullptr);
  std::fill(after + shift + before.count, after + count, nullptr);
  if (m_wide && !fits) Wide::giveBack(model.arena, outgrown);
  wide->first = static_cast<std::uint32_t>(first);
  wide->count = count;
  m_refs.wide = wide;
  m_wide = true;
}

template <class Visit>
void Signal::eachBit(Visit visit) const {
  const Entries all = entries();
  for (std::uint32_t at = 0; at < all.count; ++at) {
    const Bit* bit = all.refs[at] == nullptr ? nullptr : all.refs[at]->getBit();
    if (bit != nullptr) visit(*bit);
  }
}

unsigned int Signal::getId() const { return m_id; }

const char* Signal::getName() const { return m_name == nullptr ? nullptr : m_name->c_str(); }

std::string Signal::getFullName() const {
  std::string name(m_module->pathOf(*this)->view());
  name += '/';
  if (m_module->m_name != nullptr) name += *m_module->m_name;
  name += '/';
  if (m_name != nullptr) name += *m_name;
  return name;
}

Net* Signal::getNet() const { return m_net; }

Module* Signal::getModule() const { return m_module; }

signalKind Signal::getKind() const { return m_kind; }

void Signal::setKind(signalKind kind) { m_kind = kind; }

unsigned int Signal::getLsb() const { return m_lsb; }

unsigned int Signal::getMsb() const { return m_msb; }

unsigned int Signal::getWidth() const { return m_msb + 1 - m_lsb; }

bool Signal::isHidden() const { return m_hidden; }

void Signal::setHidden(bool hidden) { m_hidden = hidden; }

bool Signal::isSrcState() const { return m_src_state; }

BitRef* Signal::getBitRef(unsigned int index, bool quiet) const {
  if (m_lsb <= index && index <= m_msb) return entry(index);
  if (!quiet) {
    fatal("ERROR: Illegal index (%d) for Signal %s.\n", static_cast<int>(index),
          getFullName().c_str());
  }
  message(StandardError, "WARNING: Illegal index (%d) for Signal %s.\n", static_cast<int>(index),
          getFullName().c_str());
  return nullptr;
}

BitRef* Signal::getBitRef(unsigned int index) const { return getBitRef(index, false); }

void Signal::setBitRef(unsigned int index, BitRef* ref) {
  if (index > m_msb) {
    fatalHere("Signal %s has no place for a reference at %u, above its range.",
              getFullName().c_str(), index);
  }
  const Entries all = entries();
  if (index < all.first || index - all.first >= all.count) {
    cover(ModelState::current(), index, index);
  }
  store(index, ref);
}

void Signal::setNet(Net* net) {
  m_net = net;
  if (net != nullptr) members::append(ModelState::current().arena, net->m_signals, this);
}

bool Signal::isEnabled() const { return m_net != nullptr && m_net->m_enabled; }

void Signal::enable() {
  if (m_net != nullptr) m_net->enable();
}

void Signal::disable() {
  if (m_net != nullptr) m_net->disable();
}

void Signal::setSrcState() {
  m_src_state = true;
  const Entries all = entries();
  for (std::uint32_t at = 0; at < all.count; ++at) {
    const BitRef* ref = all.first + at < m_lsb ? nullptr : all.refs[at];
    Bit* bit = ref == nullptr ? nullptr : ref->getBit();
    if (bit != nullptr) bit->setSrc(true);
  }
}

void Signal::addState(unsigned int index, unsigned int loc1, unsigned int loc2, unsigned int loc3) {
  const BitRef* ref = getBitRef(index, true);
  Bit* bit = ref == nullptr ? nullptr : ref->getBit();
  if (bit == nullptr) return;
  bit->setKind(Bit::STATE);
  bit->setStateLoc(loc1, loc2, loc3);
}

void Signal::addState(unsigned int index, unsigned int loc1, unsigned int loc2) {
  addState(index, loc1, loc2, 0);
}

unsigned int Signal::getAvail() const {
  unsigned int count = 0;
  eachBit([&](const Bit& bit) { count += bit.getKind() != Bit::UNKNOWN ? 1U : 0U; });
  return count;
}

unsigned int Signal::getUnread() const {
  unsigned int count = 0;
  eachBit([&](const Bit& bit) { count += bit.getKind() == Bit::UNREAD ? 1U : 0U; });
  return count;
}

unsigned int Signal::getInferred() const {
  unsigned int count = 0;
  eachBit([&](const Bit& bit) { count += bit.isInferred() ? 1U : 0U; });
  return count;
}

bool Signal::allZeros() const {
  bool all = true;
  eachBit([&](const Bit& bit) { all = all && bit.getKind() == Bit::CNST && !bit.getValue(); });
  return all;
}

bool Signal::allOnes() const {
  bool all = true;
  eachBit([&](const Bit& bit) { all = all && bit.getKind() == Bit::CNST && bit.getValue(); });
  return all;
}

std::string Signal::getValueStr(bool display) const {
  std::string text;
  const Entries all = entries();
  for (std::uint32_t at = all.count; at > 0; --at) {
    const BitRef* ref = all.refs[at - 1];
    const Bit* bit = ref == nullptr ? nullptr : ref->getBit();
    if (bit != nullptr) text += bit->getValueStr(display);
  }
  return text;
}

std::string Signal::getSignature() const {
  std::string text = std::to_string(m_msb) + "_";
  eachBit([&](const Bit& bit) { text += std::to_string(bit.getId()) + "_"; });
  return text + std::to_string(m_lsb);
}

void Signal::expand(unsigned int lsb, unsigned int msb) {
  ModelState& model = ModelState::current();
  checkRange(model.limits, *this, lsb, msb);
  checkWidth(model.limits, *this, std::min(lsb, m_lsb), std::max(msb, m_msb));
  if (msb > m_msb) {
    cover(model, m_msb + 1, msb);
    for (std::uint32_t index = m_msb + 1; index <= msb; ++index) addBit(model, index);
    m_msb = msb;
  }
  if (lsb < m_lsb) {
    // Room below as above grows with the signal, so that growing bit by bit stays cheap.
    const Entries all = entries();
    const std::uint32_t spare = all.count == 0 ? 0 : std::min(lsb, m_msb - lsb);
    if (all.count == 0 || lsb < all.first) cover(model, lsb - spare, m_lsb - 1);
    for (std::uint32_t index = lsb; index < m_lsb; ++index) addBit(model, index);
    m_lsb = lsb;
  }
}

bool Signal::merge(Signal* other, unsigned int offset) {
  bool conflict = false;
  const Entries all = entries();
  for (std::uint32_t at = 0; at < all.count; ++at) {
    BitRef* ref = all.refs[at];
    if (ref == nullptr || all.first + at < m_lsb) continue;
    BitRef* absorbed = other->getBitRef(all.first + at + offset, true);
    if (absorbed == nullptr || conflict) continue;
    conflict = ref->merge(absorbed) != 0;
  }
  return conflict;
}

int Signal::merge(Signal* other, unsigned int i, unsigned int j) {
  BitRef* ref = getBitRef(i);
  BitRef* absorbed = other->getBitRef(j, true);
  // A conflict of constants is reported by the merge; both bits stay as they are.
  if (ref != nullptr && absorbed != nullptr) ref->merge(absorbed);
  return 0;
}

Range<Signal> Signal::getAllSignals() { return ModelState::current().signals.range(); }

bool CompareSignals::operator()(const Signal* a, const Signal* b) const {
  const auto text = [](const Signal* signal) {
    return signal->getName() == nullptr ? "" : signal->getName();
  };
  return sigcmp(text(a), text(b)) < 0;
}

}  // namespace XRF_RTL2LL
