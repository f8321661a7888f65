// The panel's page with 20,000 fonts, in Chromium against the real host, plug-in and agent. tests/page/speed.mjs measures;
// this program prints what it says.
#include <array>
#include <memory>
#include <sstream>
#include <string>

#include "Floor.h"

namespace {

struct CloseProgram {
  void operator()(std::FILE* program) const { pclose(program); }
};

void ReportLine(const std::string& line) {
  std::istringstream fields(line);
  double value = 0, floor = 0, limit = 0;
  std::string unit, name;
  if (!(fields >> value >> floor >> limit >> unit) || !std::getline(fields >> std::ws, name) || floor <= 0) {
    benchmark::Fail("speed.mjs says: " + line);
  }
  benchmark::Report(name.c_str(), value, floor, limit, unit.c_str());
}

void MeasureAll() {
  std::unique_ptr<std::FILE, CloseProgram> program(
      popen("'" SOURCE_DIR "/tests/page/run.sh' '" BUILD_DIR "' speed.mjs", "r"));
  if (!program) benchmark::Fail("no program can be started");
  std::array<char, 4096> line;
  while (std::fgets(line.data(), line.size(), program.get())) ReportLine(line.data());
  if (pclose(program.release()) != 0) benchmark::Fail("speed.mjs failed");
}

}  // namespace

int main() { return benchmark::Run(MeasureAll); }
