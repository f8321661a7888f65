// Runs each row of rows.txt. Also the recorder that prints a row: road_tests --record DOCUMENT LIBRARY PREFERENCES.
#include <gmock/gmock.h>

#include <cstdio>

#include "road/Row.h"

namespace road {

namespace {

constexpr const char* kRows = SOURCE_DIR "/tests/road/rows.txt";
constexpr size_t kRowCount = 24;  // an empty table would pass

class Road : public testing::TestWithParam<Row> {};

}  // namespace

TEST_P(Road, ComesOutAsRecorded) { EXPECT_EQ(RunRow(GetParam()), GetParam().expected) << GetParam().Text(); }

INSTANTIATE_TEST_SUITE_P(Rows, Road, testing::ValuesIn(ReadRows(kRows)));

TEST(RoadRows, AreAllThere) { EXPECT_EQ(ReadRows(kRows).size(), kRowCount); }

}  // namespace road

int main(int count, char** arguments) {
  if (count == 5 && std::string_view(arguments[1]) == "--record") {
    road::Row row{arguments[2], arguments[3], arguments[4], ""};
    row.expected = road::RunRow(row);
    std::printf("%s\n", row.Text().c_str());
    return 0;
  }
  testing::InitGoogleMock(&count, arguments);
  return RUN_ALL_TESTS();
}
