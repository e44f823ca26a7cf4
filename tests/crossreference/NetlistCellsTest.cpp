#include <crossreference/Netlist.h>
#include <tests/TestModel.h>

#include <string>
#include <utility>
#include <vector>

namespace XRF_RTL2LL {
namespace {

using testing_support::FreshModel;

class NetlistCellsTest : public FreshModel {
 protected:
  unsigned int codeOf(const char* cell) { return m_netlist.getTokenMap()->getCode(cell); }
  opKind kindOf(const char* cell, unsigned int lutMode = 0) {
    return m_netlist.getKind(codeOf(cell), 0, lutMode);
  }
  void expectKind(opKind kind, const std::vector<const char*>& cells) {
    for (const char* cell : cells) EXPECT_EQ(kindOf(cell), kind) << cell;
    // The second answer comes from what was kept of the first.
    for (const char* cell : cells) EXPECT_EQ(kindOf(cell), kind) << cell;
  }

  Netlist m_netlist;
};

TEST_F(NetlistCellsTest, ConstantsInvertersAndBuffersAreMatchedWhole) {
  expectKind(GND, {"GND", "RTL_GND"});
  expectKind(PWR, {"VCC", "RTL_PWR"});
  expectKind(INV, {"INV", "RTL_INV", "RTL_INV0"});
  expectKind(BUF, {"BUFG", "RTL_BUF"});
}

TEST_F(NetlistCellsTest, NamesAroundTheWholeMatchesFallThrough) {
  expectKind(LOGIC, {"RTL_GND1", "RTL_GN", "RTL_PWR0", "RTL_VCC", "RTL_INV1", "RTL_INV00",
                     "RTL_BUFG", "RTL_BUF0"});
  expectKind(HIER, {"GND1", "GN", "gnd", "VCC_", "PWR", "INV0", "BUF", "BUFGCE", "bufg", "IBUF"});
}

TEST_F(NetlistCellsTest, SeededRegisterNamesAreRegisters) {
  expectKind(REG, {"FD", "FDC", "FDCE", "FDE", "FDP", "FDPE", "FDR", "FDRE", "FDS", "FDSE"});
  EXPECT_EQ(codeOf("FDRE"), 38U);
}

TEST_F(NetlistCellsTest, RegisterCodesNeedNoName) {
  m_netlist.getTokenMap()->clear();
  for (unsigned int code = 31; code <= 40; ++code) {
    EXPECT_EQ(m_netlist.getKind(code, 0, 0), REG) << code;
  }
}

TEST_F(NetlistCellsTest, NeighboursOfTheRegisterCodesAreNoRegisters) {
  EXPECT_EQ(m_netlist.getKind(30, 0, 0), HIER);
  EXPECT_EQ(m_netlist.getKind(41, 0, 0), HIER);
  EXPECT_EQ(m_netlist.getKind(0, 0, 0), HIER);
}

TEST_F(NetlistCellsTest, PrefixesDecideTheKindsOfRtlCells) {
  expectKind(REG, {"RTL_REG", "RTL_REG_SYNC", "RTL_REGISTER", "RTL_FD", "RTL_FDx", "RTL_FDRE"});
  expectKind(WIDE_FD, {"RTL_wide_fd", "RTL_wide_fd_8", "RTL_wide_fdx"});
  expectKind(XOR, {"RTL_xor", "RTL_xor2"});
  expectKind(NOT_EQUAL, {"RTL_not_equal", "RTL_not_equal_1", "RTL_not_equals"});
}

TEST_F(NetlistCellsTest, EqualityIsMatchedWhole) {
  expectKind(EQUAL, {"RTL_equal"});
  expectKind(LOGIC, {"RTL_equal1", "RTL_equal_2", "RTL_equal_2_more", "RTL_equa"});
}

TEST_F(NetlistCellsTest, OtherRtlCellsAndLookUpTablesAreLogic) {
  expectKind(LOGIC, {"RTL", "RTL_", "RTLx", "RTL_RE", "RTL_reg", "RTL_F", "RTL_fd", "RTL_wide_f",
                     "RTL_WIDE_FD", "RTL_xo", "RTL_XOR", "RTL_not_equa", "RTL_MUX", "RTL_LATCH"});
  expectKind(LOGIC, {"LUT", "LUT2", "LUT3", "LUT4", "LUT5", "LUT6", "LUT6_2", "LUTx"});
}

TEST_F(NetlistCellsTest, EverythingElseIsHierarchical) {
  expectKind(HIER, {"", "user_cell", "RT", "LU", "rtl_xor", "lut6", "FDCPE", "FD_1", "fdre",
                    "FDREx", "xRTL_xor", " RTL", "SRL16E", "LDCE", "XOR", "EQUAL", "REG", "cell"});
}

TEST_F(NetlistCellsTest, OneInputTableDependsOnTheMode) {
  EXPECT_EQ(codeOf("LUT1"), 13U);
  EXPECT_EQ(kindOf("LUT1", 2), BUF);
  EXPECT_EQ(kindOf("LUT1", 1), INV);
  EXPECT_EQ(kindOf("LUT1", 0), LOGIC);
  EXPECT_EQ(kindOf("LUT1", 3), LOGIC);
  // Logic is kept by now, and still hides neither mode.
  EXPECT_EQ(kindOf("LUT1", 2), BUF);
  EXPECT_EQ(kindOf("LUT1", 1), INV);
  EXPECT_EQ(kindOf("LUT1", 0xffffffffU), LOGIC);
}

TEST_F(NetlistCellsTest, ModeMattersForNoOtherTable) {
  for (const unsigned int mode : {0U, 1U, 2U}) {
    EXPECT_EQ(kindOf("LUT2", mode), LOGIC);
    EXPECT_EQ(kindOf("LUT1_D", mode), LOGIC);
    EXPECT_EQ(kindOf("FD", mode), REG);
  }
}

TEST_F(NetlistCellsTest, LibraryDoesNotMatter) {
  for (const unsigned int library : {0U, 11U, 999U}) {
    EXPECT_EQ(m_netlist.getKind(codeOf("RTL_xor"), library, 0), XOR);
    EXPECT_EQ(m_netlist.getKind(codeOf("user"), library, 0), HIER);
  }
}

TEST_F(NetlistCellsTest, PrimitiveIsWhateverIsNotHierarchical) {
  EXPECT_TRUE(m_netlist.isPrimitive(codeOf("GND"), 0, 0));
  EXPECT_TRUE(m_netlist.isPrimitive(codeOf("FDRE"), 0, 0));
  EXPECT_TRUE(m_netlist.isPrimitive(codeOf("LUT1"), 0, 2));
  EXPECT_TRUE(m_netlist.isPrimitive(codeOf("LUT1"), 0, 0));
  EXPECT_TRUE(m_netlist.isPrimitive(codeOf("RTL_anything"), 0, 0));
  EXPECT_FALSE(m_netlist.isPrimitive(codeOf("user"), 0, 0));
  EXPECT_FALSE(m_netlist.isPrimitive(codeOf("RAMB36E1"), 0, 0));
}

TEST_F(NetlistCellsTest, CodeWithoutAWordIsFatal) {
  EXPECT_FATAL(m_netlist.getKind(51, 0, 0), "ERROR: no token for code: 51\n");
  EXPECT_FATAL(m_netlist.isPrimitive(700, 0, 0), "ERROR: no token for code: 700\n");
}

TEST_F(NetlistCellsTest, InversionCodes) {
  for (unsigned int code = 0; code < 300; ++code) {
    EXPECT_EQ(isDInverted(code), code == 47) << code;
    EXPECT_EQ(isRSTInverted(code), code == 46 || (code >= 48 && code <= 50)) << code;
  }
  EXPECT_FALSE(isDInverted(0xffffffffU));
  EXPECT_FALSE(isRSTInverted(0xffffffffU));
}

TEST_F(NetlistCellsTest, BitKindIsDecodedByItsFirstCharacter) {
  const std::vector<std::pair<const char*, Bit::BitKind>> cases{
      {"CNST", Bit::CNST}, {"C", Bit::CNST},         {"Cat", Bit::CNST},  {"UNREAD", Bit::UNREAD},
      {"U", Bit::UNREAD},  {"UNKNOWN", Bit::UNREAD}, {"?", Bit::UNKNOWN}, {"?x", Bit::UNKNOWN}};
  for (const auto& [text, kind] : cases) {
    Bit* bit = new Bit;
    bit->setKind(Bit::STATE);
    bit->setValueStr("kept");
    setKind(bit, text);
    EXPECT_EQ(bit->getKind(), kind) << text;
    EXPECT_EQ(bit->getValueStr(false), "kept");
  }
}

TEST_F(NetlistCellsTest, UnknownBitKindIsFatal) {
  Bit* bit = new Bit;
  EXPECT_FATAL(setKind(bit, "STATE"), "Unknown bit kind: 'STATE'!\n");
  EXPECT_FATAL(setKind(bit, "cnst"), "Unknown bit kind: 'cnst'!\n");
  EXPECT_FATAL(setKind(bit, ""), "Unknown bit kind: ''!\n");
  EXPECT_FATAL(setKind(bit, "%s%n"), "Unknown bit kind: '%s%n'!\n");
}

TEST_F(NetlistCellsTest, SignalKindIsDecodedByItsFirstCharacter) {
  Signal* signal = new Signal(new Module("m", "d", 0), "s", 1, 0, 0, true);
  const std::vector<std::pair<const char*, signalKind>> cases{
      {"IN", IN},     {"I", IN},   {"OUT", OUT}, {"Oval", OUT},
      {"WIRE", WIRE}, {"W", WIRE}, {"INOUT", IN}};
  for (const auto& [text, kind] : cases) {
    setKind(signal, text);
    EXPECT_EQ(signal->getKind(), kind) << text;
  }
}

TEST_F(NetlistCellsTest, UnknownSignalKindIsFatal) {
  Signal* signal = new Signal(new Module("m", "d", 0), "s", 1, 0, 0, true);
  EXPECT_FATAL(setKind(signal, "in"), "Unknown signal kind: 'in'!\n");
  EXPECT_FATAL(setKind(signal, "BIDIR"), "Unknown signal kind: 'BIDIR'!\n");
  EXPECT_FATAL(setKind(signal, ""), "Unknown signal kind: ''!\n");
}

TEST_F(NetlistCellsTest, BitValueIsDecodedByItsFirstCharacter) {
  Bit* bit = new Bit;
  setValue(bit, "1");
  EXPECT_TRUE(bit->getValue());
  EXPECT_EQ(bit->getValueStr(false), "1");
  setValue(bit, "0z");
  EXPECT_FALSE(bit->getValue());
  EXPECT_EQ(bit->getValueStr(false), "0");
  setValue(bit, "10");
  EXPECT_TRUE(bit->getValue());
  EXPECT_EQ(bit->getKind(), Bit::UNKNOWN);
}

TEST_F(NetlistCellsTest, BitValueZLeavesTheNumber) {
  for (const bool value : {false, true}) {
    Bit* bit = new Bit;
    bit->setValue(value);
    setValue(bit, "zebra");
    EXPECT_EQ(bit->getValue(), value);
    EXPECT_EQ(bit->getValueStr(false), "z");
  }
}

TEST_F(NetlistCellsTest, UnknownBitValueIsFatal) {
  Bit* bit = new Bit;
  EXPECT_FATAL(setValue(bit, "2"), "Unknown bit value: '2'!\n");
  EXPECT_FATAL(setValue(bit, "Z"), "Unknown bit value: 'Z'!\n");
  EXPECT_FATAL(setValue(bit, ""), "Unknown bit value: ''!\n");
  const std::string text(5000, 'x');
  EXPECT_FATAL(setValue(bit, text.c_str()), "Unknown bit value: '" + text + "'!\n");
}

}  // namespace
}  // namespace XRF_RTL2LL
