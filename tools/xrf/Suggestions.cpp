#include <tools/xrf/ModuleWalk.h>
#include <tools/xrf/NameReading.h>
#include <tools/xrf/Search.h>
#include <tools/xrf/Style.h>
#include <tools/xrf/Suggestions.h>

#include <algorithm>
#include <cctype>
#include <string_view>

namespace xrf {

using XRF_RTL2LL::Module;
using XRF_RTL2LL::Signal;

namespace {

constexpr std::size_t namesHelped = 10;
constexpr std::size_t suggestionsEach = 3;
constexpr unsigned farthest = 3;
constexpr unsigned sameLastPart = farthest + 1;
// A name much longer than any that tools write is no slip of a finger.
constexpr std::size_t longestName = 1000;

std::string lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::string_view lastPart(std::string_view name) {
  const std::size_t slash = name.rfind('/');
  return slash == std::string_view::npos ? name : name.substr(slash + 1);
}

// How many characters must be put in, left out or replaced, or neighbours exchanged, to make `b` of
// `a`; anything above `most` for more than that. Only entries near the diagonal can count.
unsigned distance(std::string_view a, std::string_view b, unsigned most) {
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

// A name that was asked for, and the nearest ones met so far.
class Sought {
 public:
  Sought(const std::string& name, const std::string& top) : m_name(name) {
    for (const NameReading& reading : readingsOf(name)) {
      std::string full = reading.name.starts_with('/') ? "" : top + "/";
      full += reading.name;
      m_wanted.push_back(lowered(full));
    }
    // The more was typed of a name's own part, the more of it may be wrong.
    const std::size_t size = lastPart(name.substr(0, name.find('['))).size();
    m_most = size < 4 ? 1 : (size < 8 ? 2 : farthest);
  }

  const std::string& name() const { return m_name; }

  void meet(const std::string& fullName, const std::string& low) {
    unsigned best = farthest + 2;
    for (const std::string& wanted : m_wanted) {
      best = std::min(best, nearness(wanted, low));
    }
    if (best > sameLastPart) return;
    const auto place =
        std::upper_bound(m_nearest.begin(), m_nearest.end(), best,
                         [](unsigned value, const Near& near) { return value < near.distance; });
    if (place == m_nearest.end() && m_nearest.size() >= suggestionsEach) return;
    const bool known = std::any_of(m_nearest.begin(), m_nearest.end(),
                                   [&](const Near& near) { return near.name == fullName; });
    if (known) return;
    m_nearest.insert(place, {best, fullName});
    if (m_nearest.size() > suggestionsEach) m_nearest.pop_back();
  }

  std::vector<std::string> nearest() const {
    std::vector<std::string> names;
    for (const Near& near : m_nearest) names.push_back(near.name);
    return names;
  }

 private:
  struct Near {
    unsigned distance;
    std::string name;
  };

  unsigned nearness(const std::string& wanted, const std::string& low) const {
    const unsigned changes = distance(wanted, low, m_most);
    if (changes <= m_most) return changes;
    return lastPart(wanted) == lastPart(low) ? sameLastPart : farthest + 2;
  }

  std::string m_name;
  std::vector<std::string> m_wanted;  // in lower case, with and without an index
  unsigned m_most = 0;
  std::vector<Near> m_nearest;
};

void meetAll(Module* top, bool hiddenCells, std::vector<Sought>& sought) {
  const auto meet = [&](const std::string& name) {
    if (name.size() > longestName) return;
    const std::string low = lowered(name);
    for (Sought& one : sought) one.meet(name, low);
  };
  std::string path = top->getPath();
  walkModules(
      top,
      [&](Module* module, std::size_t) {
        path += '/';
        path += module->getName();
        if (module->isHidden() && !hiddenCells) return false;
        meet(path);
        for (const Signal* signal : module->getSignals(false)) {
          meet(path + "/" + signal->getName());
        }
        return true;
      },
      [&](Module* module, std::size_t) {
        path.resize(path.size() - std::char_traits<char>::length(module->getName()) - 1);
      });
}

}  // namespace

std::map<std::string, std::vector<std::string>> suggestionsFor(
    const XRF_RTL2LL::Design& design, const std::vector<std::string>& names,
    const SuggestionOptions& options) {
  std::map<std::string, std::vector<std::string>> suggestions;
  for (const XRF_RTL2LL::EdifView view : options.views) {
    Module* const top = design.getNetlist()->getTop(view);
    if (top == nullptr) continue;
    std::vector<Sought> sought;
    for (const std::string& name : names) {
      const bool helped = !name.empty() && name.size() <= longestName && !hasWildcard(name);
      if (helped && sought.size() < namesHelped) sought.emplace_back(name, fullName(*top));
    }
    if (sought.empty()) continue;
    meetAll(top, options.hiddenCells, sought);
    for (const Sought& one : sought) {
      std::vector<std::string>& known = suggestions[one.name()];
      for (const std::string& name : one.nearest()) {
        const bool isNew = std::find(known.begin(), known.end(), name) == known.end();
        if (isNew && known.size() < suggestionsEach) known.push_back(name);
      }
    }
  }
  std::erase_if(suggestions, [](const auto& one) { return one.second.empty(); });
  return suggestions;
}

std::string didYouMean(const std::vector<std::string>& suggestions) {
  std::string text;
  for (const std::string& name : suggestions) {
    text += text.empty() ? "; did you mean '" : " or '";
    text += printable(name) + "'";
  }
  return text.empty() ? text : text + "?";
}

}  // namespace xrf
