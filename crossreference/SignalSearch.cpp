#include <crossreference/SignalSearch.h>

namespace XRF_RTL2LL {

Signal* SignalSearch::find(EdifView view, std::string_view name) {
  const std::size_t slash = name.rfind('/');
  if (slash == std::string_view::npos || !m_state.isPlain()) {
    return m_state.signals[view].find(name);
  }
  const Word* word = m_state.model.names.find(name.substr(slash + 1));
  const Module* module = word == nullptr ? nullptr : moduleOf(view, name.substr(0, slash));
  return module == nullptr ? nullptr : m_state.signals[view].find(*module, word);
}

Signal* SignalSearch::find(EdifView view, const Path& path, const Local& local) const {
  if (!m_state.isPlain()) {
    std::string name(path.text);
    name += '/';
    return m_state.signals[view].find(name += local.text);
  }
  const bool both = path.module != nullptr && local.word != nullptr;
  return both ? m_state.signals[view].find(*path.module, local.word) : nullptr;
}

SignalSearch::Path SignalSearch::path(EdifView view, std::string_view text) const {
  return {std::string(text), m_state.modules[view].find(text)};
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
