#pragma once

#include <cstdint>
#include <string>

/// What reading, writing and validating report.
namespace lmx60 {

/// Every code of the runtime. Numbers are part of the contract: callers store and compare them.
enum elmx_error : int {
  ELMX_OK = 0,

  // The document as XML
  ELMX_NOT_WELL_FORMED = 1,   ///< the text is no XML document, or ends too early
  ELMX_NO_DOCUMENT = 2,       ///< there is no element at all
  ELMX_ENCODING = 3,          ///< the encoding is unknown, or the bytes are not text of it
  ELMX_EXTERNAL_ENTITY = 4,   ///< the document refers to another file; none is ever fetched
  ELMX_HOSTILE_ENTITIES = 5,  ///< entities are too many, or expand to too much
  ELMX_NO_MEMORY = 6,
  ELMX_TOO_DEEP = 14,  ///< elements are nested deeper than the reader's limits allow

  // Files and streams
  ELMX_CANNOT_OPEN = 7,
  ELMX_CANNOT_READ = 8,
  ELMX_CANNOT_WRITE = 9,

  // The document against its schema
  ELMX_UNEXPECTED_ELEMENT = 10,  ///< known to its parent, but out of order or once too often
  ELMX_UNKNOWN_ELEMENT = 11,     ///< a warning: skipped with all it contains
  ELMX_UNKNOWN_ATTRIBUTE = 12,   ///< a warning: skipped
  ELMX_UNKNOWN_TEXT = 13,        ///< a warning: text where only elements belong, skipped
  ELMX_WRONG_ROOT = 16,
  ELMX_MISSING_ELEMENT = 21,  ///< a mandatory child element is absent

  // Values
  ELMX_NOT_INTEGER = 35,
  ELMX_ABOVE_MAXIMUM = 36,
  ELMX_BELOW_MINIMUM = 37,

  ELMX_NOT_READ = 42,  ///< what a reading constructor stores before it starts

  // Use of the objects
  ELMX_UNWRITABLE_TEXT = 50,  ///< a value holds what no XML document can carry, or is not UTF-8
  ELMX_BAD_INDEX = 51,        ///< a position beyond the end of a list
  ELMX_ABSENT_CHILD = 52,     ///< a child was asked for that is not there
  ELMX_NULL_CHILD = 53,       ///< a null pointer was given where an object is stored
  ELMX_READER_STATE = 54      ///< a reader was asked for what it does not stand at
};

/// How grave a fault is. Warnings do not end reading unless a handler says so.
enum elmx_severity : int { ELMX_WARNING, ELMX_ERROR };

/// One fault, and where it was found.
struct s_debug_error {
  elmx_error code = ELMX_OK;
  elmx_severity severity = ELMX_ERROR;
  std::uint64_t line = 0;    ///< in the document, from 1; 0 where there is no place
  std::uint64_t column = 0;  ///< in characters, from 1
  std::string element;       ///< local name of the element concerned, or empty
  std::string source;        ///< the document: a file's name, or what it was held in
  std::string binding;       ///< source file of the binding that met the fault
  std::string message;       ///< one sentence for people
};

}  // namespace lmx60
