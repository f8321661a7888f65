// Documents and their files: refusals, and what a save changes and keeps.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "host/ByteOrder.h"
#include "host/DocumentFile.h"
#include "host/HostTest.h"
#include "host/LayeredFile.h"
#include "host/TextLayer.h"
#include "support/FullDisk.h"
#include "support/LayeredBytes.h"

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

using DocumentTest = HostTest;

std::string SampleBytes(const std::string& name) {
  return HostTest::Read(std::string(SOURCE_DIR) + "/samples/" + name);
}

}  // namespace

TEST_F(DocumentTest, BadFilesGiveOneLineAndTheOthersGoOn) {
  const std::string poster = SampleBytes("poster.psd"), leaflet = SampleBytes("leaflet.pdf");
  std::string noPicture = poster, wideHeader = poster;
  noPicture[14] = noPicture[15] = noPicture[16] = noPicture[17] = '\0';
  wideHeader[5] = '\x09';
  std::filesystem::create_directory(InFolder("folder.psd"));
  ASSERT_EQ(mkfifo(InFolder("pipe.psd").c_str(), 0600), 0);
  Write("empty.psd", "");
  Write("text.psd", "/FontSet [ << /Name (x) >> ]");
  Write("header.psd", poster.substr(0, 20));
  Write("middle.psd", poster.substr(0, poster.size() / 2));
  Write("end.psd", poster.substr(0, poster.size() - 1));
  Write("misnamed.tif", poster.substr(0, poster.size() - 1));
  Write("size.psd", noPicture);
  Write("version.psd", wideHeader);
  Write("text.pdf", "no PDF");
  Write("end.pdf", leaflet.substr(0, leaflet.size() / 2));
  const std::pair<const char*, const char*> rows[] = {
      {"missing.psd", "No such file or directory"},
      {"folder.psd", "a folder"},
      {"pipe.psd", "not a regular file"},
      {"empty.psd", "the file is empty"},
      {"text.psd", "not a PSD document"},
      {"header.psd", "truncated: the header"},
      {"middle.psd", "truncated: the layer"},
      {"end.psd", "truncated: the composite image"},
      {"misnamed.tif", "truncated"},
      {"size.psd", "160 by 0"},
      {"version.psd", "version 9"},
      {"text.pdf", "not a PDF document"},
      {"end.pdf", "truncated"},
  };
  Open(Sample("no-text.psd"));
  TakeEvents();
  for (const auto& [name, expected] : rows) {
    const std::string problem = application.Open(InFolder(name), nullptr);
    EXPECT_THAT(problem,
                testing::AllOf(StartsWith(InFolder(name) + ": "), HasSubstr(expected), testing::Not(HasSubstr("\n"))));
  }
  EXPECT_THAT(TakeEvents(), IsEmpty());
  EXPECT_EQ(Current(), "1 no-text.psd");
  Open(Sample("leaflet.pdf"));
}

// Root may do everything, so refusals need another user. Any user may replace files in the folder.
TEST_F(DocumentTest, UnreadableFileIsToldAndAReadOnlyOneStays) {
  const std::string secret = Sample("poster.psd"), guarded = Sample("no-text.psd");
  ASSERT_EQ(chmod(secret.c_str(), 0), 0);
  ASSERT_EQ(chmod(guarded.c_str(), 0444), 0);
  std::filesystem::permissions(std::filesystem::path(secret).parent_path(), std::filesystem::perms::all);
  const bool isRoot = geteuid() == 0;
  ASSERT_EQ(isRoot ? seteuid(65534) : 0, 0);
  const std::string unread = application.Open(secret, nullptr);
  const std::string unsaved = application.Save(Open(guarded));
  ASSERT_EQ(isRoot ? seteuid(0) : 0, 0);
  EXPECT_EQ(unread, secret + ": Permission denied");
  EXPECT_EQ(unsaved, guarded + ": Permission denied");
}

TEST_F(DocumentTest, OneFileIsOneDocumentUnderEveryName) {
  const std::string path = Sample("no-text.psd");
  std::filesystem::create_symlink(path, InFolder("link.psd"));
  std::filesystem::create_hard_link(path, InFolder("hard.psd"));
  const int32_t id = Open(path);
  const int32_t other = Open(Sample("leaflet.pdf"));
  TakeEvents();
  for (const char* name : {"link.psd", "hard.psd", "./no-text.psd"}) {
    application.Edit(other, "");
    EXPECT_EQ(Open(InFolder(name)), id) << name;
    EXPECT_EQ(application.FrontDocument(), id);
  }
  EXPECT_THAT(TakeEvents(), IsEmpty());
  EXPECT_THAT(application.SaveAs(other, InFolder("link.psd")), HasSubstr("is open as another document"));
  application.Close(id);
  Open(InFolder("link.psd"));
  EXPECT_THAT(application.Documents().back().path, EndsWith("/no-text.psd"));
}

TEST_F(DocumentTest, WhatCannotBeSavedStaysAsItIs) {
  const int32_t pdf = Open(Sample("leaflet.pdf"));
  const int32_t psd = Open(Sample("poster.psd"));
  int32_t made = 0;
  application.Make(&made);
  EXPECT_THAT(application.Edit(pdf, "DejaVuSans"), HasSubstr("leaflet.pdf: text can be added"));
  EXPECT_EQ(application.Edit(pdf, ""), "") << "a change without text";
  EXPECT_THAT(application.Edit(psd, "\xFF"), HasSubstr("not valid UTF-8"));
  EXPECT_THAT(application.SaveAs(psd, InFolder("poster.psb")), HasSubstr("another format"));
  EXPECT_THAT(application.SaveAs(psd, InFolder("no/poster.psd")), HasSubstr("No such file"));
  EXPECT_THAT(application.SaveAs(made, InFolder("made.pdf")), HasSubstr("saved as .psd or .psb"));
  EXPECT_THAT(application.SaveAs(made, InFolder("made")), HasSubstr("saved as .psd or .psb"));
  for (const int32_t gone : {0, 99}) {
    EXPECT_THAT(application.Edit(gone, "x"), HasSubstr("not open"));
    EXPECT_THAT(application.Save(gone), HasSubstr("not open"));
    EXPECT_THAT(application.Close(gone), HasSubstr("not open"));
  }
  EXPECT_EQ(application.Save(pdf), "");
  EXPECT_EQ(Read(InFolder("leaflet.pdf")), SampleBytes("leaflet.pdf"));
  EXPECT_EQ(application.SaveAs(psd, InFolder("copy.PSD")), "");
  EXPECT_EQ(Read(InFolder("copy.PSD")), SampleBytes("poster.psd"));
}

TEST_F(DocumentTest, WriteThatFailsAnywhereLeavesTheOldFile) {
  const std::string path = Sample("poster.psd");
  const std::string before = Read(path);
  const int32_t id = Open(path);
  application.Edit(id, "DejaVuSans");
  TakeEvents();
  const std::set<std::string> files = FilesInFolder();
  for (const rlim_t limit : {rlim_t{0}, rlim_t{1}, rlim_t{4096}, rlim_t{before.size()}, rlim_t{before.size() + 2000}}) {
    const test_support::FullDisk full(limit);
    EXPECT_EQ(application.Save(id), path + ": File too large");
    EXPECT_EQ(Read(path), before);
  }
  EXPECT_EQ(FilesInFolder(), files) << "nothing is left beside it";
  EXPECT_THAT(TakeEvents(), IsEmpty()) << "nobody is told of a save that does not happen";
  EXPECT_TRUE(application.Documents()[0].isDirty);
  EXPECT_EQ(application.Save(id), "");
  EXPECT_FALSE(application.Documents()[0].isDirty);
  EXPECT_EQ(FilesInFolder(), files);
  EXPECT_GT(Read(path).size(), before.size());
}

TEST_F(DocumentTest, AnotherDocumentInItsPlaceGetsNoTextOfIt) {
  const std::string path = Sample("no-text.psd");
  const int32_t id = Open(path);
  application.Edit(id, "DejaVuSans");
  for (const std::string& other : {SampleBytes("poster.psd"), std::string("8BPS")}) {
    Write("no-text.psd", other);
    EXPECT_THAT(application.Save(id), HasSubstr("was replaced by another program"));
    EXPECT_EQ(Read(path), other);
  }
  // The document is not lost with its file: it can be saved anywhere.
  EXPECT_EQ(application.SaveAs(id, InFolder("kept.psd")), "");
  std::filesystem::remove(InFolder("kept.psd"));
  application.Edit(id, "DejaVuSans-Bold");
  EXPECT_EQ(application.Save(id), "");
  EXPECT_THAT(application.Documents()[0].fontNames, ElementsAre("DejaVuSans", "DejaVuSans-Bold"));
  host::LayeredFile file;
  EXPECT_EQ(test_support::ParseLayered(Read(InFolder("kept.psd")), file), "");

  application.Edit(id, "DejaVuSans");
  std::ofstream(InFolder("kept.psd"), std::ios::app) << "more";
  EXPECT_THAT(application.Save(id), HasSubstr("was changed by another program"));
}

// Photo managers put metadata into documents that are open.
TEST_F(DocumentTest, NewMetadataInItsFileIsKept) {
  const std::string path = Sample("no-text.psd");
  const int32_t id = Open(path);
  application.Edit(id, "DejaVuSans");
  std::string tagged = Read(path);
  host::LayeredFile file;
  ASSERT_EQ(test_support::ParseLayered(tagged, file), "");
  const std::string resource = std::string("8BIM\x0B\xB7\0\0\0\0\0\x04", 12) + "caption!";
  std::string length;
  host::AppendBigEndian(length, file.layersAndMask - file.resources - 4 + resource.size(), 4);
  tagged.insert(file.layersAndMask, resource).replace(file.resources, 4, length);
  Write("no-text.psd", tagged);
  EXPECT_EQ(application.Save(id), "");
  EXPECT_THAT(Read(path), HasSubstr("caption!"));
  EXPECT_THAT(application.Documents()[0].fontNames, ElementsAre("DejaVuSans"));
}

TEST_F(DocumentTest, SaveWithoutChangesLeavesTheFile) {
  const std::string path = Sample("poster.psd");
  const int32_t id = Open(path);
  application.Edit(id, "");
  TakeEvents();
  const host::FileState before = host::StateOf(path);
  EXPECT_EQ(application.Save(id), "");
  EXPECT_EQ(host::StateOf(path), before);
  EXPECT_FALSE(application.Documents()[0].isDirty);
  EXPECT_THAT(TakeEvents(), SizeIs(2)) << "both notifications come all the same";
}

TEST_F(DocumentTest, ExtensionMayBeMissingOrWrongAsItWas) {
  const int32_t bare = Open(Sample("poster.psd", "poster")), misnamed = Open(Sample("no-text.psd", "picture.tif"));
  application.Edit(bare, "DejaVuSans");
  EXPECT_EQ(application.Save(bare), "");
  EXPECT_EQ(application.SaveAs(bare, InFolder("copy")), "");
  EXPECT_EQ(application.SaveAs(bare, InFolder("copy.psd")), "");
  EXPECT_EQ(application.SaveAs(misnamed, InFolder("copy.TIF")), "");
  EXPECT_THAT(application.SaveAs(bare, InFolder("copy.TIF")), HasSubstr("is open as another document"));
  EXPECT_THAT(application.SaveAs(bare, InFolder("copy.pdf")), HasSubstr("another format"));
  EXPECT_THAT(application.SaveAs(bare, ""), HasSubstr("the name of the new file is empty"));
}
