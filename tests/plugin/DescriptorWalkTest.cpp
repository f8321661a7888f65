// Walking the real host's descriptors, and the names of keys in the log.
#include "photoshop/PSConstA.h"
#include "photoshop/PSFU_FreeZone.h"
#include "plugin/HostFixture.h"

using host::DescriptorData;
using host::ListData;
using host_sdk::Code;
using host_sdk::kNoErr;

namespace {

class DescriptorWalkFixture : public HostFixture {
 protected:
  static host::ObjectValue Object(DescriptorData data) {
    return {Code("Lyr "), std::make_shared<const DescriptorData>(std::move(data))};
  }
  static std::shared_ptr<const ListData> List(std::vector<host::ActionValue> items) {
    return std::make_shared<const ListData>(ListData{std::move(items)});
  }
};
using DescriptorWalk = DescriptorWalkFixture;

TEST_F(DescriptorWalk, CollectsFontNamesOnceAndFileReferencesFromEveryDepth) {
  const auto fontName = host::TypeIDOfString("fontPostScriptName");
  DescriptorData layer;
  layer.Put(fontName, std::string("Größe"));
  layer.Put(Code("FilR"), std::string("/a.psd"));
  layer.Put(Code("Nm  "), std::string("no font"));
  DescriptorData document;
  document.Put(fontName, List({std::string("Alpha"), 7, List({std::string("Beta"), std::string("Alpha")})}));
  document.Put(Code("Lyr "), List({Object(layer), Object(layer)}));
  document.Put(Code("AntA"), host::EnumeratedValue{Code("Annt"), Code("Anno")});
  document.Put(Code("null"), host::AliasData::OfPath("/not/text.psd"));
  DescriptorTexts found;
  found.fontNames = {"Given"};
  EXPECT_EQ(PhotoshopFontUtils::ProcessDescriptor(fakes::GivenDescriptor(document).Get(), found), kNoErr);
  EXPECT_EQ(found.fontNames, (Lines{"Given", "Alpha", "Beta", "Größe"}));
  EXPECT_EQ(found.fontCount, 3);
  EXPECT_EQ(found.fileReferences, (Lines{"/a.psd", "/a.psd"}));
  EXPECT_EQ(TracedLines("Added font name '").size(), 3u);
  EXPECT_TRUE(Traced("Added file reference '/a.psd'"));
  for (const char* line : {"fontPostScriptName: VlLs", "'Lyr ': VlLs", "keyFileReference: TEXT", "keyAntiAlias: enum"})
    EXPECT_TRUE(Traced(line)) << line;
  EXPECT_EQ(PhotoshopFontUtils::ProcessDescriptor(nullptr, found), host_sdk::kBadParameters);
}

TEST_F(DescriptorWalk, KeysHaveTheNamesOfTheirConstants) {
  const struct {
    host_sdk::FourCharCode key;
    const char* name;
  } kRows[] = {{Code("AntA"), "keyAntiAlias"},
               {Code("null"), "keyTarget"},
               {Code("Dcmn"), "'Dcmn'"},  // a class only
               {Code("zzzz"), "'zzzz'"},
               {host::TypeIDOfString("fontList"), "fontList"}};
  for (const auto& row : kRows) EXPECT_EQ(KeyName(row.key), row.name);
}

TEST_F(DescriptorWalk, AFreeZoneGivesBackEveryKind) {
  PSFU_FreeZone zone;
  auto& objects = host::HostObjects::Shared();
  zone.Add(ScopedDescriptor(objects.descriptors.Add({})));
  zone.Add(ScopedList(objects.lists.Add({})));
  zone.Add(ScopedReference(objects.references.Add({})));
  const host_sdk::Handle alias = zone.Add(ScopedHandle(objects.handles.Add({})));
  EXPECT_EQ(sPSHandle->GetSize(alias), 0);
  EXPECT_EQ(app.Objects(), 4u);
}

}  // namespace
