#pragma once

#include <crossreference/ModelState.h>

#include <vector>

namespace XRF_RTL2LL {

/// Groups all signals of a model into new nets: signals with equal signatures are one net, and nets
/// are numbered in the byte order of the signatures, which are never composed.
class NetGrouping {
 public:
  explicit NetGrouping(ModelState& model) : m_model(model) {}
  void run();

  /// Byte order of two signals' signatures.
  static int compare(const Signal& a, const Signal& b);

 private:
  // Signals of one signature, or one signal whose equals stand beside it once sorted.
  struct Group {
    std::uint64_t msb;
    std::uint64_t firstId;
    Signal* first;
    bool oneBit;  // the other members are chained
  };

  void collect();
  void chain(Signal* signal, const Bit* bit);
  void makeNet(std::size_t from, std::size_t to);

  ModelState& m_model;
  std::vector<Group> m_groups;
  // Per bit, by its place: the last signal that is just this bit. Per signal: the next of its
  // group.
  std::vector<Signal*> m_last;
  std::vector<Signal*> m_next;
};

}  // namespace XRF_RTL2LL
