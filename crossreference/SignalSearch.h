#pragma once

#include <crossreference/NetlistState.h>

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace XRF_RTL2LL {

/// Finds signals by their full names, as the registries do it, for readers that ask for one name
/// after another and mostly in vain: a local name that no signal has costs next to nothing, and
/// modules are remembered.
class SignalSearch {
 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>()(text);
    }
  };
  // The modules of one path, by view.
  struct Modules {
    std::array<const Module*, 2> module{};
    std::array<bool, 2> known{};
  };
  using ModulesByPath = std::unordered_map<std::string, Modules, Hash, std::equal_to<>>;

 public:
  /// All levels of a name but the last, with what is known of them.
  using Path = ModulesByPath::value_type;
  /// The last level of a name.
  struct Local {
    std::string_view text;
    const Word* word;
  };

  explicit SignalSearch(const NetlistState& state) : m_state(state) {}

  /// Null where there is none.
  Signal* find(EdifView view, std::string_view name);
  /// The same for a name in two parts, either of which can be asked for more than once.
  Signal* find(EdifView view, Path& path, const Local& local) const;
  /// Lives until the search forgets.
  Path& path(std::string_view text);
  /// Tells of the text.
  Local local(std::string_view text) const { return {text, m_state.model.names.find(text)}; }
  /// Gives back the memory of all paths.
  void forget() {
    m_modules.clear();
    m_last = nullptr;
  }
  bool hasModule(EdifView view, Path& path) const { return moduleOf(view, path) != nullptr; }
  bool hasModule(EdifView view, std::string_view name) { return hasModule(view, path(name)); }

 private:
  const Module* moduleOf(EdifView view, Path& path) const;

  const NetlistState& m_state;
  ModulesByPath m_modules;
  Path* m_last = nullptr;  // what was asked for last
};

}  // namespace XRF_RTL2LL
