#pragma once

#include <support/Api.h>

#include <cstddef>
#include <string_view>

namespace lmx60 {

/// One namespace that a binding knows.
struct s_namespace {
  std::string_view prefix;
  std::string_view uri;
};

/// The namespaces that a binding knows; none, for documents without namespaces.
struct s_ns_map {
  const s_namespace* entries = nullptr;
  std::size_t size = 0;
};

/// An element's name, taken apart. It refers to the reader's text and lives as long as the reader
/// stands at that element.
class XRF_API c_cracked_name {
 public:
  static constexpr int no_namespace = 0;
  static constexpr int unknown_namespace = -1;

  c_cracked_name() = default;
  c_cracked_name(std::string_view uri, std::string_view local) : m_uri(uri), m_local(local) {}

  std::string_view uri() const { return m_uri; }
  std::string_view local() const { return m_local; }
  /// `no_namespace`, the position in `map` counted from 1, or `unknown_namespace`.
  int get_element_ns_id(const s_ns_map& map) const;

 private:
  std::string_view m_uri;
  std::string_view m_local;
};

}  // namespace lmx60
