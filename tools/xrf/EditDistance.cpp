#include <tools/xrf/EditDistance.h>

#include <algorithm>
#include <vector>

namespace xrf {

unsigned editDistance(std::string_view a, std::string_view b, unsigned most) {
  // Only entries near the diagonal can count.
  if (a.size() + most < b.size() || b.size() + most < a.size()) return most + 1;
  const std::size_t width = b.size() + 1;
  std::vector<unsigned> before(width);
  std::vector<unsigned> last(width);
  std::vector<unsigned> row(width);
  for (std::size_t j = 0; j < width; ++j) last[j] = static_cast<unsigned>(j);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::fill(row.begin(), row.end(), most + 1);
    if (i <= most) row[0] = static_cast<unsigned>(i);
    unsigned least = row[0];
    for (std::size_t j = i > most ? i - most : 1; j < width && j <= i + most; ++j) {
      const unsigned replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0U : 1U);
      row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
      const bool exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (exchanged) row[j] = std::min(row[j], before[j - 2] + 1);
      least = std::min(least, row[j]);
    }
    if (least > most) return most + 1;
    before.swap(last);
    last.swap(row);
  }
  return last[b.size()];
}

}  // namespace xrf
