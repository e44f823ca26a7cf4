#include <crossreference/SignalSearch.h>

namespace XRF_RTL2LL {

Signal* SignalSearch::find(EdifView view, std::string_view path, std::string_view local) {
  if (!m_state.isPlain()) {
    std::string name(path);
    name += '/';
    return m_state.signals[view].find(name += local);
  }
  const Word* word = m_state.model.names.find(local);
  const Module* module = word == nullptr ? nullptr : moduleOf(view, path);
  return module == nullptr ? nullptr : m_state.signals[view].find(*module, word);
}

const Module* SignalSearch::moduleOf(EdifView view, std::string_view path) {
  if (m_last == nullptr || m_last->first != path) {
    auto found = m_modules.find(path);
    if (found == m_modules.end()) found = m_modules.emplace(path, Modules()).first;
    m_last = &*found;
  }
  Modules& modules = m_last->second;
  if (!modules.known[view]) {
    modules.known[view] = true;
    modules.module[view] = m_state.modules[view].find(path);
  }
  return modules.module[view];
}

}  // namespace XRF_RTL2LL
