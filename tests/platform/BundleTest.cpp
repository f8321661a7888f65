// Bundles: a folder, its Info.plist and a shared object that is really loaded.
#include "platform/Bundle.h"

#include <gmock/gmock.h>

#include "support/TempFolder.h"

namespace platform {
namespace {

using test_support::TempFolder;

constexpr const char* kBuilt = APP_DIR "/host/Frameworks/PlugPlug.framework";

std::string InfoWithIdentifier(const std::string& identifier) {
  return "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + identifier + "</string></dict></plist>";
}

TEST(Bundle, FoldersThatAreNoBundlesSayWhy) {
  const TempFolder folder;
  folder.Write("NoInfo.plugin/NoInfo", "");
  folder.Write("Broken.plugin/Info.plist", "<plist><dict><key>a</key>");
  folder.Write("List.plugin/Info.plist", "<plist><array/></plist>");
  folder.Write("File.plugin", "no folder");
  const struct {
    const char *name, *reason;
  } rows[] = {{"Missing.plugin", "No such file"},
              {"NoInfo.plugin", "No such file"},
              {"Broken.plugin", "no XML"},
              {"List.plugin", "no dictionary"},
              {"File.plugin", "Not a directory"}};
  for (const auto& row : rows) {
    std::string error;
    EXPECT_FALSE(Bundle::Create(folder / row.name, &error)) << row.name;
    EXPECT_THAT(error, testing::StartsWith(folder / row.name)) << row.name;
    EXPECT_THAT(error, testing::HasSubstr(row.reason)) << row.name;
    EXPECT_FALSE(Bundle::Create(folder / row.name));
  }
}

TEST(Bundle, ObjectsThatCannotBeLoadedSayWhy) {
  const TempFolder folder;
  folder.Write("Empty.plugin/Info.plist", InfoWithIdentifier("test.empty"));
  folder.Write("Garbage.plugin/Info.plist", InfoWithIdentifier("test.garbage"));
  folder.Write("Garbage.plugin/Garbage", "this is no shared object");
  for (const char* name : {"Empty", "Garbage"}) {
    const BundleRef bundle = Bundle::Create(folder / (std::string(name) + ".plugin"));
    ASSERT_TRUE(bundle);
    std::string error;
    EXPECT_FALSE(bundle->Load(&error));
    EXPECT_THAT(error, testing::HasSubstr(name));
    EXPECT_FALSE(bundle->IsLoaded());
    EXPECT_EQ(bundle->FunctionForName("main"), nullptr);
  }
}

TEST(Bundle, TheSameFolderIsTheSameBundleAsLongAsItIsHeld) {
  const TempFolder folder;
  folder.Write("A.plugin/Info.plist", InfoWithIdentifier("test.a"));
  BundleRef bundle = Bundle::Create(folder / "A.plugin");
  ASSERT_TRUE(bundle);
  EXPECT_EQ(Bundle::Create(folder / "A.plugin/"), bundle);
  EXPECT_EQ(Bundle::WithIdentifier("test.a"), bundle);
  EXPECT_EQ(bundle->PrivateFrameworksFolder(), folder / "A.plugin/Frameworks");
  folder.Write("A.plugin/Info.plist", InfoWithIdentifier("test.changed"));
  bundle.reset();
  EXPECT_FALSE(Bundle::WithIdentifier("test.a"));
  bundle = Bundle::Create(folder / "A.plugin");
  EXPECT_EQ(bundle->Identifier(), "test.changed");
}

TEST(Bundle, ARealOneIsLoadedOnDemandAndUnloaded) {
  const BundleRef bundle = Bundle::Create(kBuilt);
  ASSERT_TRUE(bundle);
  EXPECT_EQ(bundle->Identifier(), "com.velorant.PlugPlug");
  EXPECT_FALSE(bundle->IsLoaded());
  EXPECT_NE(bundle->FunctionForName("PlugPlugDispatchEvent"), nullptr);
  EXPECT_TRUE(bundle->IsLoaded());
  EXPECT_EQ(bundle->FunctionForName("PlugPlugNoSuchFunction"), nullptr);
  bundle->Unload();
  EXPECT_FALSE(bundle->IsLoaded());
}

}  // namespace
}  // namespace platform
