// Bundles: a folder with an Info.plist and a shared object, which is loaded.
#include "platform/Bundle.h"

#include <gmock/gmock.h>

#include "platform/Files.h"
#include "support/TempFolder.h"

namespace platform {
namespace {

using test_support::TempFolder;
using testing::HasSubstr;

std::string PropertyList(const std::string& key, const std::string& text) {
  return "<plist version=\"1.0\"><dict><key>" + key + "</key><string>" + text + "</string></dict></plist>";
}

TEST(Bundle, WhatIsNoneOrCannotBeLoadedSaysWhy) {
  const TempFolder folder;
  folder.Write("NoInfo.plugin/NoInfo", "");
  folder.Write("Broken.plugin/Info.plist", "<plist><dict><key>a</key>");
  folder.Write("List.plugin/Info.plist", "<plist><array/></plist>");
  folder.Write("File.plugin", "no folder");
  folder.Write("Empty.plugin/Info.plist", PropertyList("CFBundleIdentifier", "test.empty"));
  folder.Write("Garbage.plugin/Info.plist", PropertyList("CFBundleIdentifier", "test.garbage"));
  folder.Write("Garbage.plugin/Garbage", "this is no shared object");
  const struct {
    const char *name, *reason;
    bool isBundle;
  } rows[] = {{"Missing.plugin", "No such file", false}, {"NoInfo.plugin", "No such file", false},
              {"Broken.plugin", "no XML", false},        {"List.plugin", "no dictionary", false},
              {"File.plugin", "Not a directory", false}, {"Empty.plugin", "cannot open shared object", true},
              {"Garbage.plugin", "file too short", true}};
  for (const auto& row : rows) {
    std::string error;
    const BundleRef bundle = Bundle::Create(folder / row.name, &error);
    EXPECT_EQ(Bundle::Create(folder / row.name), bundle);
    ASSERT_EQ(static_cast<bool>(bundle), row.isBundle) << row.name;
    if (bundle) {
      EXPECT_FALSE(bundle->Load(&error));
      EXPECT_EQ(bundle->FunctionForName("main"), nullptr);
    }
    EXPECT_THAT(error, testing::AllOf(testing::StartsWith(folder / row.name), HasSubstr(row.reason)));
  }
}

TEST(Bundle, AnObjectThatIsCutOffAnywhereIsRefusedBeforeItIsMapped) {
  const TempFolder folder;
  std::string object;
  ASSERT_FALSE(ReadFile(APP_DIR "/host/Frameworks/PlugPlug.framework/PlugPlug", object));
  folder.Write("Cut.framework/Info.plist", PropertyList("CFBundleIdentifier", "test.cut"));
  const BundleRef bundle = Bundle::Create(folder / "Cut.framework");
  ASSERT_TRUE(bundle);
  for (const size_t size : {size_t{64}, size_t{5000}, object.size() / 2, object.size() - 1}) {
    folder.Write("Cut.framework/Cut", object.substr(0, size));
    std::string error;
    EXPECT_FALSE(bundle->Load(&error)) << size;
    EXPECT_THAT(error, testing::AllOf(testing::StartsWith(folder / "Cut.framework/Cut: "), HasSubstr("incomplete")));
  }
  folder.Write("Cut.framework/Cut", object);
  std::string error;
  EXPECT_TRUE(bundle->Load(&error)) << error;
  bundle->Unload();
}

TEST(Bundle, TheSameFolderIsTheSameBundleAsLongAsItIsHeld) {
  const TempFolder folder;
  folder.Write("A.plugin/Info.plist", PropertyList("CFBundleIdentifier", "test.a"));
  BundleRef bundle = Bundle::Create(folder / "A.plugin");
  ASSERT_TRUE(bundle);
  EXPECT_EQ(Bundle::Create(folder / "A.plugin/"), bundle);
  EXPECT_EQ(Bundle::WithIdentifier("test.a"), bundle);
  folder.Write("A.plugin/Info.plist", PropertyList("CFBundleIdentifier", "test.changed"));
  bundle.reset();
  EXPECT_FALSE(Bundle::WithIdentifier("test.a"));
  EXPECT_EQ(Bundle::Create(folder / "A.plugin")->Identifier(), "test.changed");
}

TEST(Bundle, HasAnURLAndTextsOfItsOwn) {
  const TempFolder folder;
  folder.Write("Größe 100%.plugin/Info.plist", PropertyList("CFBundleIdentifier", "test.named"));
  folder.Write("Größe 100%.plugin/Resources/Table.strings", PropertyList("key", "a text"));
  const BundleRef bundle = Bundle::Create(folder / "Größe 100%.plugin");
  ASSERT_TRUE(bundle);
  EXPECT_EQ(bundle->URL(), "file://" + folder.Path() + "/Gr%C3%B6%C3%9Fe%20100%25.plugin/");
  EXPECT_EQ(bundle->LocalizedString("key", "Table"), "a text");
  EXPECT_EQ(bundle->LocalizedString("other key", "Table"), "other key");
  EXPECT_EQ(bundle->LocalizedString("key", "Other"), "key");
}

TEST(Bundle, ARealOneIsLoadedOnDemandAndUnloaded) {
  const BundleRef bundle = Bundle::Create(APP_DIR "/host/Frameworks/PlugPlug.framework");
  ASSERT_TRUE(bundle);
  EXPECT_FALSE(bundle->IsLoaded());
  EXPECT_NE(bundle->FunctionForName("PlugPlugDispatchEvent"), nullptr);
  EXPECT_TRUE(bundle->IsLoaded());
  EXPECT_EQ(bundle->FunctionForName("PlugPlugNoSuchFunction"), nullptr);
  bundle->Unload();
  EXPECT_FALSE(bundle->IsLoaded());
}

}  // namespace
}  // namespace platform
