#include <crossreference/MemberSet.h>
#include <crossreference/NetGrouping.h>

#include <algorithm>

namespace XRF_RTL2LL {

namespace {

constexpr unsigned decimalDigits = 10;

// Orders numbers as their decimal texts followed by `end`: "_" sorts after every digit, the end of
// the text before.
std::uint64_t textKey(std::uint32_t number, bool last) {
  constexpr std::uint64_t base = 12;
  constexpr std::uint64_t endOfText = 0;
  constexpr std::uint64_t underscore = 11;
  char digits[decimalDigits];
  unsigned count = 0;
  do {
    digits[count++] = static_cast<char>(number % 10);
    number /= 10;
  } while (number != 0);
  std::uint64_t key = 0;
  for (unsigned at = 0; at <= decimalDigits; ++at) {
    const std::uint64_t digit = at < count ? static_cast<std::uint64_t>(digits[count - 1 - at]) + 1
                                           : (last ? endOfText : underscore);
    key = key * base + digit;
  }
  return key;
}

}  // namespace

namespace {

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
  SignatureWalk walkA(a.m_msb, a.m_lsb, a.entries(), a.m_count);
  SignatureWalk walkB(b.m_msb, b.m_lsb, b.entries(), b.m_count);
  while (true) {
    const std::uint64_t keyA = walkA.next();
    const std::uint64_t keyB = walkB.next();
    if (keyA != keyB) return keyA < keyB ? -1 : 1;
    if (keyA == 0) return 0;
  }
}

// The bit of a signal that is just one, at index 0; else null.
const Bit* NetGrouping::onlyBit(const Signal& signal) {
  const bool oneBit = signal.m_msb == 0 && signal.m_lsb == 0 && signal.m_count == 1;
  const BitRef* ref = oneBit ? signal.entry(0) : nullptr;
  return ref == nullptr ? nullptr : ref->getBit();
}

void NetGrouping::collect() {
  m_spans.resize(m_model.bits.size());
  const std::uint64_t zero = textKey(0, false);
  m_model.signals.each([&](Signal* signal) {
    if (const Bit* bit = onlyBit(*signal)) {
      if (m_spans[bit->m_place].count++ > 0) return;
      m_groups.push_back({zero, textKey(bit->m_id, false), signal, bit->m_place, true});
      return;
    }
    SignatureWalk walk(signal->m_msb, signal->m_lsb, signal->entries(), signal->m_count);
    const std::uint64_t msb = walk.next();
    m_groups.push_back({msb, walk.next(), signal, 0, false});
  });
}

void NetGrouping::sortGroups() {
  std::sort(m_groups.begin(), m_groups.end(), [](const Group& a, const Group& b) {
    if (a.msb != b.msb) return a.msb < b.msb;
    if (a.firstId != b.firstId) return a.firstId < b.firstId;
    if (a.first == b.first) return false;
    const int order = compare(*a.first, *b.first);
    return order != 0 ? order < 0 : a.first->m_place < b.first->m_place;
  });
}

// Lays the signals of each net side by side, so that nets are made without a search.
void NetGrouping::sortOneBitSignals() {
  std::uint32_t total = 0;
  for (const Group& group : m_groups) {
    if (!group.oneBit) continue;
    m_spans[group.bit].end = total;
    total += m_spans[group.bit].count;
  }
  m_one_bit_signals.resize(total);
  m_model.signals.each([&](Signal* signal) {
    if (const Bit* bit = onlyBit(*signal)) m_one_bit_signals[m_spans[bit->m_place].end++] = signal;
  });
}

void NetGrouping::makeNet(std::size_t from, std::size_t to) {
  Net* net = new Net;
  const auto join = [net](Signal* signal) {
    signal->m_net = net;
    members::fill(net->m_signals, signal);
  };
  std::uint32_t count = 0;
  for (std::size_t at = from; at < to; ++at) {
    count += m_groups[at].oneBit ? m_spans[m_groups[at].bit].count : 1;
  }
  members::reserve(m_model.arena, net->m_signals, count);
  for (std::size_t at = from; at < to; ++at) {
    const Group& group = m_groups[at];
    if (!group.oneBit) {
      join(group.first);
      continue;
    }
    const Span span = m_spans[group.bit];
    prefetch(span.end);
    for (std::uint32_t member = span.end - span.count; member < span.end; ++member) {
      join(m_one_bit_signals[member]);
    }
  }
  members::settle<Signal>(net->m_signals, true);
}

// The signals of the nets to come are all over memory.
void NetGrouping::prefetch(std::size_t from) const {
  constexpr std::size_t ahead = 8;
  const std::size_t to = std::min(from + ahead, m_one_bit_signals.size());
  for (; from < to; ++from) __builtin_prefetch(m_one_bit_signals[from]);
}

void NetGrouping::run() {
  collect();
  sortGroups();
  sortOneBitSignals();
  for (std::size_t from = 0; from < m_groups.size();) {
    std::size_t to = from + 1;
    while (to < m_groups.size() && m_groups[to].msb == m_groups[from].msb &&
           m_groups[to].firstId == m_groups[from].firstId &&
           compare(*m_groups[from].first, *m_groups[to].first) == 0) {
      ++to;
    }
    makeNet(from, to);
    from = to;
  }
}

}  // namespace XRF_RTL2LL
