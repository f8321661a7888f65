#include "GJSONUtils.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "CoreFixtures.h"

namespace {

using namespace GJSONUtils;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;

enum EColour : uint16_t { kRed = 3 };

TEST(JSONUtils, BuildsAMessage) {
  Parser parser;
  const Node root = parser.root();
  Node array, node;
  const std::string text = "t";
  EXPECT_EQ(SetValueForKey(kRed, "e", root, node) | SetValueForKey(text, "s", root, node), 0u);
  EXPECT_EQ(SetValueForKey("c", "c", root, node) | SetValueForKey(1.5, "d", root, node), 0u);
  EXPECT_EQ(SetValueForKey(true, "b", root, node) | SetValueForKey(UINT32_MAX, "u", root, node), 0u);
  EXPECT_EQ(SetValueForKey(node, "n", root, node), 0u);  // reads the node, truncated to 32 bits
  EXPECT_EQ(AddArrayForKey("a", root, array), 0u);
  EXPECT_EQ(AddValueToArray(text, array, node) | AddValueToArray("c", array, node) | AddValueToArray(0.5, array, node),
            0u);
  EXPECT_EQ(AddValueToArray(false, array, node) | AddValueToArray(int64_t{1} << 40, array, node), 0u);
  EXPECT_EQ(AddArrayToArray(array, node) | AddMapToArray(array, node) | AddMapForKey("m", node, node), 0u);
  EXPECT_EQ(root.dump(),
            "{\"e\":3,\"s\":\"t\",\"c\":\"c\",\"d\":1.5,\"b\":true,\"u\":4294967295,\"n\":-1,"
            "\"a\":[\"t\",\"c\",0.5,false,1099511627776,[],{\"m\":{}}]}");
}

TEST(JSONUtils, MisuseThrowsThrough) {
  Parser parser;
  const Node root = parser.root();
  Node array, node;
  ASSERT_EQ(AddArrayForKey("workgroupIDs", root, array), 0u);
  try {
    SetValueForKey(array, "workgroupIDs", root, node);
    ADD_FAILURE() << "an array is no integer";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "Expected JSON node \"workgroupIDs\" to be INTEGER, found ARRAY");
  }
  EXPECT_THROW(AddValueToArray(1, root, node), std::runtime_error);
  EXPECT_THROW(SetValueForKey(1, "k", array, node), std::runtime_error);
  EXPECT_EQ(root.dump(), "{\"workgroupIDs\":[]}");
}

// The code of a read into a T, and whether the output was unchanged.
template <class T>
TModuleErrorCode Read(const std::string& value, const T& expected) {
  const Parser parser("{\"k\":" + value + "}");
  T out{};
  const TModuleErrorCode code = GetValueForKey(parser.root(), "k", out);
  EXPECT_EQ(out, code == 0 ? expected : T{}) << value;
  return code;
}

TEST(JSONUtils, TypedReads) {
  using IDs = std::vector<unsigned>;
  using IDSet = std::set<unsigned>;
  constexpr TModuleErrorCode kWrong = CoreErrorCodes::kError;
  EXPECT_EQ(Read<std::string>("\"x\"", "x") | Read("1.5", 1.5) | Read("2", 2.0) | Read("true", true), 0u);
  EXPECT_EQ(Read("-5", -5) | Read("9223372036854775807", INT64_MAX) | Read("3", kRed), 0u);
  EXPECT_EQ(Read<uint32_t>("4294967297", 1) | Read<uint8_t>("-1", 255), 0u);  // truncated without an error
  EXPECT_EQ(Read("[]", IDs{}) | Read("[3,1,3,4294967295]", IDs{3, 1, 3, UINT32_MAX}) | Read("[3,1,3]", IDSet{1, 3}),
            0u);
  for (const char* null : {"null", "{}"}) {
    const TModuleErrorCode codes[] = {Read(null, ""s), Read(null, 0.0),   Read(null, false),
                                      Read(null, 0),   Read(null, IDs{}), Read(null, IDSet{})};
    EXPECT_THAT(codes, testing::Each(kWrong));
  }
  EXPECT_EQ(Read("1", ""s), kWrong);
  EXPECT_EQ(Read("\"2\"", 0.0), kWrong);
  EXPECT_EQ(Read("1", false), kWrong);
  EXPECT_EQ(Read("1.5", 0), kWrong);
  EXPECT_EQ(Read("9223372036854775808", 0), kWrong);
  IDs ids{9};
  const Parser parser("{\"empty\":[],\"mixed\":[1,\"x\"]}");
  EXPECT_THROW(GetValueForKey(parser.root(), "mixed", ids), std::runtime_error);
  EXPECT_EQ(ids, IDs{9});
  EXPECT_EQ(GetValueForKey(parser.root(), "missing", ids), CoreErrorCodes::kNotFound);
  EXPECT_EQ(GetValueForKey(parser.root(), "empty", ids), 0u);
  EXPECT_TRUE(ids.empty());
  EXPECT_TRUE(HasValueForKey(parser.root(), "empty"));
  EXPECT_FALSE(HasValueForKey(parser.root(), "missing"));
}

std::vector<std::string> Expressions(const LogRecorder& log) {
  std::vector<std::string> expressions;
  for (const std::string& line : log.lines) {
    const size_t start = line.find("Expression='");
    if (start == std::string::npos) continue;
    EXPECT_THAT(line, HasSubstr("/core-agent/cpp-core/src/GJSONUtils.cpp'  Line="));
    expressions.push_back(line.substr(1, 1) + line.substr(line.find("\t[") + 2, 1) + " " +
                          line.substr(start + 12, line.find("'  Code") - start - 12));
  }
  return expressions;
}

TEST(JSONUtils, FailedReadsReportAtDebugLevel) {
  const Parser parser("{\"n\":null}");
  const Node root = parser.root();
  const LogRecorder log(GLogger::kDebug);
  const auto read = [&](const char* key, auto value) { GetValueForKey(root, key, value); };
  read("x", ""s);
  read("n", ""s);
  read("n", 0.0);
  read("n", false);
  read("n", 0);
  read("n", std::set<unsigned>());
  read("n", std::vector<unsigned>());
  EXPECT_THAT(Expressions(log),
              ElementsAre("MD !jsonValue.find(key, value)", "MD GetValueForKey(jsonValue, key, valueObject)",
                          "MD !valueObject.is_string()", "MD !valueObject.is_double()", "MD !valueObject.is_bool()",
                          "MD !valueObject.is_int()", "MD !valueObject.is_array()", "MD !valueObject.is_array()"));
}

TEST(JSONUtils, AParseNeverThrows) {
  const LogRecorder log(GLogger::kDebug);
  Parser parser;
  Node node;
  EXPECT_EQ(Parse(parser, "{\"a\":1}", node), 0u);
  EXPECT_TRUE(node.exists("a"));
  EXPECT_THAT(log.lines, ElementsAre("[Miscellaneous]\t[Debug]\tAttempting to parse JSON: {\"a\":1}"));
  EXPECT_EQ(Parse(parser, "{bad", node), CoreErrorCodes::kInvalidParam);
  EXPECT_EQ(log.lines[2], "[Miscellaneous]\t[Debug]\tFailed to parse JSON: {bad");
  EXPECT_THAT(Expressions(log), ElementsAre("ME err"));
  EXPECT_FALSE(parser.is_loaded());
}

TEST(JSONUtils, TheOtherLibrarysParse) {
  nlohmann::json json = "old";
  for (const std::string& text : {"{bad"s, "\"\xFF\""s, "[1e999]"s, std::string(1'000'000, '[')}) {
    EXPECT_EQ(Parse(text, json), CoreErrorCodes::kInvalidParam);
    EXPECT_EQ(json, "old");
  }
  EXPECT_EQ(Parse("[1,2.5,null]", json), 0u);
  EXPECT_EQ(json.dump(), "[1,2.5,null]");
}

}  // namespace
