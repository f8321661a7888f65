#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "CoreFixtures.h"
#include "GKVTree.h"
#include "GLibXML.h"
#include "GLibXMLSerializable.h"

namespace {

using Codes = GLibXMLSerializable;

GKVTree Nested(int depth) {
  GKVTree tree;
  tree.SetValueForKey(GValue(1), "leaf");
  for (int i = 0; i < depth; ++i) {
    GKVTree outer;
    outer.SetValueForKey(GValue(tree), "t");
    tree = outer;
  }
  return tree;
}

GKVTree EveryKind() {
  const std::pair<const char*, GValue> entries[] = {{"bool", GValue(true)},
                                                    {"byte", GValue('\x80')},
                                                    {"ubyte", GValue(static_cast<unsigned char>(255))},
                                                    {"short", GValue(static_cast<short>(-32768))},
                                                    {"long", GValue(INT32_MIN)},
                                                    {"ulong", GValue(UINT32_MAX)},
                                                    {"u64", GValue(UINT64_MAX)},
                                                    {"double", GValue(-2.5)},
                                                    {"string", GValue("<&>'\"\r\n\t \xC3\xA4")},
                                                    {"empty string", GValue("")},
                                                    {"strings", GValue(std::vector<std::string>{"only"})},
                                                    {"bools", GValue(std::vector<bool>{true, false})},
                                                    {"set", GValue(std::set<unsigned>{3, 1})},
                                                    {"none", GValue(std::set<std::string>())},
                                                    {"tree", GValue(Nested(2))},
                                                    {"empty tree", GValue(GKVTree())},
                                                    {"key <\"'&>\r\n\t", GValue(5)}};
  GKVTree tree;
  for (const auto& [key, value] : entries) tree.SetValueForKey(value, key);
  return tree;
}

std::string XMLOf(const GKVTree& tree, const std::string& prefix = "", bool pretty = false, unsigned indent = 0) {
  std::ostringstream stream;
  EXPECT_EQ(tree.WriteToXMLStream(stream, prefix, pretty, indent), 0u);
  return stream.str();
}

TModuleErrorCode Parse(const std::string& xml, GKVTree& tree) { return tree.SetFromXMLBuffer(xml.data(), xml.size()); }

template <class T>
TModuleErrorCode Get(const GValue& value, T expected, size_t index = 0) {
  T out{};
  const TModuleErrorCode code = value.GetValue(out, index);
  EXPECT_EQ(out, code == 0 ? expected : T{});
  return code;
}

TEST(Values, GiveBackWhatTheyHold) {
  const GKVTree tree = EveryKind();
  const auto at = [&](const char* key) { return *tree.GetValuePtrForKey(key); };
  EXPECT_EQ(Get(at("bool"), true) | Get(at("byte"), '\x80') | Get<unsigned char>(at("ubyte"), 255), 0u);
  EXPECT_EQ(Get<short>(at("short"), -32768) | Get(at("long"), INT32_MIN), 0u);
  EXPECT_EQ(Get(at("ulong"), UINT32_MAX) | Get(at("u64"), UINT64_MAX) | Get(at("double"), -2.5), 0u);
  EXPECT_EQ(Get<std::string>(at("strings"), "only") | Get(at("bools"), false, 1) | Get(at("tree"), Nested(2)), 0u);
  std::set<unsigned> set{9};
  EXPECT_EQ(at("set").GetValue(set), 0u);
  EXPECT_EQ(set, (std::set<unsigned>{1, 3}));
}

TEST(Values, ReadsOfTheWrongTypeOrPastTheEndAreRefusedAndReported) {
  const GKVTree tree = EveryKind();
  const auto at = [&](const char* key) { return *tree.GetValuePtrForKey(key); };
  const LogRecorder log;
  EXPECT_EQ(Get(at("bool"), 0), GValue::kValueTypeError);
  EXPECT_EQ(Get(at("bools"), false, 2), GValue::kArrayIndexError);
  EXPECT_EQ(Get(at("none"), std::string()), GValue::kArrayIndexError);
  EXPECT_EQ(Get(GValue::CreateNULLValue(), std::string()), GValue::kValueTypeError);
  std::vector<unsigned> numbers{9};
  std::set<std::string> texts;
  EXPECT_EQ(at("bools").GetValue(numbers), GValue::kValueTypeError);
  EXPECT_EQ(at("none").GetValue(numbers), GValue::kValueTypeError);  // an empty array has its type too
  EXPECT_EQ(GValue().GetValue(texts), GValue::kValueTypeError);
  EXPECT_EQ(numbers.size(), 1u);
  EXPECT_EQ(at("none").GetValue(texts), 0u);
  ASSERT_EQ(log.lines.size(), 7u);
  EXPECT_THAT(log.lines[0], testing::HasSubstr("[Value]\t[Error]\tError='GValue::kValueTypeError'"));
  EXPECT_THAT(log.lines[0], testing::HasSubstr("Expression='m_eValueType != type'"));
  EXPECT_THAT(log.lines[1], testing::HasSubstr("Expression='index >= m_dataPtr->size()'"));
}

TEST(Values, CopiesShareAndAssignReplaces) {
  GValue a(std::string("x"));
  const GValue b = a;
  a.Assign(5);
  EXPECT_EQ(Get<std::string>(b, "x"), 0u);
  EXPECT_TRUE(a == GValue(5) && a != b && GValue(5) != GValue(5u));
  EXPECT_TRUE(GValue(std::vector<int>{5, 6}) != GValue(std::vector<int>{5, 7}) &&
              GValue(Nested(1)) == GValue(Nested(1)));
  EXPECT_FALSE(GValue(1).IsArray() || GValue().IsArray());
  EXPECT_TRUE(GValue(std::vector<int>{1}).IsArray() && GValue(std::vector<int>()).IsArray());
}

TEST(Values, AsText) {
  const GKVTree tree = EveryKind();
  const std::pair<const char*, const char*> cases[] = {
      {"bool", "true"},   {"ulong", "4294967295"}, {"u64", "18446744073709551615"},
      {"double", "-2.5"}, {"short", "-32768"},     {"strings", "only"}};
  std::string out;
  for (const auto& [key, text] : cases) {
    EXPECT_EQ(tree.GetValuePtrForKey(key)->GetValueAsUTF8String(out), 0u);
    EXPECT_EQ(out, text);
  }
  EXPECT_EQ(GValue(GKVTree()).GetValueAsUTF8String(out), GValue::kValueConversionError);
  EXPECT_EQ(GValue().GetValueAsUTF8String(out), GValue::kValueConversionError);
  EXPECT_EQ(GValue(1).GetValueAsUTF8String(out, 1), GValue::kArrayIndexError);
}

TEST(Trees, KeepValuesByKey) {
  GKVTree tree;
  tree.SetValueForKey(GValue(1), "b");
  tree.SetValueForKey(GValue(2), "a");
  tree.SetValueForKey(GValue("new"), "b");
  EXPECT_THAT(tree.GetKeys(), testing::ElementsAre("a", "b"));
  EXPECT_EQ(tree.GetValueTypeForKey("b"), GValue::kValueType_string);
  EXPECT_EQ(tree.GetValueTypeForKey("c"), GValue::kValueType_NULL);
  EXPECT_TRUE(!tree.GetValuePtrForKey("c") && !tree.GetWritableValuePtrForKey("c"));
  tree.GetWritableValuePtrForKey("a")->Assign(9);
  GKVTree copy;
  copy.Assign(tree);
  tree.ClearValueForKey("a");
  EXPECT_EQ(Get(*copy.GetValuePtrForKey("a"), 9), 0u);
  tree.Clear();
  EXPECT_TRUE(tree.IsEmpty());
}

TEST(TreeXML, HasOneForm) {
  GKVTree inner, tree;
  inner.SetValueForKey(GValue(std::vector<std::string>{"a&b"}), "s");
  tree.SetValueForKey(GValue(-1), "n");
  tree.SetValueForKey(GValue(inner), "t");
  EXPECT_EQ(
      XMLOf(tree),
      "<kvtree><kv key=\"n\"><value type=\"TSInt32\" isArray=\"false\" size=\"1\"><integer>-1</integer></value></kv>"
      "<kv key=\"t\"><value type=\"kvtree\" isArray=\"false\" size=\"1\"><kvtree><kv key=\"s\"><value type=\"string\" "
      "isArray=\"true\" size=\"1\"><str>a&amp;b</str></value></kv></kvtree></value></kv></kvtree>");
  EXPECT_EQ(XMLOf(inner, "p", true, 1),
            "\t<p:kvtree>\n\t\t<p:kv key=\"s\">\n\t\t\t<p:value type=\"string\" isArray=\"true\" size=\"1\">\n"
            "\t\t\t\t<p:str>a&amp;b</p:str>\n\t\t\t</p:value>\n\t\t</p:kv>\n\t</p:kvtree>\n");
  EXPECT_EQ(XMLOf(GKVTree(), "p", true, 3), "");
}

TEST(TreeXML, EveryKindComesBack) {
  GKVTree read;
  for (const auto& [prefix, pretty] : {std::pair{"", false}, {"x", true}, {"x:", false}}) {
    read.Clear();
    EXPECT_EQ(Parse(XMLOf(EveryKind(), prefix, pretty), read), 0u);
    EXPECT_EQ(read, EveryKind());
  }
  EXPECT_EQ(Parse(XMLOf(Nested(80)), read), 0u);
  EXPECT_EQ(read, Nested(80));
}

std::string WithValue(const std::string& attributes, const std::string& children) {
  return "<kvtree><kv key=\"k\"><value " + attributes + ">" + children + "</value></kv></kvtree>";
}

TEST(TreeXML, RefusalsHaveCodes) {
  const std::string good = "<value type=\"string\" isArray=\"false\" size=\"1\"><str>x</str></value>";
  const std::string ones = "type=\"TSInt16\" isArray=\"false\" size=\"1\"";
  const std::tuple<std::string, TModuleErrorCode> cases[] = {
      {"", GLibXML::kParseFailed},
      {"<kvtree>", GLibXML::kParseFailed},
      {"\xFF", GLibXML::kParseFailed},
      {std::string("<kvtree>\0</kvtree>", 18), GLibXML::kParseFailed},
      {"<other/>", Codes::kWrongElementName},
      {"<kvtree>text</kvtree>", Codes::kInvalidTextContent},
      {"<kvtree><![CDATA[x]]></kvtree>", Codes::kInvalidCDATASection},
      {"<kvtree><?php x?></kvtree>", Codes::kInvalidChildNode},
      {"<kvtree><other/></kvtree>", Codes::kWrongElementName},
      {"<kvtree><kv>" + good + "</kv></kvtree>", Codes::kMissingRequiredAttribute},
      {"<kvtree><kv key=\"\">" + good + "</kv></kvtree>", Codes::kMissingRequiredAttribute},
      {"<kvtree><kv key=\"k\"> </kv></kvtree>", Codes::kMissingRequiredChildElement},
      {"<kvtree><kv key=\"k\">" + good + good + "</kv></kvtree>", Codes::kInvalidChildElement},
      {"<kvtree><kv key=\"k\"><str>x</str></kv></kvtree>", Codes::kWrongElementName},
      {"<kvtree><kv key=\"k\">" + good + "</kv><kv key=\"k\">" + good + "</kv></kvtree>",
       CoreErrorCodes::kItemAlreadyExists},
      {WithValue("type=\"\"", ""), Codes::kMissingRequiredAttribute},
      {WithValue("type=\"String\"", ""), Codes::kInvalidAttributeContent},
      {WithValue("type=\"null\"", ""), Codes::kInvalidAttributeContent},
      {WithValue("type=\"string\"", "<integer>1</integer>"), Codes::kInvalidChildElement},
      {WithValue("type=\"string\"", "<str><b/></str>"), Codes::kInvalidChildElement},
      {WithValue("type=\"string\"", "x"), Codes::kInvalidTextContent},
      {WithValue("type=\"kvtree\"", "<str/>"), Codes::kInvalidChildElement},
      {WithValue(ones, "<str>1</str>"), Codes::kInvalidChildElement},
      {WithValue(ones, "<integer> </integer>"), Codes::kRequiredTextIsBlank},
      {WithValue(ones, "<integer>12a</integer>"), Codes::kInvalidTextContent},
      {WithValue(ones, "<integer>32768</integer>"), Codes::kInvalidTextContent},
      {WithValue("type=\"TUInt32\"", "<integer>-1</integer>"), Codes::kInvalidTextContent},
      {WithValue("type=\"TUInt64\"", "<integer>18446744073709551616</integer>"), Codes::kInvalidTextContent},
      {WithValue("type=\"TUInt32\" size=\"2\"", "<integer>1</integer>"), GValue::kValueSizeMismatch},
      {WithValue("type=\"TUInt32\" size=\"4294967295\"", ""), GValue::kValueSizeMismatch},
  };
  for (const auto& [xml, code] : cases) {
    GKVTree tree = Nested(0);
    const LogRecorder log;
    EXPECT_EQ(Parse(xml, tree), code) << xml;
    EXPECT_EQ(tree, Nested(0)) << xml;
    EXPECT_FALSE(log.lines.empty()) << xml;
  }
}

TEST(TreeXML, ReadsWhatOthersWrite) {
  GKVTree tree;
  EXPECT_EQ(
      Parse("<?xml version=\"1.0\"?><!-- by hand -->\n<a:kvtree xmlns:a=\"urn:x\">\n <a:kv key='k'><!-- c --><a:value "
            "type='string' isArray='yes'><a:str><![CDATA[<x>]]> &#x41;<!-- c --></a:str></a:value></a:kv></a:kvtree>",
            tree),
      0u);
  EXPECT_EQ(*tree.GetValuePtrForKey("k"), GValue("<x> A"));
  EXPECT_TRUE(tree.GetValuePtrForKey("k")->IsArray());
  EXPECT_EQ(Parse(WithValue("type=\"TUInt64\"", "<integer>-1</integer>"), tree), 0u);
  EXPECT_EQ(*tree.GetValuePtrForKey("k"), GValue(UINT64_MAX));
}

TEST(TreeXML, EntitiesAndDepthAreRefused) {
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<kvtree>";
  GKVTree tree = Nested(0);
  for (const std::string& xml : {
           "<!DOCTYPE kvtree [<!ENTITY x \"xx\">]>" + WithValue("type=\"string\"", "<str>&x;</str>"),
           "<!DOCTYPE kvtree [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>" + WithValue("type=\"string\"", "<str/>"),
           std::string("<!DOCTYPE kvtree SYSTEM \"http://127.0.0.1/x.dtd\"><kvtree/>"),
           deep,
       }) {
    EXPECT_EQ(Parse(xml, tree), GLibXML::kParseFailed) << xml.substr(0, 60);
    EXPECT_EQ(tree, Nested(0));
  }
}

TEST(TreeXML, WhatAReaderWouldRefuseIsNotWritten) {
  const auto treeOf = [](const char* key, const GValue& value) {
    GKVTree tree;
    tree.SetValueForKey(value, key);
    return tree;
  };
  const std::pair<GKVTree, TModuleErrorCode> cases[] = {
      {treeOf("k", GValue(std::vector<std::string>{"fine", "\x01"})), Codes::kInvalidTextContent},
      {treeOf("k", GValue("\xEF\xBF\xBF")), Codes::kInvalidTextContent},
      {treeOf("k", GValue("\xEF\xBF\xBE")), Codes::kInvalidTextContent},
      {treeOf("k", GValue("\xC3")), Codes::kInvalidTextContent},
      {treeOf("\xFF", GValue(1)), Codes::kInvalidAttributeContent},
      {treeOf("", GValue(1)), Codes::kMissingRequiredAttribute},
      {Nested(81), CoreErrorCodes::kNotSupported}};
  for (const auto& [tree, code] : cases) {
    std::ostringstream stream;
    EXPECT_EQ(tree.WriteToXMLStream(stream), code);
    EXPECT_EQ(stream.str(), "");
  }
}

TEST(TreeJSON, EveryKindHasItsForm) {
  GKVTree tree = EveryKind();
  tree.ClearValueForKey("key <\"'&>\r\n\t");
  tree.SetValueForKey(GValue(), "null");
  nlohmann::json json;
  ASSERT_EQ(tree.ConvertToJSON(json), 0u);
  EXPECT_EQ(
      json.dump(),
      "{\"bool\":true,\"bools\":[true,false],\"byte\":-128,\"double\":-2.5,\"empty string\":\"\",\"empty tree\":{},"
      "\"long\":-2147483648,\"none\":[],\"null\":null,\"set\":[1,3],\"short\":-32768,\"string\":\"<&>'\\\"\\r\\n\\t "
      "\xC3\xA4\",\"strings\":[\"only\"],\"tree\":{\"t\":{\"t\":{\"leaf\":1}}},\"u64\":18446744073709551615,"
      "\"ubyte\":255,\"ulong\":4294967295}");
  tree.SetValueForKey(GValue("\xFF"), "bad");
  EXPECT_EQ(tree.ConvertToJSON(json), GValue::kValueConversionError);
  EXPECT_TRUE(json.contains("null"));  // unchanged
  ASSERT_EQ(Parse(WithValue("type=\"string\" size=\"0\"", ""), tree), 0u);
  EXPECT_EQ(tree.ConvertToJSON(json), GValue::kEmptyValueBytes);
}

}  // namespace
