// What the plug-in asks the host, and how it detects that a document is being opened.
#include "photoshop/PhotoshopFontUtils.h"
#include "photoshop/PhotoshopInterface.h"
#include "plugin/HostFixture.h"
#include "support/DebianFonts.h"

using host_sdk::Code;
using host_sdk::kNoErr;
using host_sdk::kNoSuchObject;

namespace {

using HostQuery = HostFixture;

TEST_F(HostQuery, FindsDocumentsByPathTheLastOneFirst) {
  const std::string a = WriteDocument("ä.psd", {}), b = WriteDocument("b.psd", {});
  for (const std::string& path : {a, b, a}) app.Add(path);
  app.Add("");
  const struct {
    std::string path;
    int front, error, id;
  } kRows[] = {{a, 4, 0, 3}, {b, 4, 0, 2}, {"/no/such.psd", 4, -1, 0}, {"", 4, -1, 0}, {"", 2, 0, 2}};
  for (const auto& row : kRows) {
    int id = 0;
    app.documents.BringToFront(row.front);
    EXPECT_EQ(PhotoshopFontUtils::GetDocumentID(&id, row.path), row.error) << row.path;
    EXPECT_EQ(id, row.id) << row.path;
  }
}

TEST_F(HostQuery, TellsWhichDocumentsExist) {
  for (const bool expected : {false, true, true}) {
    bool exists = !expected;
    EXPECT_EQ(PhotoshopFontUtils::DocumentExists(1, &exists), kNoErr);
    EXPECT_EQ(exists, expected);
    app.Add("");
  }
}

TEST_F(HostQuery, ListsThePathsOfWhatIsOnDisk) {
  const std::string path = WriteDocument("ä.psd", {});
  for (const std::string& each : {path, std::string(), folder / "deleted.psd"}) app.Add(each);
  // Not UTF-8: the alias has bytes, which are read in the encoding of old systems.
  app.Add(WriteDocument("\xE4.psd", {}));
  Lines paths;
  EXPECT_EQ(PhotoshopFontUtils::GetUTF8PathsForAllOpenDocuments(paths), kNoErr);
  EXPECT_EQ(paths, (Lines{path, "", "", folder / "‰.psd"}));
  EXPECT_TRUE(
      Traced("AliasToFullPath() returned '" + folder / "deleted.psd" + "', which does not exist. Looking elsewhere."));
  std::string unchanged = "unchanged";
  app.RemoveAll();
  EXPECT_EQ(PhotoshopFontUtils::GetCurrentDocumentPathTracked(&unchanged), kNoSuchObject);
  EXPECT_EQ(unchanged, "unchanged");
}

TEST_F(HostQuery, ABookmarkGivesItsPathWhereThereIsRoom) {
  const std::string path = WriteDocument("a.psd", {});
  platform::Data bookmark;
  ASSERT_EQ(PhotoshopFontUtils::FullPathToBookmark(path, &bookmark), kNoErr);
  char buffer[1024] = "";
  EXPECT_EQ(PhotoshopFontUtils::BookmarkToFullPath(bookmark, buffer, path.size()), host_sdk::kBadParameters);
  EXPECT_EQ(PhotoshopFontUtils::BookmarkToFullPath(bookmark, buffer, path.size() + 1), kNoErr);
  EXPECT_EQ(buffer, path);
}

TEST_F(HostQuery, ASuiteThatTheHostLacksIsThrownAsItsError) {
  app.missingSuites = {host_sdk::kPSActionControlSuite};
  int id = 0;
  try {
    PhotoshopFontUtils::GetCurrentDocumentID(&id);
    FAIL();
  } catch (unsigned int error) {
    EXPECT_EQ(error, static_cast<unsigned>(host_sdk::kSuiteNotFound));
  }
  PIUSuitesRelease();
  sSPBasic = nullptr;
  EXPECT_THROW(sPSActionList.AcquireSuite(true), unsigned int);
  sPSActionList.AcquireSuite(false);
  EXPECT_EQ(sPSActionList.GetLastError(), host_sdk::kBadParameters);
  EXPECT_NO_THROW(PhotoshopFontUtils::ThrowSPErr(0));
  EXPECT_THROW(PhotoshopFontUtils::ThrowSPErr(-1), long);
}

TEST_F(HostQuery, AValueNeedsItsPlaceAndAnAbsentOneNone) {
  const fakes::GivenDescriptor descriptor(Code("numb"), 7);
  int32_t number = 1;
  HostValue value;
  EXPECT_EQ(PIUGetSingleItemFromDescriptor(descriptor.Get(), Code("numb"), value), host_sdk::kBadParameters);
  value.integer = &number;
  EXPECT_EQ(PIUGetSingleItemFromDescriptor(descriptor.Get(), Code("none"), value), kNoErr);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(PIUGetSingleItemFromDescriptor(descriptor.Get(), Code("numb"), value), kNoErr);
  EXPECT_EQ(number, 7);
  EXPECT_TRUE(DescriptorHasKey(descriptor.Get(), Code("numb")));
  EXPECT_FALSE(DescriptorHasKey(descriptor.Get(), Code("none")));
  EXPECT_FALSE(DescriptorHasKey(nullptr, Code("numb")));
}

TEST_F(HostQuery, ReadsTheFontsOfTheHostAndReplacesSubstitutesOnlyAfterAnOpen) {
  UseSystemFonts(debian_fonts::kDejaVu);
  Lines names;
  EXPECT_EQ(PhotoshopFontUtils::GetPhotoshopFonts(names), kNoErr);
  EXPECT_EQ(std::count(names.begin(), names.end(), "DejaVuSans-Bold"), 1);
  PhotoshopFontUtils::PlayreplaceSubstitutes();
  EXPECT_TRUE(app.played.empty());
  PhotoshopFontUtils::GetDocumentFonts("", names, true);
  PhotoshopFontUtils::PlayreplaceSubstitutes();
  EXPECT_EQ(Joined(app.played), "updateLayouts, replaceSubstitutes");
}

TEST_F(HostQuery, ATrackedDocumentIsBeingOpenedForFiveSeconds) {
  const struct {
    const char *rule, *path;
    long handle;
    bool hasOpenTime, hasSaveTime;
    double later;
    bool isBeingOpened, startsNow;
  } kRows[] = {
      {"untitled", "", 5, true, false, 0, false, false},
      {"just told of", "/a.psd", 5, true, false, 0, true, false},
      {"four whole seconds ago", "/a.psd", 5, true, false, 4.9, true, false},
      {"five seconds ago", "/a.psd", 5, true, false, 5, false, false},
      {"saved later", "/a.psd", 5, true, true, 1, true, false},
      {"a new document's first save", "/a.psd", 5, false, true, 0, false, false},
      {"not yet told of", "/a.psd", 5, false, false, 100, true, true},
      {"without an ID", "/a.psd", 0, true, false, 0, false, false},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.rule);
    platform::Clock::SetDriven(kNow);
    OneTrackedDocument document;
    document.SetDocumentFilePath(row.path);
    document.SetDocumentHandle(row.handle);
    if (row.hasOpenTime) document.SetTimeOpenEventWasHandled();
    if (row.hasSaveTime) document.SetTimeSaveEventWasHandled();
    platform::Clock::SetDriven(kNow + row.later);
    EXPECT_EQ(PhotoshopFontUtils::isCurrentDocumentBeingOpened(&document), row.isBeingOpened);
    EXPECT_EQ(document.GetTimeOpenEventWasHandled() == static_cast<long>(kNow + 100), row.startsNow);
  }
}

TEST_F(HostQuery, AnUntrackedDocumentOnDiskIsBeingOpened) {
  app.Add("");
  EXPECT_FALSE(PhotoshopFontUtils::isCurrentDocumentBeingOpened(nullptr));
  EXPECT_TRUE(Traced("No document on disk appears to be open."));
  const std::string path = WriteDocument("a.psd", {});
  app.Add(path);
  EXPECT_TRUE(PhotoshopFontUtils::isCurrentDocumentBeingOpened(nullptr));
  AllTrackedDocuments::AddDocument(nullptr, path);
  EXPECT_FALSE(PhotoshopFontUtils::isCurrentDocumentBeingOpened(nullptr));
}

TEST_F(HostQuery, TheCurrentDocumentKeepsWhetherItMayBeExported) {
  PhotoshopInterface interface;
  EXPECT_FALSE(interface.CanExportFontsForDocument());
  AllTrackedDocuments::AddDocument(nullptr, "/a.psd");
  AllTrackedDocuments::GetDocumentList()[0]->SetDocumentHandle(app.Add("/a.psd"));
  EXPECT_FALSE(interface.CanExportFontsForDocument());
  interface.SetCanExportFontsForDocument(true);
  EXPECT_TRUE(interface.CanExportFontsForDocument());
  app.Add("");
  EXPECT_FALSE(interface.CanExportFontsForDocument());
}

TEST_F(HostQuery, FileNamesEndWhereAnySeparatorStands) {
  const struct {
    const char *path, *name;
  } kRows[] = {
      {"/a/b.psd", "b.psd"}, {"C:\\a\\b.psd", "b.psd"}, {"disk:b.psd", "b.psd"}, {"b.psd", "b.psd"}, {"/a/", ""}};
  for (const auto& row : kRows) EXPECT_EQ(PhotoshopFontUtils::FileNameOnly(row.path), row.name);
}

}  // namespace
