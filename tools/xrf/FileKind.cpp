#include <tools/xrf/FileKind.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace xrf {

namespace {

std::string beginningOf(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) return {};
  constexpr std::streamsize enough = 4096;
  std::string text(enough, '\0');
  std::ifstream in(path, std::ios::binary);
  in.read(text.data(), enough);
  text.resize(static_cast<std::size_t>(in.gcount()));
  return text;
}

std::string_view withoutMargin(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

// Whether the text begins with a list of this keyword, in whatever case.
bool opensList(std::string_view text, std::string_view keyword) {
  if (!text.starts_with('(')) return false;
  text = text.substr(1, keyword.size() + 1);
  const auto same = [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
  };
  return text.size() > keyword.size() &&
         std::isspace(static_cast<unsigned char>(text.back())) != 0 &&
         std::equal(keyword.begin(), keyword.end(), text.begin(), same);
}

// Takes a number from the front of the text, and the blanks before it; false where none is.
bool takeNumber(std::string_view& text) {
  const std::size_t start = std::min(text.find_first_not_of(" \t"), text.size());
  const std::size_t end = std::min(text.find_first_not_of("0123456789", start), text.size());
  text.remove_prefix(end);
  return end > start;
}

// A line "Revision 3", or one of a bit: its number, then a frame address. A log may begin with such
// words, too, but hardly goes on like that.
bool isLocations(std::string_view text) {
  constexpr std::string_view revision = "Revision ";
  constexpr std::string_view bit = "\nBit ";
  std::string_view rest = text.substr(std::min(revision.size(), text.size()));
  if (text.starts_with(revision) && takeNumber(rest)) {
    return rest.empty() || rest.front() == '\n' || rest.front() == '\r';
  }
  const std::size_t line = text.starts_with(bit.substr(1)) ? 0 : text.find(bit);
  if (line == std::string_view::npos) return false;
  rest = text.substr(text.find(' ', line));
  if (!takeNumber(rest)) return false;
  rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
  return rest.starts_with("0x");
}

}  // namespace

FileKind kindOf(const std::string& path) {
  const std::string beginning = beginningOf(path);
  if (beginning.starts_with("\x1f\x8b")) return FileKind::Compressed;
  const std::string_view text = withoutMargin(beginning);
  if (opensList(text, "edif")) return FileKind::Netlist;
  constexpr std::array<std::string_view, 6> records{"VERSION", "FAMILY", "BITS",
                                                    "NETS",    "BIT",    "VIEW"};
  if (std::any_of(records.begin(), records.end(),
                  [&](std::string_view record) { return opensList(text, record); })) {
    return FileKind::CrossReference;
  }
  if (text.starts_with("<?xml")) return FileKind::Metadata;
  return isLocations(text) ? FileKind::Locations : FileKind::Unknown;
}

const char* nameOf(FileKind kind) {
  switch (kind) {
    case FileKind::Netlist:
      return "a netlist (EDIF)";
    case FileKind::CrossReference:
      return "a cross-reference file";
    case FileKind::Metadata:
      return "an XML document";
    case FileKind::Locations:
      return "a location file";
    case FileKind::Log:
      return "a synthesis log";
    case FileKind::Compressed:
      return "a compressed file";
    case FileKind::Unknown:
      break;
  }
  return "a file";
}

}  // namespace xrf
