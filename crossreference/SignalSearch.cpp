#include <crossreference/SignalSearch.h>

namespace XRF_RTL2LL {

Signal* SignalSearch::find(EdifView view, std::string_view name) {
  const std::size_t slash = name.rfind('/');
  if (slash == std::string_view::npos) return m_state.signals[view].find(name);
  return find(view, path(name.substr(0, slash)), local(name.substr(slash + 1)));
}

Signal* SignalSearch::find(EdifView view, Path& path, const Local& local) const {
  if (!m_state.isPlain()) {
    std::string name(path.first);
    name += '/';
    return m_state.signals[view].find(name += local.text);
  }
  const Module* module = local.word == nullptr ? nullptr : moduleOf(view, path);
  return module == nullptr ? nullptr : m_state.signals[view].find(*module, local.word);
}

SignalSearch::Path& SignalSearch::path(std::string_view text) {
  if (m_last == nullptr || m_last->first != text) {
    auto found = m_modules.find(text);
    if (found == m_modules.end()) found = m_modules.emplace(text, Modules()).first;
    m_last = &*found;
  }
  return *m_last;
}

const Module* SignalSearch::moduleOf(EdifView view, Path& path) const {
  Modules& modules = path.second;
  if (!modules.known[view]) {
    modules.known[view] = true;
    modules.module[view] = m_state.modules[view].find(path.first);
  }
  return modules.module[view];
}

}  // namespace XRF_RTL2LL
