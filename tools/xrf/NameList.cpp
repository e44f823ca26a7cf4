#include <tools/xrf/NameList.h>

#include <iostream>

namespace xrf {

namespace {

void appendLines(std::istream& in, std::vector<std::string>& names) {
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty()) names.push_back(line);
  }
}

}  // namespace

std::vector<std::string> withStandardInput(const std::vector<std::string>& names) {
  std::vector<std::string> all;
  for (const std::string& name : names) {
    if (name == "-") {
      appendLines(std::cin, all);
    } else {
      all.push_back(name);
    }
  }
  return all;
}

}  // namespace xrf
