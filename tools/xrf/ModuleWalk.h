#pragma once

#include <crossreference/Module.h>

#include <vector>

namespace xrf {

/// Visits the tree below and including `top` in the order of names. `enter(module, depth)` says
/// whether to go into the module's children; `leave(module, depth)` follows them. The depth of the
/// tree costs no stack.
template <class Enter, class Leave>
void walkModules(XRF_RTL2LL::Module* top, Enter enter, Leave leave) {
  using Children = XRF_RTL2LL::Range<XRF_RTL2LL::Module>;
  struct Level {
    XRF_RTL2LL::Module* module;
    Children::iterator next;
  };
  std::vector<Level> levels;
  const auto visit = [&](XRF_RTL2LL::Module* module) {
    const bool into = enter(module, levels.size());
    levels.push_back({module, into ? module->getChildren(false).begin() : Children::iterator()});
  };
  if (top == nullptr) return;
  visit(top);
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.next == Children::iterator()) {
      XRF_RTL2LL::Module* module = level.module;
      levels.pop_back();
      leave(module, levels.size());
    } else {
      visit(*level.next++);
    }
  }
}

}  // namespace xrf
