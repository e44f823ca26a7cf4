#include <tools/xrf/BitColumns.h>
#include <tools/xrf/Words.h>

#include <fmt/format.h>

namespace xrf {

using XRF_RTL2LL::Bit;

namespace {

Table::Cell kindCell(Bit::BitKind kind) {
  switch (kind) {
    case Bit::STATE:
      return {"located", Color::Green};
    case Bit::CNST:
      return {"constant", Color::Cyan};
    case Bit::UNREAD:
      return {"unread", Color::Yellow};
    case Bit::UNKNOWN:
      break;
  }
  return {"unknown", Color::Dim};
}

}  // namespace

std::vector<Table::Column> withBitColumns(std::vector<Table::Column> columns) {
  using enum Table::Align;
  columns.insert(
      columns.end(),
      {{"KIND", Left}, {"FRAME", Right}, {"OFFSET", Right}, {"SLR", Right}, {"VALUE", Right}});
  return columns;
}

void addBit(Table::Row& row, const Bit& bit) {
  row.push_back(kindCell(bit.getKind()));
  if (bit.getKind() == Bit::STATE) {
    row.push_back({fmt::format("0x{:08x}", bit.getStateLoc1())});
    row.push_back({fmt::format("{}", bit.getStateLoc2())});
    row.push_back({fmt::format("{}", bit.getStateLoc3())});
  } else if (bit.getKind() == Bit::CNST) {
    row.insert(row.end(), {{""}, {""}, {""}, {valueText(bit)}});
  }
}

std::vector<std::string> withBitFields(std::vector<std::string> titles) {
  titles.insert(titles.end(), {"kind", "frame", "offset", "slr", "value"});
  return titles;
}

void addBit(std::vector<std::string>& fields, const Bit& bit) {
  fields.emplace_back(kindName(bit.getKind()));
  const bool located = bit.getKind() == Bit::STATE;
  for (const unsigned place : {bit.getStateLoc1(), bit.getStateLoc2(), bit.getStateLoc3()}) {
    fields.push_back(located ? std::to_string(place) : "");
  }
  fields.push_back(valueText(bit));
}

void addBit(Json& json, const Bit& bit) {
  json["kind"] = kindName(bit.getKind());
  if (bit.getKind() == Bit::STATE) {
    json["frame"] = bit.getStateLoc1();
    json["offset"] = bit.getStateLoc2();
    json["slr"] = bit.getStateLoc3();
  }
  json["value"] = valueText(bit);
}

}  // namespace xrf
