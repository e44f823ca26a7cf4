#include <tools/xrf/ModuleWalk.h>
#include <tools/xrf/NameReading.h>
#include <tools/xrf/RegularExpression.h>
#include <tools/xrf/Search.h>

#include <algorithm>
#include <charconv>
#include <memory>
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

// A name without a leading "/" is taken below the top of the view. One at the end, as where a
// module was completed, says nothing.
std::string rooted(std::string name, Module* top) {
  while (name.size() > 1 && name.back() == '/') name.pop_back();
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
  Module* module = name == "/" ? nullptr : design.findModule(view, name);
  if (module != nullptr) found.modules.push_back({view, module});
  findSignal(design, view, name, found);
}

// What many names may match.
class Pattern {
 public:
  virtual ~Pattern() = default;
  Pattern(const Pattern&) = delete;
  Pattern& operator=(const Pattern&) = delete;

  /// Whether anything below `path` can match.
  virtual bool reaches(std::string_view path) const = 0;
  virtual void tryModule(EdifView view, Module* module, const std::string& name) = 0;
  virtual void trySignal(EdifView view, Signal* signal, const std::string& name) = 0;

 protected:
  explicit Pattern(Found& found) : m_found(found) {}

  void take(EdifView view, Module* module) { m_found.modules.push_back({view, module}); }
  void take(EdifView view, Signal* signal) { m_found.signals.push_back(whole(view, signal)); }
  /// Takes the bits whose index passes, the highest first. False when none does.
  template <class Passes>
  bool takeBits(EdifView view, Signal* signal, Passes passes) {
    bool any = false;
    for (std::uint64_t i = std::uint64_t{signal->getMsb()} + 1; i > signal->getLsb(); --i) {
      const auto bit = static_cast<unsigned>(i - 1);
      if (!passes(std::to_string(bit))) continue;
      m_found.signals.push_back({view, signal, bit, bit});
      any = true;
    }
    return any;
  }

 private:
  Found& m_found;
};

// A name with wildcards.
class WildcardPattern : public Pattern {
 public:
  WildcardPattern(const std::string& name, Found& found)
      : Pattern(found),
        m_name(name),
        m_readings(readingsOf(name)),
        m_literal(name.substr(0, name.find_first_of("*?["))) {}

  bool reaches(std::string_view path) const override {
    const std::size_t common = std::min(path.size(), m_literal.size());
    return path.substr(0, common) == std::string_view(m_literal).substr(0, common);
  }

  void tryModule(EdifView view, Module* module, const std::string& name) override {
    if (matchesPattern(m_name, name)) take(view, module);
  }

  void trySignal(EdifView view, Signal* signal, const std::string& name) override {
    for (const NameReading& reading : m_readings) {
      if (!matchesPattern(reading.name, name)) continue;
      if (!reading.index) return take(view, signal);
      const auto passes = [&](const std::string& i) { return matchesPattern(*reading.index, i); };
      if (takeBits(view, signal, passes)) return;
    }
  }

 private:
  std::string m_name;
  std::vector<NameReading> m_readings;
  std::string m_literal;  // what every match begins with
};

// A regular expression, held against names as they are printed.
class ExpressionPattern : public Pattern {
 public:
  ExpressionPattern(const std::string& text, Found& found) : Pattern(found), m_expression(text) {}

  bool reaches(std::string_view) const override { return true; }

  void tryModule(EdifView view, Module* module, const std::string& name) override {
    if (m_expression.matches(name)) take(view, module);
  }

  void trySignal(EdifView view, Signal* signal, const std::string& name) override {
    if (m_expression.matches(name)) return take(view, signal);
    if (signal->getMsb() == 0) return;
    takeBits(view, signal, [&](const std::string& index) {
      return m_expression.matches(name + "[" + index + "]");
    });
  }

 private:
  RegularExpression m_expression;
};

using Patterns = std::vector<std::unique_ptr<Pattern>>;

void trySignals(EdifView view, Module* module, std::string& path, Patterns& patterns) {
  const std::size_t length = path.size();
  path += '/';
  for (Signal* signal : module->getSignals(false)) {
    path.resize(length + 1);
    path += signal->getName();
    for (const auto& pattern : patterns) pattern->trySignal(view, signal, path);
  }
  path.resize(length);
}

void findMatching(EdifView view, Module* top, bool hiddenCells, Patterns& patterns) {
  std::string path = top->getPath();
  const auto enter = [&](Module* module, std::size_t) {
    path += '/';
    path += module->getName();
    if (module->isHidden() && !hiddenCells) return false;
    const bool reached = std::any_of(patterns.begin(), patterns.end(),
                                     [&](const auto& p) { return p->reaches(path); });
    if (!reached) return false;
    for (const auto& pattern : patterns) pattern->tryModule(view, module, path);
    trySignals(view, module, path, patterns);
    return true;
  };
  const auto leave = [&](Module* module, std::size_t) {
    path.resize(path.size() - std::char_traits<char>::length(module->getName()) - 1);
  };
  walkModules(top, enter, leave);
}

void findInView(const Design& design, EdifView view, const std::vector<std::string>& names,
                const SearchOptions& options, std::vector<Found>& found) {
  Module* top = design.getNetlist()->getTop(view);
  if (top == nullptr) return;
  Patterns patterns;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (options.regularExpressions) {
      patterns.push_back(std::make_unique<ExpressionPattern>(names[i], found[i]));
      continue;
    }
    const std::string name = rooted(names[i], top);
    if (hasWildcard(name)) {
      patterns.push_back(std::make_unique<WildcardPattern>(asCarried(name), found[i]));
    } else {
      findExactly(design, view, name, found[i]);
    }
  }
  if (!patterns.empty()) findMatching(view, top, options.hiddenCells, patterns);
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
    findInView(design, view, names, options, found);
  }
  if (names.size() == 1 && !found.front().empty()) {
    return {std::move(found.front().signals), std::move(found.front().modules), {}};
  }
  return merged(names, found);
}

std::string fullName(const Module& module) { return module.getPath() + "/" + module.getName(); }

}  // namespace xrf
