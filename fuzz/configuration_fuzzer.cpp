// Any bytes as a configuration: always gives a map, whose entries can be written and read back.
#include "Check.h"
#include "GConfigurationFile.h"
#include "GStringUtils.h"
#include "Input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  GConfigurationFile::Values values, again;
  CHECK(GConfigurationFile::ParseString(std::string(BytesOf(data, size)), values) == 0);
  std::string text;
  for (const auto& [key, value] : values) {
    CHECK(!key.empty() && key == GStringUtils::OSToLowerCase(key) && key == GStringUtils::StripWhitespace(key));
    CHECK(value == GStringUtils::StripWhitespace(value));
    text.append(key).append("=").append(value).append("\r\n");
  }
  CHECK(GConfigurationFile::ParseString(text, again) == 0);
  CHECK(again == values);
  return 0;
}
