#pragma once

#include <python/Handles.h>

#include <pybind11/pybind11.h>
#include <vector>

namespace xrf::python {

/// The modules below and including one, or their signals, in name order, each as it is asked for.
class TreeWalk {
 public:
  TreeWalk(const ModuleHandle& top, bool hidden);

  ModuleHandle nextModule();
  SignalHandle nextSignal();

 private:
  using Children = XRF_RTL2LL::Range<XRF_RTL2LL::Module>;
  using Signals = XRF_RTL2LL::Range<XRF_RTL2LL::Signal>;

  XRF_RTL2LL::Module* advance();
  void enter(XRF_RTL2LL::Module* module);

  Opened m_design;
  XRF_RTL2LL::EdifView m_view;
  bool m_hidden;
  XRF_RTL2LL::Module* m_first;
  std::vector<Children::iterator> m_levels;
  Signals::iterator m_signals;
};

/// The module with its signals and all below it. The depth of the tree costs no stack.
pybind11::dict toDict(const ModuleHandle& self, bool hidden);

}  // namespace xrf::python
