#include <tools/xrf/NameReading.h>

#include <algorithm>

namespace xrf {

namespace {

// Where the bracket group that ends the name opens, or npos. Groups never span a hierarchy level.
std::size_t lastGroup(std::string_view name) {
  if (name.empty() || name.back() != ']') return std::string_view::npos;
  const std::size_t open = name.rfind('[');
  if (open == std::string_view::npos || open + 2 >= name.size()) return std::string_view::npos;
  const std::string_view content = name.substr(open + 1, name.size() - open - 2);
  return content.find_first_of("/]") == std::string_view::npos ? open : std::string_view::npos;
}

// The bracket groups at the end as the model writes them: `r[tag][3]` is `r<tag><3>`.
std::string withAngleGroups(std::string name) {
  std::string groups;
  for (std::size_t open = lastGroup(name); open != std::string::npos; open = lastGroup(name)) {
    groups.insert(0, "<" + name.substr(open + 1, name.size() - open - 2) + ">");
    name.resize(open);
  }
  return name + groups;
}

bool isIndex(std::string_view text) {
  return text.find_first_not_of("0123456789*?") == std::string_view::npos;
}

}  // namespace

std::vector<NameReading> readingsOf(const std::string& name) {
  std::vector<NameReading> readings{{name, std::nullopt}};
  const std::size_t open = lastGroup(name);
  if (open == std::string::npos) return readings;
  const std::string base = name.substr(0, open);
  const std::string index = name.substr(open + 1, name.size() - open - 2);
  if (isIndex(index)) {
    readings.push_back({base, index});
    const std::string word = withAngleGroups(base);
    if (word != base) readings.push_back({word, index});
  }
  readings.push_back({withAngleGroups(name), std::nullopt});
  return readings;
}

std::string asIdentifier(const std::string& name) {
  std::string result = name;
  const std::size_t slash = result.rfind('/');
  const std::size_t local = slash == std::string::npos ? 0 : slash + 1;
  std::replace_if(
      result.begin() + static_cast<std::ptrdiff_t>(local), result.end(),
      [](char c) { return c == '[' || c == ']' || c == '.' || c == '$'; }, '_');
  return result;
}

std::string asCarried(std::string name) {
  std::replace_if(
      name.begin(), name.end(),
      [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte <= ' ' || byte == 0x7f || c == '(' || c == ')';
      },
      '_');
  return name;
}

bool hasWildcard(std::string_view text) {
  return text.find_first_of("*?") != std::string_view::npos;
}

bool matchesPattern(std::string_view pattern, std::string_view text) {
  std::size_t p = 0;
  std::size_t t = 0;
  // After a mismatch the latest "*" takes one character more; an earlier one never needs to.
  std::size_t star = std::string_view::npos;
  std::size_t resume = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = t;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
      ++p;
      ++t;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      t = ++resume;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

}  // namespace xrf
