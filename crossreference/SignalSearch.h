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
  Signal* find(EdifView view, std::string_view name);

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

  const Module* moduleOf(EdifView view, std::string_view path);

  const NetlistState& m_state;
  std::unordered_map<std::string, Modules, Hash, std::equal_to<>> m_modules;
};

}  // namespace XRF_RTL2LL
