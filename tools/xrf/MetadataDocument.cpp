#include <lmx60/Source.h>
#include <lmx60/XmlReader.h>
#include <tools/xrf/InputCheck.h>
#include <tools/xrf/MetadataDocument.h>

#include <algorithm>
#include <fmt/format.h>

namespace xrf {

const lmx60::s_debug_error* MetadataDocument::firstError() const {
  const auto error = std::find_if(
      faults.begin(), faults.end(),
      [](const lmx60::s_debug_error& fault) { return fault.severity == lmx60::ELMX_ERROR; });
  return error == faults.end() ? nullptr : &*error;
}

namespace {

template <class Source>
MetadataDocument readFrom(Source& source, const XRF_RTL2LL::Limits& limits) {
  MetadataDocument document;
  lmx60::c_xml_reader reader(source);
  reader.set_limits(limits);
  reader.set_error_handler([&](const lmx60::s_debug_error& fault) {
    document.faults.push_back(fault);
    return lmx60::ELMX_OK;
  });
  document.project.unmarshal(reader);
  return document;
}

}  // namespace

MetadataDocument readMetadata(const std::string& file, const XRF_RTL2LL::Limits& limits) {
  requireReadable(file, FileKind::Metadata);
  lmx60::c_read_file source(file.c_str());
  return readFrom(source, limits);
}

MetadataDocument parseMetadata(const std::string& text, const XRF_RTL2LL::Limits& limits) {
  lmx60::c_read_memory source(text.data(), text.size());
  return readFrom(source, limits);
}

Failure failureOf(const lmx60::s_debug_error& fault, const std::string& file) {
  return Failure(fmt::format("{} (code {})", fault.message, static_cast<int>(fault.code)), file,
                 fault.line, fault.column);
}

void requireGood(const MetadataDocument& document, const std::string& file) {
  if (const lmx60::s_debug_error* error = document.firstError()) throw failureOf(*error, file);
}

}  // namespace xrf
