// What the plug-in asks of the host, and how it tells that a document is just being opened.
#include "photoshop/PhotoshopFontUtils.h"
#include "photoshop/PhotoshopInterface.h"
#include "plugin/HostFixture.h"

using host_sdk::Code;
using host_sdk::kNoErr;
using host_sdk::kNoSuchObject;

namespace {

using Lines = std::vector<std::string>;
using HostQuery = HostFixture;

TEST_F(HostQuery, FindsDocumentsByPathTheLastOneFirst) {
  const std::string a = WriteDocument("ä.psd", {}), b = WriteDocument("b.psd", {});
  for (const std::string& path : {a, b, a}) app.Add(path);
  app.Add("");
  const struct {
    std::string path;
    int front, error, id;
  } kRows[] = {{a, 104, 0, 103}, {b, 104, 0, 102}, {"/no/such.psd", 104, -1, 0}, {"", 104, -1, 0}, {"", 102, 0, 102}};
  for (int32_t kind : {host_sdk::kAliasKindUnicode, host_sdk::kAliasKindDirect}) {
    app.aliasKind = kind;
    for (const auto& row : kRows) {
      int id = 0;
      app.front = row.front;
      EXPECT_EQ(PhotoshopFontUtils::GetDocumentID(&id, row.path), row.error) << row.path;
      EXPECT_EQ(id, row.id) << row.path;
    }
  }
}

TEST_F(HostQuery, TellsWhichDocumentsExist) {
  bool exists = true;
  EXPECT_EQ(PhotoshopFontUtils::DocumentExists(101, &exists), kNoErr);
  EXPECT_FALSE(exists);
  app.Add("");
  app.Add("");
  EXPECT_EQ(PhotoshopFontUtils::DocumentExists(101, &exists), kNoErr);
  EXPECT_TRUE(exists);
  app.failingProperties = {Code("DocI")};
  EXPECT_EQ(PhotoshopFontUtils::DocumentExists(101, &exists), kNoSuchObject);
}

TEST_F(HostQuery, ListsThePathsOfWhatIsOnDisk) {
  const std::string path = WriteDocument("a.psd", {});
  app.Add(path);
  app.Add("");
  app.Add(folder / "deleted.psd");
  Lines paths;
  EXPECT_EQ(PhotoshopFontUtils::GetUTF8PathsForAllOpenDocuments(paths), kNoErr);
  EXPECT_EQ(paths, (Lines{path, "", ""}));
  EXPECT_TRUE(
      Traced("AliasToFullPath() returned '" + folder / "deleted.psd" + "', which does not exist. Looking elsewhere."));
  std::string unchanged = "unchanged";
  app.front = 0;
  EXPECT_EQ(PhotoshopFontUtils::GetCurrentDocumentPathTracked(&unchanged), kNoSuchObject);
  EXPECT_EQ(unchanged, "unchanged");
}

TEST_F(HostQuery, ABookmarkGivesItsPathWhereThereIsRoom) {
  const std::string path = WriteDocument("a.psd", {});
  platform::Data bookmark;
  ASSERT_EQ(PhotoshopFontUtils::FullPathToBookmark(path, &bookmark), kNoErr);
  char buffer[1024] = "kept";
  EXPECT_EQ(PhotoshopFontUtils::BookmarkToFullPath(bookmark, buffer, path.size()), host_sdk::kBadParameters);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(PhotoshopFontUtils::BookmarkToFullPath(bookmark, buffer, path.size() + 1), kNoErr);
  EXPECT_EQ(buffer, path);
  EXPECT_EQ(PhotoshopFontUtils::FullPathToBookmark(folder / "absent.psd", &bookmark), kNoSuchObject);
  EXPECT_EQ(PhotoshopFontUtils::BookmarkToFullPath(platform::Data(), buffer, sizeof buffer), kNoSuchObject);
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
  host_sdk::ActionDescriptor descriptor;
  descriptor.Put(Code("numb"), {host_sdk::kTypeInteger, 7, {}, {}, nullptr, {}});
  int32_t number = 1;
  HostValue value;
  EXPECT_EQ(PIUGetSingleItemFromDescriptor(&descriptor, Code("numb"), value), host_sdk::kBadParameters);
  value.integer = &number;
  EXPECT_EQ(PIUGetSingleItemFromDescriptor(&descriptor, Code("none"), value), kNoErr);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(PIUGetSingleItemFromDescriptor(&descriptor, Code("numb"), value), kNoErr);
  EXPECT_EQ(number, 7);
  EXPECT_TRUE(DescriptorHasKey(&descriptor, Code("numb")));
  EXPECT_FALSE(DescriptorHasKey(&descriptor, Code("none")));
  EXPECT_FALSE(DescriptorHasKey(nullptr, Code("numb")));
  EXPECT_EQ(FourCharTypeToStdString(Code("Dcmn")), "Dcmn");
}

TEST_F(HostQuery, ReadsTheFontsOfTheHostAndReplacesSubstitutesOnlyAfterAnOpen) {
  app.fontNames = {"Alpha", "Größe"};
  Lines names;
  EXPECT_EQ(PhotoshopFontUtils::GetPhotoshopFonts(names), kNoErr);
  EXPECT_EQ(names, app.fontNames);
  PhotoshopFontUtils::PlayreplaceSubstitutes();
  EXPECT_TRUE(app.played.empty());
  PhotoshopFontUtils::GetDocumentFonts("", names, true);
  PhotoshopFontUtils::PlayreplaceSubstitutes();
  EXPECT_EQ(app.played, (Lines{"updateLayouts", "replaceSubstitutes"}));
}

TEST_F(HostQuery, ATrackedDocumentIsBeingOpenedForFiveSeconds) {
  const struct {
    const char *rule, *path;
    long handle;
    bool hasOpenTime, hasSaveTime;
    double later;
    bool isBeingOpened;
  } kRows[] = {
      {"untitled", "", 5, true, false, 0, false},
      {"just told of", "/a.psd", 5, true, false, 0, true},
      {"four whole seconds ago", "/a.psd", 5, true, false, 4.9, true},
      {"five seconds ago", "/a.psd", 5, true, false, 5, false},
      {"saved later", "/a.psd", 5, true, true, 1, true},
      {"a new document's first save", "/a.psd", 5, false, true, 0, false},
      {"not yet told of", "/a.psd", 5, false, false, 100, true},
      {"without an ID", "/a.psd", 0, true, false, 0, false},
  };
  for (const auto& row : kRows) {
    platform::Clock::SetDriven(kNow);
    OneTrackedDocument document;
    document.SetDocumentFilePath(row.path);
    document.SetDocumentHandle(row.handle);
    if (row.hasOpenTime) document.SetTimeOpenEventWasHandled();
    if (row.hasSaveTime) document.SetTimeSaveEventWasHandled();
    platform::Clock::SetDriven(kNow + row.later);
    EXPECT_EQ(PhotoshopFontUtils::isCurrentDocumentBeingOpened(&document), row.isBeingOpened) << row.rule;
    const bool startsNow = !row.hasOpenTime && !row.hasSaveTime;
    const long expected = startsNow         ? static_cast<long>(kNow + row.later)
                          : row.hasOpenTime ? static_cast<long>(kNow)
                                            : 0;
    EXPECT_EQ(document.GetTimeOpenEventWasHandled(), expected) << row.rule;
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
