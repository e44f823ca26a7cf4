#include <lmx60/CrackedName.h>

namespace lmx60 {

int c_cracked_name::get_element_ns_id(const s_ns_map& map) const {
  if (m_uri.empty()) return no_namespace;
  for (std::size_t index = 0; index < map.size; ++index) {
    if (map.entries[index].uri == m_uri) return static_cast<int>(index) + 1;
  }
  return unknown_namespace;
}

}  // namespace lmx60
