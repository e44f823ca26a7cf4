#include <tools/xrf/EditDistance.h>
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
constexpr unsigned beyond = sameLastPart + farthest + 1;
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

// The name without the word of an array or the field of a record that it ends with.
std::string_view withoutWord(std::string_view name) {
  const std::size_t angle = name.find('<', name.rfind('/') + 1);
  return name.substr(0, angle);
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
    // As languages write it, from the top or below it.
    if (name.find('/') == std::string::npos && name.find('.') != std::string::npos) {
      std::string path = lowered(name);
      std::replace(path.begin(), path.end(), '.', '/');
      m_wanted.push_back(lowered(top) + "/" + path);
      m_wanted.push_back("/" + path);
    }
    // The more was typed of a name's own part, the more of it may be wrong.
    const std::size_t size = lastPart(name.substr(0, name.find('['))).size();
    m_most = size < 4 ? 1 : (size < 8 ? 2 : farthest);
    m_anywhere = name.find('/') == std::string::npos;
  }

  const std::string& name() const { return m_name; }

  void meet(const std::string& fullName, const std::string& low) {
    unsigned best = beyond;
    for (const std::string& wanted : m_wanted) {
      best = std::min(best, nearness(wanted, low));
    }
    if (best >= beyond) return;
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
    for (const Near& near : m_nearest) {
      const bool guess = near.distance > sameLastPart;
      if (guess && m_nearest.front().distance <= sameLastPart) break;
      names.push_back(near.name);
    }
    return names;
  }

 private:
  struct Near {
    unsigned distance;
    std::string name;
  };

  unsigned nearness(const std::string& wanted, const std::string& low) const {
    const unsigned changes = editDistance(wanted, low, m_most);
    if (changes <= m_most) return changes;
    if (wanted == withoutWord(low)) return 1;
    if (lastPart(wanted) == withoutWord(lastPart(low))) return sameLastPart;
    if (!m_anywhere) return beyond;
    const unsigned ofLast = editDistance(lastPart(wanted), lastPart(low), m_most);
    return ofLast <= m_most ? sameLastPart + ofLast : beyond;
  }

  std::string m_name;
  std::vector<std::string> m_wanted;  // in lower case, with and without an index
  unsigned m_most = 0;
  bool m_anywhere = false;  // the name does not say in which module
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
