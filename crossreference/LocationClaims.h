#pragma once

#include <crossreference/ModelState.h>
#include <crossreference/StateLocation.h>

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace XRF_RTL2LL {

/// What the lines of one location file say of bits. A wrong location is worse than none, so where
/// two lines disagree about a bit neither counts. The bits are those of one model, among which none
/// may leave meanwhile.
class LocationClaims {
 public:
  enum class Outcome {
    Used,
    Worse,    ///< a surer line spoke of the bit before
    Disputed  ///< another line says otherwise
  };
  struct Claim {
    StateLocation location;
    bool faithful = false;     ///< the bit was found under the name as it stands
    bool multiplexer = false;  ///< of a latch that taps what leaves the slice
  };

  explicit LocationClaims(const ModelState& model) : m_model(model) {}

  /// Gives the bit what a line says of it.
  Outcome record(Bit& bit, const Claim& claim);
  /// Lines that were used before another line overruled or contradicted them.
  std::uint64_t withdrawn() const { return m_withdrawn; }

 private:
  // How sure a bit's location is, which itself stands in the bit.
  enum Mark : std::uint8_t { Claimed = 1, Faithful = 2, Multiplexer = 4, Disputed = 8 };

  std::uint8_t& marksOf(const Bit& bit);
  void withdraw(const Bit& bit);

  const ModelState& m_model;
  std::vector<std::uint8_t> m_marks;                         // by the place of the bit
  std::unordered_map<const Bit*, std::uint64_t> m_repeated;  // how many more lines say the same
  std::uint64_t m_withdrawn = 0;
};

}  // namespace XRF_RTL2LL
