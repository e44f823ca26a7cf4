#pragma once

#include <crossreference/ModelState.h>
#include <support/PageArray.h>

#include <cstdint>
#include <span>

namespace XRF_RTL2LL {

/// Points the references of a model at the bits that survive, and groups all signals into new nets:
/// signals with equal signatures are one net, and nets are numbered in the byte order of the
/// signatures, which are never composed.
class NetGrouping {
 public:
  explicit NetGrouping(ModelState& model) : m_model(model) {}
  void run();

  /// Byte order of two signals' signatures.
  static int compare(const Signal& a, const Signal& b);

 private:
  // All signals that are just one bit, or one signal whose equals stand beside it once sorted.
  struct Group {
    std::uint64_t firstId;  // as a key, like all numbers of a signature
    std::uint32_t first;    // the place of a signal
    std::uint32_t msb;
    std::uint32_t bit;  // the place of the one bit, or `several`

    bool oneBit() const { return bit != several; }
  };
  static constexpr std::uint32_t several = 0xffffffffU;
  // The signals that are just one bit.
  struct Span {
    std::uint32_t first;  // the place of the first, until all of them are laid side by side
    std::uint32_t end;    // where they end among all one-bit signals
    std::uint32_t count;
  };

  void lookAtBits();
  const Bit* onlyBitOf(const Signal& signal) const;
  void collect();
  void sortGroups();
  void sortOneBitSignals();
  void askForBitOf(std::size_t place) const;
  void askForSignalsOf(std::size_t group) const;
  void joinGroups(detail::Members& set, std::size_t from, std::size_t to);
  bool isBefore(const Group& a, const Group& b) const;
  const Signal& firstOf(const Group& group) const { return *m_model.signals.at(group.first); }
  // Of a span whose signals are laid side by side.
  std::span<std::uintptr_t> oneBitSignalsOf(const Span& span) const;
  void makeNet(std::size_t from, std::size_t to);

  ModelState& m_model;
  // By the places of the signals: that of the one bit, or `several`.
  PageArray<std::uint32_t> m_bits;
  PageArray<Group> m_groups;
  PageArray<Span> m_spans;                      // by the places of the bits
  std::span<std::uintptr_t> m_one_bit_signals;  // net by net
};

}  // namespace XRF_RTL2LL
