#pragma once

#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>
#include <support/Limits.h>
#include <tools/xrf/Failure.h>

#include <string>
#include <vector>

namespace xrf {

/// A metadata document and all that is wrong with it.
struct MetadataDocument {
  Movrel::Project project;
  std::vector<lmx60::s_debug_error> faults;  ///< errors and warnings, in document order

  /// The first error, or null when there are warnings at most.
  const lmx60::s_debug_error* firstError() const;
};

/// Read a document to its end as far as its faults and the limits allow.
MetadataDocument readMetadata(const std::string& file, const XRF_RTL2LL::Limits& limits);
MetadataDocument parseMetadata(const std::string& text, const XRF_RTL2LL::Limits& limits);

/// A fault as a failure of the command.
Failure failureOf(const lmx60::s_debug_error& fault, const std::string& file);

/// Throws the first error of `document`, which was read from `file`.
void requireGood(const MetadataDocument& document, const std::string& file);

}  // namespace xrf
