#pragma once

#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>

#include <string>
#include <vector>

namespace xrf::python {

/// A metadata document and all that is wrong with it.
struct MetadataDocument {
  Movrel::Project project;
  std::vector<lmx60::s_debug_error> faults;  ///< errors and warnings, in document order

  /// Raises the first error as a Failure of `file`.
  void requireGood(const std::string& file) const;
};

/// Read a document to its end as far as its faults allow.
MetadataDocument readMetadata(const std::string& file);
MetadataDocument parseMetadata(const std::string& text);

}  // namespace xrf::python
