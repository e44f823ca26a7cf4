#include <tools/xrf/Failure.h>
#include <tools/xrf/NameList.h>

#include <cstdio>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace xrf {

namespace {

void appendLines(std::istream& in, std::vector<std::string>& names) {
  // Otherwise the stream keeps want of memory to itself, and what was not read is just not there.
  in.exceptions(std::ios::badbit);
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty()) names.push_back(line);
  }
  if (std::ferror(stdin) != 0) throw Failure("standard input: cannot read names");
}

bool isStandardInput(const std::string& file) {
  struct stat named {};
  struct stat standard {};
  return stat(file.c_str(), &named) == 0 && fstat(STDIN_FILENO, &standard) == 0 &&
         named.st_dev == standard.st_dev && named.st_ino == standard.st_ino;
}

}  // namespace

std::vector<std::string> withStandardInput(const std::vector<std::string>& names,
                                           const std::string& file) {
  std::vector<std::string> all;
  for (const std::string& name : names) {
    if (name == "-") {
      if (isStandardInput(file)) {
        throw UsageFailure("standard input cannot give both the names and the file");
      }
      appendLines(std::cin, all);
    } else {
      all.push_back(name);
    }
  }
  return all;
}

}  // namespace xrf
