// Any bytes as a packed web font, as the font unpacker reads it: gives font files within the limits, or a line that says
// what is wrong. Unpacking again gives the same, and the agent reads or refuses each file.
#include "Check.h"
#include "Input.h"
#include "agent/fonts/FontFile.h"
#include "agent/unpacking/FontUnpacker.h"
#include "agent/unpacking/UnpackMessages.h"

namespace {

using namespace agent;
using namespace std::string_view_literals;

constexpr size_t kMostPaddingOfAFont = size_t{1} << 18;  // headers, entries and padding of all its tables

void CheckFile(const FontFileReader& reader, const std::string& file) {
  CHECK(file.starts_with("\0\1\0\0"sv) || file.starts_with("OTTO"));
  CHECK(file.size() % 4 == 0 && file.size() <= kLargestFont + kMostPaddingOfAFont);
  const FontFileContent content = reader.Parse(file, "font.ttf");
  CHECK(content.verdict != FontVerdict::kNotAFont);
  CHECK(content.verdict == FontVerdict::kFont || !content.problem.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FontUnpacker sUnpacker;
  static const FontFileReader sReader;
  const std::string_view bytes = BytesOf(data, size);
  try {
    const std::vector<std::string> files = sUnpacker.Unpack(bytes);
    CHECK(!files.empty() && files.size() <= kMostFontsInAFile);
    for (const std::string& file : files) CheckFile(sReader, file);
    CHECK(sUnpacker.Unpack(bytes) == files);
  } catch (const UnpackError& error) {
    CHECK(*error.what() != '\0');
    CHECK(std::string_view(error.what()).find('\n') == std::string_view::npos);
  }
  return 0;
}
