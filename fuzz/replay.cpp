// Runs a target on inputs that are kept, where there is no fuzzer: `edif FILE|FOLDER...`
#include <fuzz/Fuzz.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

namespace fs = std::filesystem;

void collect(const fs::path& path, std::vector<fs::path>& files) {
  if (!fs::is_directory(path)) {
    files.push_back(path);
    return;
  }
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
}

void run(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  fuzz::require(static_cast<bool>(in), "the input can be read");
  const std::vector<char> text{std::istreambuf_iterator<char>(in),
                               std::istreambuf_iterator<char>()};
  // Said before the run, so that a crash can be told from its input.
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<fs::path> files;
  for (int i = 1; i < argc; ++i) collect(argv[i], files);
  std::sort(files.begin(), files.end());
  for (const fs::path& file : files) run(file);
  std::printf("%zu inputs\n", files.size());
  return files.empty() ? 1 : 0;
}
