// Metadata is written into real documents and read back. Documents do not change when that fails.
#include "platform/XMP.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <filesystem>
#include <vector>

#include "platform/Files.h"
#include "platform/XMPFormat.h"
#include "platform/XMPWorker.h"
#include "support/FullDisk.h"
#include "support/TempFolder.h"

namespace platform {
namespace {

using test_support::FullDisk;
using test_support::TempFolder;

constexpr const char* kNamespace = "http://ns.example.com/test/1.0/";

class XMPTest : public testing::Test {
 protected:
  XMPTest() {
    EXPECT_TRUE(TXMPMeta::Initialize());
    EXPECT_TRUE(TXMPFiles::Initialize());
    std::string prefix;
    EXPECT_TRUE(TXMPMeta::RegisterNamespace(kNamespace, "tst", &prefix));
  }
  ~XMPTest() override {
    TXMPFiles::Terminate();
    TXMPMeta::Terminate();
  }

  std::string CopyOf(const std::string& sample) {
    std::string path = folder_ / sample;
    EXPECT_FALSE(CopyFile(std::string(SOURCE_DIR "/samples/") + sample, path));
    return path;
  }
  static bool Open(TXMPFiles& files, const std::string& path, XMP_OptionBits how) {
    return files.OpenFile(path.c_str(), kXMP_UnknownFile, how | kXMPFiles_OpenUseSmartHandler) ||
           files.OpenFile(path.c_str(), kXMP_UnknownFile, how | kXMPFiles_OpenUsePacketScanning);
  }
  // Replaces the array "list" by structures with these names.
  static void Put(TXMPMeta& meta, const std::vector<std::string>& names) {
    meta.DeleteProperty(kNamespace, "list");
    for (const std::string& name : names) {
      meta.AppendArrayItem(kNamespace, "list", kXMP_PropValueIsArray, nullptr, kXMP_PropValueIsStruct);
      std::string path;
      TXMPUtils::ComposeArrayItemPath(kNamespace, "list", kXMP_ArrayLastItem, &path);
      meta.SetStructField(kNamespace, path.c_str(), kNamespace, "name", name.c_str());
      meta.SetStructField(kNamespace, path.c_str(), kNamespace, "empty", "");  // some files do not keep it
    }
  }
  // Returns false if the file cannot be opened or has no room. Throws if the write fails.
  static bool Write(const std::string& path, const std::vector<std::string>& names) {
    TXMPFiles files;
    if (!Open(files, path, kXMPFiles_OpenForUpdate)) return false;
    TXMPMeta meta;
    files.GetXMP(&meta);
    Put(meta, names);
    if (!files.CanPutXMP(meta)) return false;
    files.PutXMP(meta);
    files.CloseFile();
    return true;
  }
  // Returns the names in an array of structures.
  static std::vector<std::string> Read(const std::string& path, const char* ns = kNamespace, const char* array = "list",
                                       const char* fieldNs = kNamespace, const char* field = "name") {
    TXMPFiles files;
    TXMPMeta meta;
    std::vector<std::string> names;
    if (!Open(files, path, kXMPFiles_OpenForRead) || !files.GetXMP(&meta)) return names;
    for (XMP_Index i = 1; i <= meta.CountArrayItems(ns, array); ++i) {
      std::string item, name;
      TXMPUtils::ComposeArrayItemPath(ns, array, i, &item);
      meta.GetStructField(ns, item.c_str(), fieldNs, field, &name, nullptr);
      names.push_back(name);
    }
    return names;
  }
  // Writes one name. If that fails, the file must not have changed.
  static bool WritesOrLeaves(const std::string& path) {
    const std::string before = TempFolder::Content(path);
    try {
      if (Write(path, {"name"})) {
        EXPECT_EQ(Read(path), std::vector<std::string>{"name"}) << path;
        return true;
      }
    } catch (const XMP_Error&) {
    }
    EXPECT_EQ(TempFolder::Content(path), before) << path;
    return false;
  }

  TempFolder folder_;
};

TEST_F(XMPTest, WhatIsWrittenIsReadAgain) {
  const std::vector<std::string> names = {"DejaVuSans", "Ünïcødé <&> \"日本\""};
  for (const char* sample : {"poster.psd", "brochure.psd", "no-text.psd", "leaflet.pdf"}) {
    const std::string path = CopyOf(sample);
    const auto mode = std::filesystem::perms(0640);
    std::filesystem::permissions(path, mode);
    ASSERT_TRUE(Write(path, names)) << sample;
    EXPECT_EQ(Read(path), names) << sample;
    ASSERT_TRUE(Write(path, {"only"})) << sample;
    EXPECT_EQ(Read(path), std::vector<std::string>{"only"}) << sample;
    EXPECT_EQ(std::filesystem::status(path).permissions(), mode) << sample;
  }
  EXPECT_EQ(folder_.Names().size(), 4u) << "nothing is left beside the documents";
}

TEST_F(XMPTest, WhatOthersWroteStays) {
  const std::string path = CopyOf("brochure.psd");
  const auto fonts = [&] { return Read(path, kXMP_NS_PagedText, "Fonts", kXMP_NS_FontType, "fontName"); };
  const std::vector<std::string> before = fonts();
  EXPECT_THAT(before, testing::UnorderedElementsAre("C059-Bold", "C059-Roman"));
  ASSERT_TRUE(Write(path, {"name"}));
  EXPECT_EQ(fonts(), before);
}

TEST_F(XMPTest, NothingNewLeavesTheFileAlone) {
  for (const char* sample : {"no-text.psd", "leaflet.pdf"}) {
    const std::string path = CopyOf(sample), bytes = TempFolder::Content(path);
    ASSERT_TRUE(Write(path, {}));
    EXPECT_EQ(TempFolder::Content(path), bytes) << sample << " gets no empty packet";
    ASSERT_TRUE(Write(path, {"one", "two"}));
    const uint64_t written = GetFileModificationDate(path);
    ASSERT_TRUE(Write(path, {"one", "two"}));
    EXPECT_EQ(GetFileModificationDate(path), written) << sample;
  }
}

TEST_F(XMPTest, NothingPutLeavesTheFileAlone) {
  const std::string path = CopyOf("poster.psd");
  const std::string before = TempFolder::Content(path);
  TXMPFiles files;
  TXMPMeta meta;
  ASSERT_TRUE(Open(files, path, kXMPFiles_OpenForUpdate));
  files.GetXMP(&meta);
  files.CloseFile();
  {
    TXMPFiles dropped;
    ASSERT_TRUE(Open(dropped, path, kXMPFiles_OpenForUpdate));
    Put(meta, {"name"});
    dropped.PutXMP(meta);  // and never closed
  }
  EXPECT_EQ(TempFolder::Content(path), before);
  EXPECT_EQ(folder_.Names().size(), 1u);
}

// The library believes this comment, writes nothing, and reports success.
TEST_F(XMPTest, ASuccessThatIsLostIsAnErrorAndTheOldFileStays) {
  const std::string path = folder_.Write("lost.eps",
                                         "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 10 10\n%ADO_ContainsXMP: NoMain\n"
                                         "%%EndComments\nshowpage\n%%EOF\n");
  const std::string before = TempFolder::Content(path);
  try {
    Write(path, {"name"});
    FAIL() << "no error";
  } catch (const XMP_Error& error) {
    EXPECT_STREQ(error.what(),
                 (path + ": the metadata that was written cannot be read back: tst:list[1]/tst:name").c_str());
  }
  EXPECT_EQ(TempFolder::Content(path), before);
  EXPECT_EQ(folder_.Names().size(), 1u);
}

TEST_F(XMPTest, AFullDiskLeavesTheOldFile) {
  for (const char* sample : {"no-text.psd", "leaflet.pdf"}) {
    const std::string path = CopyOf(sample);
    const size_t most = TempFolder::Content(path).size() + 4096;
    int failures = 0;
    bool isWritten = false;
    for (rlim_t size = 0; size < most && !isWritten; size += 1024) {
      const FullDisk full(size);
      isWritten = WritesOrLeaves(path);
      failures += isWritten ? 0 : 1;
    }
    EXPECT_TRUE(isWritten) << sample;
    EXPECT_GE(failures, 2) << sample;
  }
  EXPECT_EQ(folder_.Names().size(), 2u);
}

TEST_F(XMPTest, WhatIsNoDocumentIsNotOpened) {
  folder_.Write("folder/file", "");
  const std::string paths[] = {folder_ / "missing.psd", folder_ / "folder", "", "/dev/null"};
  for (const std::string& path : paths) {
    for (const XMP_OptionBits how : {kXMPFiles_OpenForRead, kXMPFiles_OpenForUpdate}) {
      TXMPFiles files;
      EXPECT_FALSE(Open(files, path, how)) << path;
      TXMPMeta meta;
      EXPECT_THROW(files.GetXMP(&meta), XMP_Error);
      EXPECT_THROW(files.PutXMP(meta), XMP_Error);
      EXPECT_NO_THROW(files.CloseFile());
    }
  }
  const std::string text = folder_.Write("plain.txt", "no metadata and no room for any");
  EXPECT_FALSE(Write(text, {"name"}));
  EXPECT_EQ(TempFolder::Content(text), "no metadata and no room for any");
}

TEST_F(XMPTest, DamagedDocumentsAreReadOrRefusedButNeverHarmed) {
  size_t written = 0;
  for (const char* sample : {"poster.psd", "leaflet.pdf"}) {
    const std::string whole = TempFolder::Content(std::string(SOURCE_DIR "/samples/") + sample);
    for (const size_t percent : {0u, 1u, 10u, 50u, 90u, 99u}) {
      const std::string path = folder_.Write(sample, whole.substr(0, whole.size() * percent / 100));
      Read(path);
      written += WritesOrLeaves(path) ? 1 : 0;
    }
  }
  EXPECT_GT(written, 3u) << "of twelve";
  EXPECT_LT(written, 9u) << "of twelve";
}

// A packet of metadata with an array nested this deeply. The marks in it are not tags.
std::string Nested(size_t depth) {
  std::string packet =
      "<?xpacket begin=\"\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?><x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
      "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description rdf:about=\"/>\" xmlns:t=\"" +
      std::string(kNamespace) + "\"><!-- </a></a> --><t:list>";
  for (size_t i = 0; i < depth; ++i) packet += "<rdf:Bag><!--</a>--><rdf:li>";
  packet += "text";
  for (size_t i = 0; i < depth; ++i) packet += "</rdf:li></rdf:Bag>";
  return packet + "</t:list></rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end=\"w\"?>";
}

std::string Wide(const std::string& text) {
  std::string wide;
  for (const char c : text) wide += {'\0', c};
  return wide;
}

// Two resources of one number, with names of odd and of even length.
const std::string kTwin(
    "8BIM\x0F\xA1\0\0\0\0\0\5first\0"
    "8BIM\x0F\xA1\0\0\0\0\0\6second",
    36);

// The sample with these packets of metadata, behind resources with names.
std::string LayeredWith(std::string sample, const std::vector<std::string>& packets) {
  constexpr size_t kResources = 30;
  const auto number = [](size_t value) {
    return std::string{static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
                       static_cast<char>(value)};
  };
  std::string resources = kTwin + "8BIM" + std::string("\x0F\xA0\3abc", 6) + number(3) + "abc" + std::string(1, '\0');
  for (const std::string& packet : packets) {
    resources += "8BIM" + std::string("\x04\x24\0\0", 4) + number(packet.size()) + packet;
    if (packet.size() % 2 != 0) resources.push_back('\0');
  }
  size_t old = 0;
  for (size_t i = 0; i < 4; ++i) old = old << 8 | static_cast<uint8_t>(sample[kResources + i]);
  return sample.replace(kResources, 4 + old, number(resources.size()) + resources);
}

std::string Flat(size_t count) {
  std::string properties;
  for (size_t i = 0; i < count; ++i) properties += "<t:p" + std::to_string(i) + ">x</t:p" + std::to_string(i) + ">";
  std::string packet = Nested(0);
  return packet.insert(packet.find("<!--"), properties);
}

// A packet that fits takes the place of the old one. All other resources stay, also two of one number; of two packets
// the first is read and replaced.
TEST_F(XMPTest, ALayeredDocumentIsWrittenInItsPlaceWhereThatHasRoom) {
  const std::string other = Nested(0);
  const std::string path = folder_.Write(
      "document.psd", LayeredWith(TempFolder::Content(SOURCE_DIR "/samples/no-text.psd"), {Nested(1), other}));
  const auto identity = [&] {
    struct stat info {};
    EXPECT_EQ(stat(path.c_str(), &info), 0);
    return std::pair(info.st_ino, info.st_size);
  };
  const auto first = identity();
  ASSERT_TRUE(Write(path, {"a name that has no room"}));
  EXPECT_NE(identity(), first);
  const auto second = identity();
  for (const char* name : {"other", "the name of another font"}) {
    ASSERT_TRUE(Write(path, {name}));
    EXPECT_EQ(identity(), second);
    EXPECT_EQ(Read(path), std::vector<std::string>{name});
    EXPECT_THAT(TempFolder::Content(path), testing::AllOf(testing::HasSubstr(kTwin), testing::HasSubstr(other)));
  }
  EXPECT_EQ(folder_.Names().size(), 1u);
}

// Each of these hung the XMP library, crashed it, or kept it busy for minutes.
TEST_F(XMPTest, WhatTheLibraryCannotStandIsRefused) {
  const std::string sample = TempFolder::Content(SOURCE_DIR "/samples/no-text.psd");
  const std::string deep = Nested(60000);
  const auto byte = [&](int shift) { return static_cast<char>(deep.size() >> shift); };
  const std::string tiff = std::string("II*\0\x08\0\0\0\1\0\xBC\2\1\0", 14) +
                           std::string{byte(0), byte(8), byte(16), byte(24)} + std::string("\x1A\0\0\0\0\0\0\0", 8);
  const std::string endless =
      std::string("\x30\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\0\xAA\0\x62\xCE\x6C\x1E\0\0\0\0\0\0\0\2\0\0\0\1\2", 30) +
      std::string(74, '\0');
  const char* kOpens = "opens";
  const struct {
    const char* name;
    std::string bytes;
    const char* outcome;  // or a part of the error
  } rows[] = {{"sound.psd", LayeredWith(sample, {Nested(100)}), kOpens},
              {"deep.psd", LayeredWith(sample, {deep}), "has more than 1000 levels"},
              {"deep-wide.psd", LayeredWith(sample, {"\xFE\xFF" + Wide(deep)}), "has more than 1000 levels"},
              {"levels.psd", LayeredWith(sample, {Nested(600)}), "has more than 1000 levels"},
              {"many.psd", LayeredWith(sample, {Flat(100000)}), "has more than 2000 properties in one group"},
              {"deep.tif", tiff + deep, "nested too deep"},
              {"sound.txt", "before " + Nested(100) + "<a>" + Nested(2), kOpens},
              {"deep.txt", "before <rdf:RD" + Nested(100) + deep, "nested too deep"},
              {"endless.psd", endless, kOpens},
              {"endless.wmv", endless, kOpens}};
  for (const auto& row : rows) {
    testing::internal::CaptureStderr();
    std::string outcome;
    try {
      TXMPFiles files;
      if (Open(files, folder_.Write(row.name, row.bytes), kXMPFiles_OpenForRead)) outcome = kOpens;
    } catch (const XMP_Error& error) {
      outcome = error.what();
    }
    EXPECT_THAT(outcome, testing::HasSubstr(row.outcome)) << row.name;
    const std::string reported = testing::internal::GetCapturedStderr();
    EXPECT_EQ(reported, outcome.starts_with('/') ? outcome + "\n" : "") << row.name;
  }
}

// A file that is not suspected is not searched by the library.
TEST_F(XMPTest, APacketIsSuspectedInEveryEncodingWhereverItIs) {
  const std::string packet = "<?xpacket begin=\"\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>";
  for (const size_t bytesPerCharacter : {1, 2, 4}) {
    for (const bool isBigEndian : {false, true}) {
      std::string text(packet.size() * bytesPerCharacter, '\0');
      for (size_t i = 0; i < packet.size(); ++i) {
        text[i * bytesPerCharacter + (isBigEndian ? bytesPerCharacter - 1 : 0)] = packet[i];
      }
      // The file is looked at in pieces of 16 to 128 KiB.
      for (size_t before = 0; before < (size_t{300} << 10); before += before == 0 ? 16'000 : 16'384 - 43) {
        const std::string path = folder_.Write("file", std::string(before, 'W') + text);
        EXPECT_TRUE(MayHavePacket(path)) << bytesPerCharacter << " " << isBigEndian << " " << before;
      }
    }
  }
  for (const char* text : {"W", "W5M0", "A text that has no packet but is long enough for one"}) {
    EXPECT_FALSE(MayHavePacket(folder_.Write("file", text)));
  }
  EXPECT_TRUE(MayHavePacket(folder_.Write("file", ""))) << "what the library says of it";
}

TEST_F(XMPTest, AWorkerThatDoesNotAnswerIsEndedAndTheNextRequestServed) {
  const std::string script = folder_.Write("worker", "#!/bin/sh\nexec tail -f /dev/null\n");
  std::filesystem::permissions(script, std::filesystem::perms(0700));
  const XMPMessage request{static_cast<uint32_t>(XMPQuestion::kRead), 0, 0, folder_ / "none", ""};
  const struct {
    std::string program, problem;
  } rows[] = {{script, "the XMP library took more than 0 seconds"},
              {"/bin/false", "the XMP library's process ended with status 1"},
              {folder_ / "absent", folder_ / "absent can't be started: No such file or directory"}};
  for (const auto& row : rows) {
    XMPWorker worker(row.program);
    for (int i = 0; i < 2; ++i) {
      XMPMessage answer, patient = request;
      if (row.program != script) patient.number = 20;
      std::string problem;
      EXPECT_FALSE(worker.Ask(patient, answer, &problem));
      EXPECT_EQ(problem, row.problem);
    }
  }
}

}  // namespace
}  // namespace platform
