#include <bench/generate/OutputFile.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

constexpr const char* kUsage =
    "usage: generate_metadata --bytes N --out FILE\n"
    "\n"
    "Writes a metadata document of about N bytes: one core, and in it kernels of a dozen "
    "arguments\n"
    "with every attribute, ports, two compute units and connections. The same arguments give the\n"
    "same bytes.\n";

class Document {
 public:
  explicit Document(const std::string& path) : file_(path) {}

  void write(uint64_t bytes) {
    put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<project name=\"generated\">\n"
        "  <platform vendor=\"example.org\" boardid=\"pc-a1\" name=\"pc_a1\">\n"
        "    <host architecture=\"x86_64\"/>\n    <device name=\"fpga0\" addrWidth=\"64\">\n"
        "      <core name=\"OCL_REGION_0\" target=\"hw_em\" type=\"clc_region\">\n");
    uint64_t kernels = 0;
    while (written_ < bytes) kernel(kernels++);
    put("        <connection srcType=\"core\" srcInst=\"OCL_REGION_0\" srcPort=\"M00_AXI\" "
        "dstType=\"kernel\" dstInst=\"kernel0_1\" dstPort=\"S_AXI_CONTROL\"/>\n"
        "      </core>\n    </device>\n  </platform>\n</project>\n");
    file_.close();
  }

 private:
  static constexpr unsigned kArguments = 12;

  void put(std::string_view text) {
    file_ << text;
    written_ += text.size();
  }

  void kernel(uint64_t number) {
    const std::string name = "kernel" + std::to_string(number);
    put("        <kernel name=\"" + name + "\" language=\"c\" vlnv=\"example.org:hls:" + name +
        ":1.0\" attributes=\"\" hash=\"5f0c7a9e\" preferredWorkGroupSizeMultiple=\"1\" "
        "workGroupSize=\"1\" debug=\"true\" interrupt=\"true\" "
        "hwControlProtocol=\"ap_ctrl_chain\" countedAutoRestart=\"0\" "
        "deadlockDetection=\"none\" mailbox=\"none\" swReset=\"false\">\n");
    put("          <port name=\"M_AXI_GMEM0\" mode=\"master\" range=\"0xFFFFFFFFFFFFFFFF\" "
        "dataWidth=\"512\" portType=\"addressable\" base=\"0x0\"/>\n"
        "          <port name=\"S_AXI_CONTROL\" mode=\"slave\" range=\"0x1000\" "
        "dataWidth=\"32\" portType=\"addressable\" base=\"0x0\"/>\n");
    for (unsigned index = 0; index < kArguments; ++index) argument(index);
    for (const char* unit : {"_1", "_2"}) {
      put("          <instance name=\"" + name + unit +
          "\">\n            <addrRemap base=\"0x1800000\" port=\"S_AXI_CONTROL\"/>\n"
          "          </instance>\n");
    }
    put("        </kernel>\n");
  }

  void argument(unsigned index) {
    const std::string number = std::to_string(index);
    put("          <arg name=\"arg" + number + "\" addressQualifier=\"1\" id=\"" + number +
        "\" port=\"M_AXI_GMEM0\" size=\"0x8\" offset=\"0x" + std::to_string(10 + index * 8) +
        "\" hostOffset=\"0x0\" hostSize=\"0x8\" type=\"float*\" memSize=\"0x4000\" origName=\"in" +
        number + "\" origUse=\"variable\"/>\n");
  }

  generate::OutputFile file_;
  uint64_t written_ = 0;
};

uint64_t numberIn(std::string_view text) {
  uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw std::invalid_argument("not a number: " + std::string(text));
  }
  return number;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::string path;
    uint64_t bytes = 0;
    for (int index = 1; index + 1 < argc; index += 2) {
      const std::string_view option = argv[index];
      if (option == "--bytes") bytes = numberIn(argv[index + 1]);
      if (option == "--out") path = argv[index + 1];
    }
    if (argc != 5 || path.empty() || bytes == 0) {
      std::fputs(kUsage, stderr);
      return 2;
    }
    Document(path).write(bytes);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "generate_metadata: %s\n", error.what());
    return 1;
  }
}
