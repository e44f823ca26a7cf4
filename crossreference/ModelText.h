#pragma once

#include <crossreference/Module.h>
#include <support/Api.h>

#include <iosfwd>

/// The text form of the model: the records of the cross-reference file, also fit for a diagnostic
/// dump. Nothing is quoted, so names with blanks or parentheses do not read back.
namespace XRF_RTL2LL {

/// Three blanks for each level of `Module::getDepth()`.
XRF_API std::ostream& addIndent(std::ostream& out);
/// A value outside the enumeration is a fatal error.
XRF_API std::ostream& operator<<(std::ostream& out, Bit::BitKind kind);
XRF_API std::ostream& operator<<(std::ostream& out, signalKind kind);
/// The BIT record, without indentation or line feed.
XRF_API std::ostream& operator<<(std::ostream& out, Bit* bit);
/// Indentation and the SIG record, without a line feed. A signal without a net is a fatal error.
XRF_API std::ostream& operator<<(std::ostream& out, Signal* signal);
/// The module's tree, without a final line feed.
XRF_API std::ostream& operator<<(std::ostream& out, Module* module);

}  // namespace XRF_RTL2LL
