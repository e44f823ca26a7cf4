#include <tools/xrf/LimitOptions.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace xrf {

void addLimitOptions(CLI::App& subcommand, Session& session, Reads reads) {
  using XRF_RTL2LL::Limits;
  constexpr Limits usual;
  constexpr Limits highest = Limits::highest();
  for (const LimitName& name : limitNames) {
    if (!isOffered(name, reads)) continue;
    const std::string text =
        fmt::format("{} ({}; {} at most)", name.what, usual.*name.limit, highest.*name.limit);
    std::uint64_t& value = session.options.limits.*name.limit;
    subcommand.add_option(fmt::format("--max-{}", name.words), value, text)
        ->check(CLI::Range(std::uint64_t{0}, highest.*name.limit).description(""))
        ->type_name("N")
        ->group("Limits");
  }
}

}  // namespace xrf
