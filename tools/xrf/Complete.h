#pragma once

#include <tools/xrf/Failure.h>

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace xrf {

/// What the completion scripts of the shells call: `xrf __complete WORD...`.
inline constexpr std::string_view completeCommand = "__complete";

/// Prints what may stand for the last of the words that follow `xrf`, one line each: the word and,
/// after a tab, what it means. A word that ends in "/" wants to be continued. A line that begins
/// with ":files" asks for the names of files, with the extensions that it lists.
///
/// Names of signals come from the cross-reference file among the words. A shell must not hang, so
/// a file that takes too long offers none; nor does one that cannot be read.
Status complete(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace xrf
