#include <crossreference/SignalSearch.h>

namespace XRF_RTL2LL {

Signal* SignalSearch::find(EdifView view, std::string_view name) {
  if (!m_state.isPlain()) return m_state.signals[view].find(name);
  const std::size_t slash = name.rfind('/');
  if (slash == std::string_view::npos) return nullptr;
  const std::string_view local = name.substr(slash + 1);
  if (m_state.model.names.find(local) == nullptr) return nullptr;
  const Module* module = moduleOf(view, name.substr(0, slash));
  return module == nullptr ? nullptr : m_state.findByName(view, *module, local);
}

const Module* SignalSearch::moduleOf(EdifView view, std::string_view path) {
  auto found = m_modules.find(path);
  if (found == m_modules.end()) found = m_modules.emplace(path, Modules()).first;
  Modules& modules = found->second;
  if (!modules.known[view]) {
    modules.known[view] = true;
    modules.module[view] = m_state.modules[view].find(path);
  }
  return modules.module[view];
}

}  // namespace XRF_RTL2LL
