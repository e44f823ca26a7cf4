#pragma once

#include <crossreference/Bit.h>
#include <tools/xrf/Json.h>
#include <tools/xrf/Table.h>

#include <string>
#include <vector>

namespace xrf {

/// What is known of a bit: its kind, where it lives, its value. As the last columns of a table ...
std::vector<Table::Column> withBitColumns(std::vector<Table::Column> columns);
void addBit(Table::Row& row, const XRF_RTL2LL::Bit& bit);
/// ... as the last fields of comma-separated values ...
std::vector<std::string> withBitFields(std::vector<std::string> titles);
void addBit(std::vector<std::string>& fields, const XRF_RTL2LL::Bit& bit);
/// ... and as keys of a JSON object.
void addBit(Json& json, const XRF_RTL2LL::Bit& bit);

}  // namespace xrf
