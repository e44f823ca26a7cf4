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
 public:
  explicit SignalSearch(const NetlistState& state) : m_state(state) {}

  /// Null where there is none.
  Signal* find(EdifView view, std::string_view name) {
    const std::size_t slash = name.rfind('/');
    if (slash == std::string_view::npos) return m_state.signals[view].find(name);
    return find(view, name.substr(0, slash), name.substr(slash + 1));
  }
  /// The same for a name whose last level is given apart.
  Signal* find(EdifView view, std::string_view path, std::string_view local);
  bool hasModule(EdifView view, std::string_view path) { return moduleOf(view, path) != nullptr; }

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

  const Module* moduleOf(EdifView view, std::string_view path);

  const NetlistState& m_state;
  ModulesByPath m_modules;
  ModulesByPath::value_type* m_last = nullptr;  // what was asked for last
};

}  // namespace XRF_RTL2LL
