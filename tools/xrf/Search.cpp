#include <tools/xrf/ModuleWalk.h>
#include <tools/xrf/NameReading.h>
#include <tools/xrf/Search.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>
#include <tuple>

namespace xrf {

using XRF_RTL2LL::Design;
using XRF_RTL2LL::EdifView;
using XRF_RTL2LL::Module;
using XRF_RTL2LL::Signal;

namespace {

// What one of the names matched.
struct Found {
  std::vector<SignalHit> signals;
  std::vector<ModuleHit> modules;

  bool empty() const { return signals.empty() && modules.empty(); }
};

std::optional<unsigned> toIndex(const std::string& text) {
  unsigned index = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return index;
}

bool covers(const Signal& signal, unsigned index) {
  return signal.getLsb() <= index && index <= signal.getMsb();
}

SignalHit whole(EdifView view, Signal* signal) {
  return {view, signal, signal->getLsb(), signal->getMsb()};
}

// A name without a leading "/" is taken below the top of the view.
std::string rooted(const std::string& name, Module* top) {
  return !name.empty() && name.front() == '/' ? name : fullName(*top) + "/" + name;
}

// The first reading that names something counts.
void findSignal(const Design& design, EdifView view, const std::string& name, Found& found) {
  for (const NameReading& reading : readingsOf(name)) {
    Signal* signal = design.findSignal(view, reading.name);
    if (signal == nullptr) continue;
    if (!reading.index) {
      found.signals.push_back(whole(view, signal));
      return;
    }
    const std::optional<unsigned> index = toIndex(*reading.index);
    if (!index || !covers(*signal, *index)) continue;
    found.signals.push_back({view, signal, *index, *index});
    return;
  }
  Signal* signal = design.findSignal(view, asIdentifier(name));
  if (signal != nullptr) found.signals.push_back(whole(view, signal));
}

void findExactly(const Design& design, EdifView view, const std::string& name, Found& found) {
  Module* module = design.findModule(view, name);
  if (module != nullptr) found.modules.push_back({view, module});
  findSignal(design, view, name, found);
}

// A name with wildcards, ready to be held against many.
class Pattern {
 public:
  Pattern(const std::string& name, Found& found)
      : m_name(name),
        m_readings(readingsOf(name)),
        m_literal(name.substr(0, name.find_first_of("*?["))),
        m_found(found) {}

  /// Whether anything below `path` can match.
  bool reaches(std::string_view path) const {
    const std::size_t common = std::min(path.size(), m_literal.size());
    return path.substr(0, common) == std::string_view(m_literal).substr(0, common);
  }

  void tryModule(EdifView view, Module* module, std::string_view name) {
    if (matchesPattern(m_name, name)) m_found.modules.push_back({view, module});
  }

  void trySignal(EdifView view, Signal* signal, std::string_view name) {
    for (const NameReading& reading : m_readings) {
      if (!matchesPattern(reading.name, name)) continue;
      if (!reading.index) {
        m_found.signals.push_back(whole(view, signal));
        return;
      }
      if (takeBits(view, signal, *reading.index)) return;
    }
  }

 private:
  bool takeBits(EdifView view, Signal* signal, const std::string& index) {
    bool any = false;
    for (std::uint64_t i = std::uint64_t{signal->getMsb()} + 1; i > signal->getLsb(); --i) {
      const auto bit = static_cast<unsigned>(i - 1);
      if (!matchesPattern(index, std::to_string(bit))) continue;
      m_found.signals.push_back({view, signal, bit, bit});
      any = true;
    }
    return any;
  }

  std::string m_name;
  std::vector<NameReading> m_readings;
  std::string m_literal;  // what every match begins with
  Found& m_found;
};

void trySignals(EdifView view, Module* module, std::string& path, std::vector<Pattern>& patterns) {
  const std::size_t length = path.size();
  path += '/';
  for (Signal* signal : module->getSignals(false)) {
    path.resize(length + 1);
    path += signal->getName();
    for (Pattern& pattern : patterns) pattern.trySignal(view, signal, path);
  }
  path.resize(length);
}

void findMatching(EdifView view, Module* top, bool hiddenCells, std::vector<Pattern>& patterns) {
  std::string path = top->getPath();
  const auto enter = [&](Module* module, std::size_t) {
    path += '/';
    path += module->getName();
    if (module->isHidden() && !hiddenCells) return false;
    const bool reached = std::any_of(patterns.begin(), patterns.end(),
                                     [&](const Pattern& p) { return p.reaches(path); });
    if (!reached) return false;
    for (Pattern& pattern : patterns) pattern.tryModule(view, module, path);
    trySignals(view, module, path, patterns);
    return true;
  };
  const auto leave = [&](Module* module, std::size_t) {
    path.resize(path.size() - std::char_traits<char>::length(module->getName()) - 1);
  };
  walkModules(top, enter, leave);
}

void findInView(const Design& design, EdifView view, const std::vector<std::string>& names,
                bool hiddenCells, std::vector<Found>& found) {
  Module* top = design.getNetlist()->getTop(view);
  if (top == nullptr) return;
  std::vector<Pattern> patterns;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string name = rooted(names[i], top);
    if (hasWildcard(name)) {
      patterns.emplace_back(asCarried(name), found[i]);
    } else {
      findExactly(design, view, name, found[i]);
    }
  }
  if (!patterns.empty()) findMatching(view, top, hiddenCells, patterns);
}

// Several names may match one thing; it is listed once.
SearchResult merged(const std::vector<std::string>& names, const std::vector<Found>& found) {
  SearchResult result;
  std::set<std::tuple<const Signal*, unsigned, unsigned>> signals;
  std::set<const Module*> modules;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (found[i].empty()) result.notFound.push_back(names[i]);
    for (const SignalHit& hit : found[i].signals) {
      const bool first = signals.insert({hit.signal, hit.lsb, hit.msb}).second;
      if (first) result.signals.push_back(hit);
    }
    for (const ModuleHit& hit : found[i].modules) {
      if (modules.insert(hit.module).second) result.modules.push_back(hit);
    }
  }
  return result;
}

}  // namespace

SearchResult search(const Design& design, const std::vector<std::string>& names,
                    const SearchOptions& options) {
  std::vector<Found> found(names.size());
  for (const EdifView view : options.views) {
    findInView(design, view, names, options.hiddenCells, found);
  }
  if (names.size() == 1 && !found.front().empty()) {
    return {std::move(found.front().signals), std::move(found.front().modules), {}};
  }
  return merged(names, found);
}

std::string fullName(const Module& module) { return module.getPath() + "/" + module.getName(); }

}  // namespace xrf
