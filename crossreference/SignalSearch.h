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
  /// All levels of a view's names but the last.
  struct Path {
    std::string text;
    const Module* module;  // null where there is none of that name
  };
  /// The last level of a name.
  struct Local {
    std::string_view text;
    const Word* word;
  };

  explicit SignalSearch(const NetlistState& state) : m_state(state) {}

  /// Null where there is none.
  Signal* find(EdifView view, std::string_view name);
  /// The same for a name in two parts, either of which can be asked for more than once.
  Signal* find(EdifView view, const Path& path, const Local& local) const;
  Path path(EdifView view, std::string_view text) const;
  /// Tells of the text, which has to outlive it.
  Local local(std::string_view text) const { return {text, m_state.model.names.find(text)}; }
  /// Whether there may be signals of the path.
  bool leads(const Path& path) const { return path.module != nullptr || !m_state.isPlain(); }
  bool hasModule(EdifView view, std::string_view name) const {
    return m_state.modules[view].find(name) != nullptr;
  }
  /// Gives back the memory of what is remembered.
  void forget() {
    m_modules.clear();
    m_last = nullptr;
  }

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
