#include <crossreference/LeafText.h>
#include <crossreference/MemberSet.h>
#include <support/Scan.h>

#include <string>

namespace XRF_RTL2LL {

namespace {

const char* directionOf(const Signal& signal) {
  if (signal.getKind() == IN) return "IN ";
  return signal.getKind() == OUT ? "OUT " : "WIRE ";
}

std::string headOf(const Signal& signal) {
  std::string head = signal.isHidden() ? "(SIG HIDDEN " : "(SIG VISIBLE ";
  head += directionOf(signal);
  head += signal.getName();
  head += " " + std::to_string(signal.getId()) + " ";
  return head;
}

// Parentheses in a name end modules like any other, and a name with a "/" needs a table.
bool hasPlainPort(const Signal& signal) {
  const std::string_view name = signal.getName();
  return name.find_first_of("/)") == std::string_view::npos && signal.getLsb() == 0 &&
         signal.getMsb() == 0;
}

// Blanks and empty lines in front of a record.
void passMargin(PlainScan& scan, std::uint64_t& lines) {
  while (true) {
    while (scan.literal("        ")) {
    }
    scan.blanks();
    if (scan.peek() != '\n' || !scan.literal("\n")) return;
    ++lines;
  }
}

}  // namespace

std::optional<LeafText> LeafText::of(const Module& module) {
  const detail::Members& set = module.m_signals;
  const bool few = set.count > 0 && set.count <= members::unindexed && set.listed == set.count;
  if (!few || module.children().count != 0) return std::nullopt;
  LeafText text;
  text.m_ids = static_cast<std::uint32_t*>(
      ModelState::current().arena.allocate(set.count * sizeof(std::uint32_t)));
  for (std::uint32_t at = 0; at < set.count; ++at) {
    const auto* signal = members::object<Signal>(set.slots[at]);
    if (!hasPlainPort(*signal) || signal->entries().count != 1) return std::nullopt;
    text.m_ports.push_back(
        {signal->m_name, signal->m_id, signal->getKind(), signal->isHidden(), headOf(*signal)});
    text.m_ids[at] = signal->m_id;
  }
  return text;
}

LeafText::Passed LeafText::scan(std::string_view text, std::vector<Place>& places) const {
  places.clear();
  PlainScan scan(text);
  Passed passed;
  for (const Port& port : m_ports) {
    Place place{};
    passMargin(scan, passed.lines);
    if (passed.closing > 1 || !scan.literal(port.head) || !scan.number(place.net) ||
        !scan.literal(" 0 0 ") || !scan.number(place.bit)) {
      return {};
    }
    for (passed.closing = 0; scan.peek() == ')' && scan.literal(")");) ++passed.closing;
    if (passed.closing == 0 || !scan.literal("\n")) return {};
    ++passed.lines;
    places.push_back(place);
  }
  // Without a parenthesis of its own the module goes on.
  if (--passed.closing == 0) return {};
  passed.bytes = text.size() - scan.rest().size();
  return passed;
}

}  // namespace XRF_RTL2LL
