#ifndef BENCH_GENERATE_LOGWRITER_H
#define BENCH_GENERATE_LOGWRITER_H

#include "Design.h"

#include <string>

namespace generate {

/// Writes the synthesis log: a message for each register that became constant, among others that
/// concern nobody. Registers that were removed for want of a load are not mentioned.
void writeLog(const Design& design, const std::string& path);

}  // namespace generate

#endif
