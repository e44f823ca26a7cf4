#include <lmx60/Source.h>
#include <lmx60/XmlReader.h>
#include <python/MetadataDocument.h>
#include <tools/xrf/Failure.h>
#include <tools/xrf/InputCheck.h>

#include <fmt/format.h>

namespace xrf::python {

namespace {

template <class Source>
MetadataDocument readFrom(Source& source) {
  MetadataDocument document;
  lmx60::c_xml_reader reader(source);
  reader.set_error_handler([&](const lmx60::s_debug_error& fault) {
    document.faults.push_back(fault);
    return lmx60::ELMX_OK;
  });
  document.project.unmarshal(reader);
  return document;
}

}  // namespace

void MetadataDocument::requireGood(const std::string& file) const {
  for (const lmx60::s_debug_error& fault : faults) {
    if (fault.severity != lmx60::ELMX_ERROR) continue;
    throw Failure(fmt::format("{} (code {})", fault.message, static_cast<int>(fault.code)), file,
                  fault.line, fault.column);
  }
}

MetadataDocument readMetadata(const std::string& file) {
  requireReadable(file);
  lmx60::c_read_file source(file.c_str());
  return readFrom(source);
}

MetadataDocument parseMetadata(const std::string& text) {
  lmx60::c_read_memory source(text.data(), text.size());
  return readFrom(source);
}

}  // namespace xrf::python
