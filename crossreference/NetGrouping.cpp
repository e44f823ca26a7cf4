#include <crossreference/MemberSet.h>
#include <crossreference/NetGrouping.h>

#include <algorithm>

namespace XRF_RTL2LL {

namespace {

// Orders numbers as their decimal texts followed by `end`: "_" sorts after every digit, the end of
// the text before. The digits are taken to ten by nines or zeros, and which of two numbers that
// come out alike has more digits decides.
std::uint64_t textKey(std::uint32_t number, bool last) {
  constexpr unsigned most = 10;
  std::uint64_t power = 10;
  unsigned digits = 1;
  for (; power <= number; power *= 10) ++digits;
  std::uint64_t scale = 1;
  for (unsigned missing = most - digits; missing > 0; --missing) scale *= 10;
  constexpr std::uint64_t kinds = 32;
  if (last) return number * scale * kinds + digits;
  return (number * scale + scale - 1) * kinds + kinds - digits;
}

// The numbers of a signature in turn: the msb, the ids of the bits, the lsb.
class SignatureWalk {
 public:
  SignatureWalk(std::uint32_t msb, std::uint32_t lsb, BitRef* const* refs, std::uint32_t count)
      : m_msb(msb), m_lsb(lsb), m_refs(refs), m_count(count) {}

  // The key of the next number, or 0 at the end.
  std::uint64_t next() {
    if (!m_started) {
      m_started = true;
      return textKey(m_msb, false);
    }
    while (m_at < m_count) {
      const BitRef* ref = m_refs[m_at++];
      const Bit* bit = ref == nullptr ? nullptr : ref->getBit();
      if (bit != nullptr) return textKey(bit->getId(), false);
    }
    if (m_ended) return 0;
    m_ended = true;
    return textKey(m_lsb, true);
  }

 private:
  std::uint32_t m_msb;
  std::uint32_t m_lsb;
  BitRef* const* m_refs;
  std::uint32_t m_count;
  std::uint32_t m_at = 0;
  bool m_started = false;
  bool m_ended = false;
};

}  // namespace

int NetGrouping::compare(const Signal& a, const Signal& b) {
  const Signal::Entries refsA = a.entries();
  const Signal::Entries refsB = b.entries();
  SignatureWalk walkA(a.m_msb, a.m_lsb, refsA.refs, refsA.count);
  SignatureWalk walkB(b.m_msb, b.m_lsb, refsB.refs, refsB.count);
  while (true) {
    const std::uint64_t keyA = walkA.next();
    const std::uint64_t keyB = walkB.next();
    if (keyA != keyB) return keyA < keyB ? -1 : 1;
    if (keyA == 0) return 0;
  }
}

// Signals, their references and their bits are all over memory, so each is asked for ahead of its
// turn.
void NetGrouping::askForBitOf(std::size_t place) const {
  constexpr std::size_t refsAhead = 16;
  constexpr std::size_t bitsAhead = 8;
  if (const Signal* signal = m_model.signals.at(place + refsAhead); signal != nullptr) {
    __builtin_prefetch(signal->m_refs.one);
  }
  const Signal* signal = m_model.signals.at(place + bitsAhead);
  if (signal == nullptr || signal->m_wide || signal->m_refs.one == nullptr) return;
  __builtin_prefetch(signal->m_refs.one->m_bit);
}

// Points every reference at the bit that survives. Tells the bit of a signal that is just one.
const Bit* NetGrouping::onlyBitOf(const Signal& signal) const {
  const Signal::Entries all = signal.entries();
  const Bit* bit = nullptr;
  for (std::uint32_t at = 0; at < all.count; ++at) {
    bit = all.refs[at] == nullptr ? nullptr : all.refs[at]->getBit();
  }
  const bool oneBit = signal.m_msb == 0 && signal.m_lsb == 0 && all.count == 1 && all.first == 0;
  return oneBit ? bit : nullptr;
}

// Notes where the bits are, so that they are looked at once.
void NetGrouping::lookAtBits() {
  const std::size_t places = m_model.signals.nextPlace();
  m_spans = PageArray<Span>(m_model.bits.nextPlace());
  m_bits = PageArray<std::uint32_t>(places);
  for (std::size_t place = 0; place < places; ++place) {
    askForBitOf(place);
    const Signal* signal = m_model.signals.at(place);
    const Bit* bit = signal == nullptr ? nullptr : onlyBitOf(*signal);
    m_bits[place] = bit == nullptr ? several : bit->m_place;
    if (bit == nullptr) continue;
    Span& span = m_spans[bit->m_place];
    if (span.count++ == 0) span.first = static_cast<std::uint32_t>(place);
  }
}

void NetGrouping::collect() {
  m_model.bits.each([&](const Bit* bit) {
    const Span& span = m_spans[bit->m_place];
    if (span.count > 0)
      m_groups.push_back({textKey(bit->m_id, false), span.first, 0, bit->m_place});
  });
  for (std::size_t place = 0; place < m_bits.size(); ++place) {
    const Signal* signal = m_bits[place] == several ? m_model.signals.at(place) : nullptr;
    if (signal == nullptr) continue;
    const Signal::Entries all = signal->entries();
    SignatureWalk walk(signal->m_msb, signal->m_lsb, all.refs, all.count);
    walk.next();
    m_groups.push_back({walk.next(), static_cast<std::uint32_t>(place), signal->m_msb, several});
  }
}

bool NetGrouping::isBefore(const Group& a, const Group& b) const {
  if (a.msb != b.msb) return textKey(a.msb, false) < textKey(b.msb, false);
  if (a.firstId != b.firstId) return a.firstId < b.firstId;
  if (a.first == b.first) return false;
  const int order = compare(firstOf(a), firstOf(b));
  return order != 0 ? order < 0 : a.first < b.first;
}

void NetGrouping::sortGroups() {
  std::sort(m_groups.begin(), m_groups.end(),
            [this](const Group& a, const Group& b) { return isBefore(a, b); });
}

// Lays the signals of each net side by side, in what becomes the slots of the nets.
void NetGrouping::sortOneBitSignals() {
  std::uint32_t total = 0;
  for (const Group& group : m_groups) {
    if (!group.oneBit()) continue;
    m_spans[group.bit].end = total;
    total += m_spans[group.bit].count;
  }
  m_one_bit_signals = {
      static_cast<std::uintptr_t*>(m_model.arena.allocate(total * sizeof(std::uintptr_t))), total};
  constexpr std::size_t ahead = 16;
  for (std::size_t place = 0; place < m_bits.size(); ++place) {
    if (place + ahead < m_bits.size() && m_bits[place + ahead] != several) {
      __builtin_prefetch(&m_spans[m_bits[place + ahead]], 1);
    }
    if (m_bits[place] == several) continue;
    m_one_bit_signals[m_spans[m_bits[place]].end++] =
        reinterpret_cast<std::uintptr_t>(m_model.signals.at(place));
  }
}

std::span<std::uintptr_t> NetGrouping::oneBitSignalsOf(const Span& span) const {
  return m_one_bit_signals.subspan(span.end - span.count, span.count);
}

void NetGrouping::makeNet(std::size_t from, std::size_t to) {
  Net* net = new Net;
  detail::Members& set = net->m_signals;
  const Group& group = m_groups[from];
  if (to - from == 1 && group.oneBit()) {
    members::adopt(set, oneBitSignalsOf(m_spans[group.bit]));
  } else {
    joinGroups(set, from, to);
  }
  members::each<Signal>(set, [net](Signal* signal) { signal->m_net = net; });
  members::settle<Signal>(set, true);
}

void NetGrouping::joinGroups(detail::Members& set, std::size_t from, std::size_t to) {
  for (std::size_t at = from; at < to; ++at) {
    const Group& group = m_groups[at];
    if (!group.oneBit()) {
      members::append(m_model.arena, set, m_model.signals.at(group.first));
      continue;
    }
    for (const std::uintptr_t slot : oneBitSignalsOf(m_spans[group.bit])) {
      members::append(m_model.arena, set, members::object<Signal>(slot));
    }
  }
}

// The spans are in the order of the bits, and what they lead to is all over memory.
void NetGrouping::askForSignalsOf(std::size_t group) const {
  constexpr std::size_t spansAhead = 12;
  constexpr std::size_t signalsAhead = 8;
  constexpr std::size_t namesAhead = 4;
  const auto spanOf = [&](std::size_t at) {
    return at < m_groups.size() && m_groups[at].oneBit() ? &m_spans[m_groups[at].bit] : nullptr;
  };
  const Span* const soon = spanOf(group + spansAhead);
  if (soon != nullptr) __builtin_prefetch(soon);
  const Span* const sooner = spanOf(group + signalsAhead);
  if (sooner != nullptr) members::prefetchObjects<Signal>(oneBitSignalsOf(*sooner));
  const Span* const next = spanOf(group + namesAhead);
  if (next != nullptr) members::prefetchNames<Signal>(oneBitSignalsOf(*next));
}

void NetGrouping::run() {
  lookAtBits();
  collect();
  sortGroups();
  sortOneBitSignals();
  for (std::size_t from = 0; from < m_groups.size();) {
    askForSignalsOf(from);
    std::size_t to = from + 1;
    while (to < m_groups.size() && m_groups[to].msb == m_groups[from].msb &&
           m_groups[to].firstId == m_groups[from].firstId &&
           compare(firstOf(m_groups[from]), firstOf(m_groups[to])) == 0) {
      ++to;
    }
    makeNet(from, to);
    from = to;
  }
}

}  // namespace XRF_RTL2LL
