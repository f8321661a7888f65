// The plug-in's cache of the agent's font data.
#include <gtest/gtest.h>

#include "Bridge/FontDataPreviouslyGottenFromDatabase.h"
#include "support/Records.h"

using namespace fakes;
using Cache = FontDataPreviouslyGottenFromDatabase;
using platform::Dictionary;

namespace {

class FontDataCache : public ::testing::Test {
 protected:
  FontDataCache() { Cache::DeleteAll(); }
  ~FontDataCache() override { Cache::DeleteAll(); }

  static void Add(uint32_t id, const char* name, int16_t state, const char* status) {
    FontOrSetInfoRec record;
    record.tag = 1;
    record.fields.nDatabaseID = id;
    record.activationState = state;
    record.fontInfo = With(Named(name), {{"DatabaseID", std::to_string(id)}, {"ActivationStatus", status}});
    Cache::Add(id, record);
  }
  // Returns the ID of the active font of this name; 0 for none.
  static uint32_t Active(const char* name) {
    Dictionary record = Named("untouched");
    uint32_t id = 77;
    const bool found = Cache::CreateCopyOfGlyphsureDataForActiveFont(name, record, id);
    EXPECT_EQ(record.GetString("PostScriptName").View(), found ? name : "untouched");
    if (found) record.Set("Changed", "1");  // a copy: the cache does not see it
    EXPECT_EQ(id == 77, !found);
    return found ? id : 0;
  }
};

}  // namespace

TEST_F(FontDataCache, FirstRecordOfAnIDStays) {
  Add(1, "A", 2, "2");
  Add(1, "B", 2, "2");
  EXPECT_EQ(Active("A"), 1u);
  EXPECT_EQ(Active("B"), 0u);
  Dictionary record;
  uint32_t id = 0;
  ASSERT_TRUE(Cache::CreateCopyOfGlyphsureDataForActiveFont("A", record, id));
  EXPECT_FALSE(record.Contains("Changed"));
}

TEST_F(FontDataCache, BothStatesMustAgree) {
  const struct {
    int16_t state;
    const char* status;
    bool isActive;
  } rows[] = {{2, "2", true}, {3, "3", true}, {3, "2", true},  {2, "1", false}, {1, "2", false},
              {3, "", false}, {0, "2", true}, {2, "0", false}, {2, "x", false}};
  uint32_t id = 0;
  for (const auto& row : rows) {
    Cache::DeleteAll();
    Add(++id, "A", row.state, row.status);
    EXPECT_EQ(Active("A"), row.isActive ? id : 0) << row.state << " and " << row.status;
  }
}

TEST_F(FontDataCache, LowestActiveIDAnswersToExactlyItsName) {
  Add(9, "A", 2, "2");
  Add(3, "A", 2, "2");
  Add(2, "A", 1, "2");
  Add(1, "a", 2, "2");
  EXPECT_EQ(Active("A"), 3u);
  EXPECT_EQ(Active("A "), 0u);
}

TEST_F(FontDataCache, FollowsTheAgentsNotices) {
  Add(1, "A", 2, "2");
  Add(2, "A", 2, "2");
  Add(3, "B", 2, "2");
  Add(4, "A", 1, "2");
  Add(5, "A", 2, "2");
  Cache::SetFontActivationState(2, true);
  EXPECT_EQ(Active("A"), 1u) << "an active one that is reported again touches no other";
  Cache::SetFontActivationState(4, true);
  EXPECT_EQ(Active("A"), 4u) << "one of a name is active";
  EXPECT_EQ(Active("B"), 3u);
  Cache::SetFontActivationState(4, false);
  Cache::SetFontActivationState(4, false);
  EXPECT_EQ(Active("A"), 0u);
  Cache::SetFontActivationState(99, true);
}
