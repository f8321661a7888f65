// Wrong use of the suites gives the host's error, changes nothing, and never ends the host.
#include <cstring>

#include "host/HostTest.h"
#include "host/LiveObjects.h"
#include "host/Suites.h"
#include "host/TypeIDs.h"

using namespace host_sdk;

namespace {

constexpr FourCharCode kKey = Code("key ");
constexpr FourCharCode kAbsent = Code("none");

// An object of each kind, and a freed descriptor.
class SuiteTest : public HostTest {
 public:
  const PSActionDescriptorSuite& descriptors = host::ActionDescriptorSuite();
  const PSActionReferenceSuite& references = host::ActionReferenceSuite();
  const PSActionControlSuite& control = host::ActionControlSuite();
  const PSAliasSuite& aliases = host::AliasSuite();
  const PSHandleSuite& handles = host::HandleSuite();
  const ASZStringSuite& strings = host::ZStringSuite();
  const ASZStringSuite2& utf8 = host::ZStringSuite2();

  void SetUp() override {
    HostTest::SetUp();
    descriptors.Make(&descriptor);
    descriptors.PutString(descriptor, kKey, "text");
    descriptors.Make(&freed);
    descriptors.Free(freed);
    references.Make(&reference);
    const uint16_t path[] = {'/', 0xE9};
    aliases.MakeFromUnicodePath(path, 2, &alias);
    utf8.MakeFromUTF8("text", &string);
  }
  void TearDown() override {
    EXPECT_EQ(host::LiveObjects().Total(), 4u) << "a refused call left an object";
    descriptors.Free(descriptor);
    references.Free(reference);
    handles.Dispose(alias);
    strings.Release(string);
    HostTest::TearDown();
  }

  template <class To, class From>
  static To As(From object) {
    return reinterpret_cast<To>(object);
  }

  SPErr Get(const std::function<void(PIActionReference)>& fill, PIActionDescriptor* result) {
    PIActionReference asked = nullptr;
    references.Make(&asked);
    fill(asked);
    const SPErr error = control.Get(result, asked);
    references.Free(asked);
    return error;
  }

  PIActionDescriptor descriptor = nullptr, freed = nullptr;
  PIActionReference reference = nullptr;
  Handle alias = nullptr;
  ASZString string = nullptr;
};

struct Row {
  const char* what;
  SPErr error;
  SPErr expected;
};

void Check(const std::vector<Row>& rows) {
  for (const Row& row : rows) EXPECT_EQ(row.error, row.expected) << row.what;
}

}  // namespace

TEST_F(SuiteTest, DescriptorsListsAndReferencesRefuseWrongUse) {
  int32_t number = 5;
  uint32_t count = 5;
  FourCharCode code = 5;
  char buffer[8] = "kept";
  PIActionDescriptor object = nullptr;
  const auto asDescriptor = As<PIActionDescriptor>(string);
  int onStack = 0;
  Check({
      {"null", descriptors.PutInteger(nullptr, kKey, 1), kBadParameters},
      {"freed", descriptors.GetCount(freed, &count), kBadParameters},
      {"freed twice", descriptors.Free(freed), kBadParameters},
      {"an object of another kind", descriptors.HasKey(asDescriptor, kKey, &number), kBadParameters},
      {"an address of the plug-in's", descriptors.Clear(As<PIActionDescriptor>(&onStack)), kBadParameters},
      {"nowhere to put the text", descriptors.GetString(descriptor, kKey, nullptr, 8), kBadParameters},
      {"an absent key", descriptors.GetInteger(descriptor, kAbsent, &number), kNoSuchObject},
      {"a key behind the last", descriptors.GetKey(descriptor, 1, &code), kNoSuchObject},
      {"a value of another type", descriptors.GetInteger(descriptor, kKey, &number), kBadParameters},
      {"text as an object", descriptors.GetObject(descriptor, kKey, &code, &object), kBadParameters},
      {"text that is no UTF-8", descriptors.PutString(descriptor, kKey, "\xFF"), kBadParameters},
      {"an alias that is none", descriptors.PutAlias(descriptor, kKey, As<Handle>(reference)), kBadParameters},
      {"an object that was freed", descriptors.PutObject(descriptor, kKey, 1, freed), kBadParameters},
  });
  EXPECT_EQ(number, 5);
  EXPECT_EQ(count, 5u);
  EXPECT_EQ(code, 5u);
  EXPECT_STREQ(buffer, "kept");
  EXPECT_EQ(descriptors.GetString(descriptor, kKey, buffer, sizeof buffer), kNoErr);
  EXPECT_STREQ(buffer, "text") << "a refused call changed the value";
}

TEST_F(SuiteTest, AliasesStringsBlocksAndSuitesRefuseWrongUse) {
  const host_sdk::SPBlocksSuite& blocks = host::BlocksSuite();
  const host_sdk::SPBasicSuite& basic = host::BasicSuite();
  const uint16_t loneSurrogate[] = {0xD800};
  uint16_t units[4];
  uint32_t length = 0;
  char buffer[8];
  void* block = nullptr;
  const void* suite = nullptr;
  int onStack = 0;
  Check({
      {"the bytes of an alias that is text", aliases.GetPath(alias, buffer, 8), kBadParameters},
      {"an alias that is none", aliases.GetUnicodePath(As<Handle>(string), units, 4, &length), kBadParameters},
      {"an alias of broken text", aliases.MakeFromUnicodePath(loneSurrogate, 1, &alias), kBadParameters},
      {"no handle", handles.Dispose(nullptr), kBadParameters},
      {"a string of broken bytes", utf8.MakeFromUTF8("\xC3", &string), kBadParameters},
      {"a block that is none", blocks.FreeBlock(&onStack), kBadParameters},
      {"a block larger than memory", blocks.AllocateBlock(SIZE_MAX / 2, "large", &block), kOutOfMemory},
      {"an unknown suite", basic.AcquireSuite("no such suite", 1, &suite), kSuiteNotFound},
      {"another version", basic.AcquireSuite(kSPBlocksSuite, 99, &suite), kSuiteNotFound},
      {"a release without an acquisition", basic.ReleaseSuite(kSPBlocksSuite, 2), kBadParameters},
  });
  EXPECT_EQ(handles.GetSize(As<Handle>(string)), 0);
  EXPECT_EQ(utf8.LengthAsUTF8(As<ASZString>(alias)), 0u);
  EXPECT_EQ(suite, nullptr);
  EXPECT_FALSE(basic.IsEqual(nullptr, nullptr));
}

TEST_F(SuiteTest, ReferencesThatNameNothingAreRefused) {
  Open(Sample("no-text.psd"));
  const auto property = [&](PIActionReference asked, FourCharCode key) {
    references.PutProperty(asked, Code("Prpr"), key);
  };
  const auto current = [&](PIActionReference asked, FourCharCode objectClass) {
    references.PutEnumerated(asked, objectClass, host::kTypeOrdinal, host::kEnumTarget);
  };
  const auto at = [&](uint32_t index) {
    return [=, this](PIActionReference asked) { references.PutIndex(asked, host::kClassDocument, index); };
  };
  PIActionDescriptor result = nullptr;
  Check({
      {"nothing", Get([](PIActionReference) {}, &result), kBadParameters},
      {"a property of nothing", Get([&](PIActionReference asked) { property(asked, host::kKeyDocumentID); }, &result),
       kBadParameters},
      {"index 0", Get(at(0), &result), kNoSuchObject},
      {"an index behind the last", Get(at(2), &result), kNoSuchObject},
      {"an unknown property",
       Get([&](PIActionReference asked) { property(asked, kAbsent), current(asked, host::kClassDocument); }, &result),
       kNoSuchObject},
      {"a notifier of another plug-in",
       control.AddNotify(As<SPPluginRef>(descriptor), host::kEventOpen, nullptr, nullptr), kBadParameters},
      {"a descriptor that was freed", control.Play(host::kEventClose, freed, kSilentDialogMode, nullptr),
       kBadParameters},
  });
  EXPECT_EQ(result, nullptr);
  ASSERT_EQ(Get(at(1), &result), kNoErr);
  int32_t id = 0;
  EXPECT_EQ(descriptors.GetInteger(result, host::kKeyDocumentID, &id), kNoErr);
  EXPECT_EQ(id, 1);
  descriptors.Free(result);
}

TEST_F(SuiteTest, TextIsCutAtWholeCharactersAndUnitsAtTheirSize) {
  descriptors.PutString(descriptor, kKey, "a\xC3\xA9z");
  struct Cut {
    uint32_t size;
    const char* expected;
  };
  for (const Cut& cut : {Cut{5, "a\xC3\xA9z"}, Cut{4, "a\xC3\xA9"}, Cut{3, "a"}, Cut{1, ""}}) {
    char buffer[8] = "xxxxxxx";
    EXPECT_EQ(descriptors.GetString(descriptor, kKey, buffer, cut.size), kNoErr);
    EXPECT_STREQ(buffer, cut.expected);
    EXPECT_EQ(buffer[cut.size], 'x');
  }
  uint16_t units[3] = {7, 7, 7};
  uint32_t length = 0;
  EXPECT_EQ(aliases.GetUnicodePath(alias, units, 1, &length), kNoErr);
  EXPECT_EQ(length, 2u) << "the whole length, whatever the size";
  EXPECT_EQ(units[1], 7);
  EXPECT_EQ(handles.GetSize(alias), 4);
}
