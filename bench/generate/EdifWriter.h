#ifndef BENCH_GENERATE_EDIFWRITER_H
#define BENCH_GENERATE_EDIFWRITER_H

#include "Design.h"
#include "Implementation.h"
#include "Wiring.h"

#include <string>

namespace generate {

/// Writes one of a design's two netlists. With renames, identifiers are cleaned and carry their
/// printable names; without, the cleaned form is the only name of most things.
void writeEdif(const Design& design, View view, const std::string& path);

/// Writes one of the netlists of a design with hazards.
void writeEdif(const Design& design, const Implementation& implementation, View view,
               const std::string& path);

}  // namespace generate

#endif
