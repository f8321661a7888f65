// The bytes of layered documents: their structure, adding text layers, and reading the names back.
#include "host/LayeredFile.h"

#include <gmock/gmock.h>

#include "host/ByteOrder.h"
#include "platform/Files.h"
#include "platform/TextEncoding.h"
#include "platform/XMP.h"
#include "support/LayeredBytes.h"
#include "support/TempFolder.h"

using host::LayeredFile;
using test_support::AddTexts;
using test_support::FontNamesIn;
using test_support::ParseLayered;

namespace {

std::string Sample(const std::string& name) {
  return test_support::TempFolder::Content(std::string(SOURCE_DIR) + "/samples/" + name);
}

LayeredFile Parse(std::string_view bytes) {
  LayeredFile file;
  EXPECT_EQ(ParseLayered(bytes, file), "");
  EXPECT_EQ(file.layerProblem, "");
  return file;
}

std::string_view Between(std::string_view bytes, size_t begin, size_t end) { return bytes.substr(begin, end - begin); }

// A document with 16 bits whose one layer, counted as -1, is in the block after the global mask.
std::string DeepDocument() {
  const std::string sample = Sample("no-text.psd");
  const LayeredFile file = Parse(sample);
  std::string info(Between(sample, file.layers.begin, file.layers.end));
  info[0] = info[1] = '\xFF';
  std::string section(8, '\0');  // no layer information in its ordinary place, no mask
  section += "8BIMLr16";
  host::AppendBigEndian(section, info.size(), 4);
  section += info;
  section.resize((section.size() + 3) / 4 * 4);
  section += "8BIMPatt" + std::string(4, '\0');
  std::string bytes = sample.substr(0, file.layersAndMask);
  bytes[23] = 16;
  host::AppendBigEndian(bytes, section.size(), 4);
  return bytes + section + std::string(2 + size_t{160} * 120 * 3 * 2, '\0');
}

}  // namespace

TEST(LayeredFile, EveryPrefixIsTruncated) {
  const std::string bytes = Sample("no-text.psd");
  LayeredFile file;
  for (size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_NE(ParseLayered(std::string_view(bytes).substr(0, size), file), "") << size;
  }
}

TEST(LayeredFile, TextLayersLeaveEveryOtherByte) {
  struct Row {
    const char* what;
    std::string bytes;
    int expectedCount;
  };
  const Row rows[] = {
      {"layers with text", Sample("poster.psd"), 5}, {"a layer without text", Sample("no-text.psd"), 3},
      {"no layers", host::NewLayeredFile(false), 2}, {"no layers, wide lengths", host::NewLayeredFile(true), 2},
      {"layers of 16 bits", DeepDocument(), -3},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    std::string bytes;
    ASSERT_EQ(AddTexts(row.bytes, {{"one", "First-Font"}, {"Zwölf", "Zw\xC3\xB6lf(\\)"}}, bytes), "");
    const LayeredFile before = Parse(row.bytes), after = Parse(bytes);
    ASSERT_TRUE(after.layers.isPresent);
    EXPECT_EQ(after.layers.count, row.expectedCount);
    EXPECT_LT(after.layers.end - after.layers.channelsEnd, 4u) << "padding";
    EXPECT_EQ(Between(bytes, 0, after.layersAndMask), Between(row.bytes, 0, before.layersAndMask));
    EXPECT_EQ(bytes.substr(after.layersAndMaskEnd), row.bytes.substr(before.layersAndMaskEnd));
    auto names = FontNamesIn(row.bytes);
    names.insert(names.end(), {"First-Font", "Zw\xC3\xB6lf(\\)"});
    EXPECT_EQ(FontNamesIn(bytes), names);
    if (!before.layers.isPresent) continue;
    const auto oldRecords = Between(row.bytes, before.layers.begin + 2, before.layers.recordsEnd);
    EXPECT_EQ(bytes.substr(after.layers.begin + 2, oldRecords.size()), oldRecords);
    const auto oldPixels = Between(row.bytes, before.layers.recordsEnd, before.layers.channelsEnd);
    EXPECT_EQ(bytes.substr(after.layers.recordsEnd, oldPixels.size()), oldPixels);
    const size_t behind = (before.layers.end + 3) / 4 * 4;
    EXPECT_TRUE(
        Between(bytes, 0, after.layersAndMaskEnd).ends_with(Between(row.bytes, behind, before.layersAndMaskEnd)));
  }
}

TEST(LayeredFile, AnotherProgramsLibraryWritesItsMetadata) {
  ASSERT_TRUE(platform::TXMPMeta::Initialize() && platform::TXMPFiles::Initialize());
  const std::string path = testing::TempDir() + "layered-file-test.psd";
  std::string bytes;
  ASSERT_EQ(AddTexts(host::NewLayeredFile(false), {{"one", "First-Font"}}, bytes), "");
  ASSERT_FALSE(platform::ReplaceFile(path, bytes));
  platform::TXMPFiles files;
  ASSERT_TRUE(files.OpenFile(path.c_str(), platform::kXMP_UnknownFile,
                             platform::kXMPFiles_OpenForUpdate | platform::kXMPFiles_OpenUseSmartHandler));
  platform::TXMPMeta meta;
  files.GetXMP(&meta);
  meta.SetProperty("http://ns.adobe.com/xap/1.0/", "CreatorTool", "a test");
  ASSERT_TRUE(files.CanPutXMP(meta));
  files.PutXMP(meta);
  files.CloseFile();
  std::string written;
  ASSERT_FALSE(platform::ReadFile(path, written));
  const LayeredFile before = Parse(bytes), after = Parse(written);
  EXPECT_NE(written.find("a test"), std::string::npos);
  EXPECT_EQ(written.substr(after.layersAndMask), bytes.substr(before.layersAndMask));
  platform::RemoveTree(path);
}

// A damaged file is read or gives an error. What is written from it can be read.
TEST(LayeredFile, DamagedBytesAreRefusedOrStayWhole) {
  size_t refused = 0, written = 0;
  for (std::string bytes :
       {Sample("no-text.psd"), DeepDocument().substr(0, 400) + std::string(size_t{160} * 120 * 6, '\0')}) {
    for (size_t at = 0; at < 400; ++at) {
      for (const char damage : {'\xFF', '\x7F', '\0'}) {
        const char kept = std::exchange(bytes[at], damage);
        std::string out;
        LayeredFile file;
        const bool isWritten = AddTexts(bytes, {{"one", "First-Font"}}, out).empty();
        ++(isWritten ? written : refused);
        if (isWritten) {
          EXPECT_EQ(ParseLayered(out, file), "") << at;
          EXPECT_EQ(file.layerProblem, "") << at;
        }
        bytes[at] = kept;
      }
    }
  }
  EXPECT_GT(refused, 100u);
  EXPECT_GT(written, 1000u);
}

TEST(LayeredFile, ModesWithoutTextLayersAreRefused) {
  std::string bytes = host::NewLayeredFile(false), out;
  bytes[25] = 2;  // indexed colour
  EXPECT_NE(AddTexts(bytes, {{"one", "First-Font"}}, out), "");
  EXPECT_EQ(host::TextLayerProblem(Parse(host::NewLayeredFile(true))), "");
}

TEST(FontSets, NamesAreReadAsTextDataWritesThem) {
  const auto name = [](const std::string& utf8) { return " << /Name " + host::TextDataString(utf8) + " >>"; };
  struct Row {
    const char* what;
    std::string bytes;
    std::vector<std::string> expected;
  };
  const Row rows[] = {
      {"two sets",
       "/FontSet [" + name("A") + name("B") + "]...\n/FontSet [" + name("B") + name("C") + "]",
       {"A", "B", "C"}},
      {"escapes", "/FontSet [" + name("a(b)c\\d") + "]", {"a(b)c\\d"}},
      {"a bracket in a name", "/FontSet [" + name("a]b") + name("c") + "]", {"a]b", "c"}},
      {"a parenthesis as a high byte",
       "/FontSet [" + name("\xE2\xA4\x80\xE5\xB1\x80") + "]",
       {"\xE2\xA4\x80\xE5\xB1\x80"}},
      {"an array within", "/FontSet [ << /Axes [ 1 2 ] /Name (\xFE\xFF" + std::string("\0A", 2) + ") >> ]", {"A"}},
      {"other strings", "/FontSet [ << /Label " + host::TextDataString("x") + name("A") + " ]", {"A"}},
      {"a name outside", name("A") + "/FontSet [ ]" + name("B"), {}},
      {"no end", "/FontSet [" + name("A"), {}},
      {"no end, then a whole one", "/FontSet [" + name("A") + "/FontSet [" + name("B") + "]", {"B"}},
      {"a string without its end", "/FontSet [ << /Name (A ]", {}},
      {"no mark", "/FontSet [ << /Name (Plain) >> ]", {"Plain"}},
      {"half a character", "/FontSet [ << /Name (\xFE\xFF\xD8) >>" + name("B") + "]", {"B"}},
      {"an empty name", "/FontSet [" + name("") + "]", {}},
      {"another key", "/FontSet[" + name("A") + "]", {}},
  };
  for (const Row& row : rows) EXPECT_EQ(FontNamesIn(row.bytes), row.expected) << row.what;
  EXPECT_EQ(host::TextDataString("\xFF"), "");
}
