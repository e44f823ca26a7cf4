#pragma once

#include <lmx60/Error.h>
#include <lmx60/Source.h>
#include <lmx60/Target.h>
#include <lmx60/XmlReader.h>
#include <lmx60/XmlWriter.h>

#include <new>
#include <string_view>

/// How any class of a binding is read and written.
namespace lmx60 {

/// Reads the element of this name, at which the reader stands, into `item`, whose content is given
/// up.
template <class Item>
elmx_error unmarshal(Item& item, c_xml_reader& reader, std::string_view name) {
  item.init();
  elmx_error error = reader.check_element(name);
  if (error == ELMX_OK) error = reader.unmarshal_attributes(item);
  if (error == ELMX_OK) item.unmarshal_body(reader, &error);
  return error;
}

/// Writes `item` as an element of this name.
template <class Item>
elmx_error marshal(const Item& item, c_xml_writer& writer, std::string_view name) {
  writer.start_element(name);
  if (item.marshal_attributes(writer) == ELMX_OK) item.marshal_child_elements(writer);
  writer.end_element();
  return writer.error();
}

/// Reads a whole document into a root object. `debug` may be null.
template <class Root>
elmx_error unmarshal(Root& root, c_read& source, s_debug_error* debug) {
  if (debug != nullptr) *debug = s_debug_error();
  try {
    c_xml_reader reader(source);
    const elmx_error error = root.unmarshal(reader);
    if (debug != nullptr) *debug = reader.debug_error();
    return error;
  } catch (const std::bad_alloc&) {
    if (debug != nullptr) debug->code = ELMX_NO_MEMORY;
    return ELMX_NO_MEMORY;
  }
}

/// Writes a root object as a whole document. `debug` may be null.
template <class Root>
elmx_error marshal(const Root& root, c_write& target, std::string_view name, s_debug_error* debug) {
  c_xml_writer writer(target);
  root.marshal(writer, name);
  if (writer.error() == ELMX_OK) writer.finish();
  if (debug != nullptr) *debug = writer.debug_error();
  return writer.error();
}

}  // namespace lmx60
