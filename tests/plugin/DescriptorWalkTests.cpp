// The walk of descriptors that the real host made, and the names of keys in its log.
#include "host/HostObjects.h"
#include "host/Suites.h"
#include "host/TypeIDs.h"
#include "photoshop/PSConstA.h"
#include "photoshop/PSFU_FreeZone.h"
#include "photoshop/PhotoshopFontUtils.h"
#include "support/PluginFixture.h"

using host::DescriptorData;
using host::ListData;
using host_sdk::Code;
using host_sdk::kNoErr;

namespace {

using Lines = std::vector<std::string>;

class DescriptorWalkFixture : public fakes::PluginFixture {
 protected:
  DescriptorWalkFixture() { sSPBasic = &host::BasicSuite(); }
  ~DescriptorWalkFixture() override {
    PIUSuitesRelease();
    EXPECT_EQ(host::LiveObjects().Total(), 0u) << "something of the host is left";
    sSPBasic = nullptr;
  }
  static host::ObjectValue Object(DescriptorData data) {
    return {Code("Lyr "), std::make_shared<const DescriptorData>(std::move(data))};
  }
  static std::shared_ptr<const ListData> List(std::vector<host::ActionValue> items) {
    return std::make_shared<const ListData>(ListData{std::move(items)});
  }
  static host_sdk::SPErr Walk(DescriptorData data, DescriptorTexts& found) {
    const ScopedDescriptor descriptor(host::HostObjects::Shared().descriptors.Add(std::move(data)));
    return PhotoshopFontUtils::ProcessDescriptor(descriptor.Get(), found);
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
  EXPECT_EQ(Walk(document, found), kNoErr);
  EXPECT_EQ(found.fontNames, (Lines{"Given", "Alpha", "Beta", "Größe"}));
  EXPECT_EQ(found.fontCount, 3);
  EXPECT_EQ(found.fileReferences, (Lines{"/a.psd", "/a.psd"}));
  EXPECT_EQ(TracedLines("Added font name '").size(), 3u);
  EXPECT_TRUE(Traced("Added file reference '/a.psd'"));
  for (const char* line : {"fontPostScriptName: VlLs", "'Lyr ': VlLs", "keyFileReference: TEXT", "keyAntiAlias: enum"})
    EXPECT_TRUE(Traced(line)) << line;
}

TEST_F(DescriptorWalk, OfNoDescriptorIsTheHostsError) {
  DescriptorTexts found;
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
  EXPECT_EQ(host::LiveObjects().Total() - host::LiveObjects().suites, 4u);
}

}  // namespace
