#include <gmock/gmock.h>

#include <cmath>
#include <functional>

#include "CoreFixtures.h"
#include "JsonEmitter.h"
#include "JsonParser.h"

namespace {

using namespace restful_mapper::Json;
using namespace std::string_literals;
using Path = std::vector<std::string>;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::StartsWith;

template <class F>
std::string MessageOf(F&& call) {
  try {
    call();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing thrown";
}

std::string Dumped(const std::string& text) { return Parser(text).root().dump(); }

TEST(Json, TextsComeBackAsTheyWere) {
  const std::pair<std::string, const char*> cases[] = {
      {" { \"b\" : -7, \"a\":[true,false,null]} ", "{\"b\":-7,\"a\":[true,false,null]}"},
      {"[1.5,9223372036854775807]", "[1.5,9223372036854775807]"},
      {"[9223372036854775808]", "[9223372036854775808.0]"},
      {"[5.0,0.25]", "[5.0,0.25]"},
      {"{\"a\":1,\"a\":2}", "{\"a\":1,\"a\":2}"},
      {"\"\\u00e4\\n\\/\"", "\"\xC3\xA4\\n/\""},
      {"\"\\ud83d\\ude00\"", "\"\xF0\x9F\x98\x80\""},
      {"[1e999]", "[]"},  // neither an integer nor a double
      {"/* [ \" */ [] // x", "[]"},
      {"[1]\0x"s, "[1]"},  // text after a NUL is not read
      {"null", "null"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(Dumped(text), expected) << text;
}

TEST(Json, MalformedTextThrows) {
  for (const char* text :
       {"", "{", "{\"a\"}", "[1,]", "[1] [2]", "\"\xFF\"", "\"\xC3\"", "\"\x01\"", "nul", "01", "\"\\x\""}) {
    Parser parser;
    EXPECT_THAT(MessageOf([&] { parser.load(text); }), StartsWith("JSON parse error:\n")) << text;
    EXPECT_FALSE(parser.is_loaded());
    const std::function<void()> uses[] = {[&] { parser.root(); }, [&] { parser.exists("a"); },
                                          [&] { parser.empty("a"); }, [&] { parser.find("a"); }};
    for (const auto& use : uses) EXPECT_EQ(MessageOf(use), "No JSON loaded in parser");
    parser.load("[]");
    EXPECT_TRUE(parser.is_loaded());
  }
}

std::string Nested(size_t depth, const std::string& open, const std::string& close) {
  std::string text;
  for (size_t i = 0; i < depth; ++i) text += open;
  text += "1";
  for (size_t i = 0; i < depth; ++i) text += close;
  return text;
}

TEST(Json, DepthIsBounded) {
  EXPECT_NO_THROW(Parser(Nested(Parser::kDeepest, "[", "]")));
  EXPECT_NO_THROW(Parser("[\"" + std::string(5000, '[') + "\\\"" + std::string(5000, '{') + "\"]"));
  EXPECT_NO_THROW(Parser("[/*" + std::string(5000, '[') + "*/1//" + std::string(5000, '{') + "\n]"));
  for (const std::string& text : {Nested(Parser::kDeepest + 1, "[", "]"), Nested(1'000'000, "{\"a\":", "}"),
                                  LongText(10'000'000, '['), "/*\"*/" + Nested(1'000'000, "[", "]")}) {
    EXPECT_EQ(MessageOf([&] { Parser{text}; }), "JSON parse error:\nvalues are nested too deep");
  }
  // The parser accepts more depth than the generator.
  EXPECT_EQ(Dumped(Nested(127, "[", "]")), Nested(127, "[", "]"));
  EXPECT_EQ(MessageOf([] { Dumped(Nested(128, "[", "]")); }), "YAJL's maximum generation depth was exceeded");
}

struct Kinds {
  const char* text;
  const char* kinds;  // of null, string, int, double, bool, array, map
  const char* found;  // in the message of a failed read
};

constexpr Kinds kKinds[] = {
    {"null", "n", ""},
    {"\"x\"", "s", " STRING: x"},
    {"-3", "id", " INTEGER: -3"},
    {"1.5", "d", " DOUBLE: 1.5"},
    {"1e3", "d", " DOUBLE: 1000"},
    {"9223372036854775808", "d", " DOUBLE: 9.22337e+18"},
    {"1e999", "", ""},
    {"true", "b", " BOOLEAN: true"},
    {"false", "b", " BOOLEAN: false"},
    {"[]", "a", " ARRAY"},
    {"{}", "m", " OBJECT"},
};

std::string KindsOf(const Node& node) {
  std::string kinds;
  if (node.is_null()) kinds += "n";
  if (node.is_string()) kinds += "s";
  if (node.is_int()) kinds += "i";
  if (node.is_double()) kinds += "d";
  if (node.is_bool()) kinds += "b";
  if (node.is_array()) kinds += "a";
  if (node.is_map()) kinds += "m";
  return kinds;
}

// Checks that a read succeeds or throws, depending on the node's kind.
template <class F>
void CheckRead(const Kinds& c, char kind, const char* name, F&& read) {
  const bool isKind = std::string(c.kinds).find(kind) != std::string::npos;
  const std::string expected = std::string("Expected JSON node \"k\" to be ") + name + ", found" + c.found;
  EXPECT_EQ(MessageOf(read), isKind ? "nothing thrown" : expected) << c.text;
}

TEST(Json, ReadsOfTheWrongKindThrow) {
  for (const Kinds& c : kKinds) {
    const Parser parser(std::string("{\"k\":") + c.text + "}");
    Node node;
    ASSERT_TRUE(parser.root().find("k", node));
    EXPECT_EQ(KindsOf(node), c.kinds) << c.text;
    CheckRead(c, 's', "STRING", [&] { node.to_string(); });
    CheckRead(c, 'i', "INTEGER", [&] { node.to_int(); });
    CheckRead(c, 'i', "INTEGER", [&] { node.to_int64(); });
    CheckRead(c, 'd', "DOUBLE", [&] { node.to_double(); });
    CheckRead(c, 'b', "BOOLEAN", [&] { node.to_bool(); });
    CheckRead(c, 'a', "ARRAY", [&] { node.to_array(); });
    CheckRead(c, 'm', "OBJECT", [&] { node.to_map(); });
    Node added;
    CheckRead(c, 'a', "ARRAY", [&] { node.add_int(1, added); });
    CheckRead(c, 'm', "OBJECT", [&] { node.add_map("x", added); });
  }
  const Node nothing;
  EXPECT_EQ(KindsOf(nothing), "");
  EXPECT_EQ(nothing.dump(), "");
  EXPECT_FALSE(nothing.exists("a"));
  EXPECT_EQ(MessageOf([&] { nothing.to_bool(); }), "Expected JSON node \"\" to be BOOLEAN, found");
  EXPECT_EQ(MessageOf([] { Node("x", nullptr); }), "JSON node \"x\" not found");
}

TEST(Json, ErrorsSpellThePath) {
  const Parser parser("{\"list\":[1,{\"a\":\"x\"}]}");
  const Node list = parser.find("list");
  EXPECT_THAT(MessageOf([&] { list.to_int_array(); }),
              HasSubstr("Expected JSON node \"list[1]\" to be INTEGER, found OBJECT"));
  EXPECT_THAT(MessageOf([&] { list.to_array()[1].to_int_map(); }),
              HasSubstr("\"list[1][\"a\"]\" to be INTEGER, found STRING: x"));
  EXPECT_EQ(MessageOf([&] { parser.find("missing"); }), "JSON node \"missing\" not found");
  EXPECT_EQ(MessageOf([&] { parser.find(Path{"list", "a"}); }), "JSON node \"list[\"a\"]\" not found");
}

TEST(Json, CollectionsOfOneKind) {
  const Parser parser(
      "{\"s\":[\"a\",\"b\"],\"i\":[1,4294967295],\"d\":[1,2.5],\"b\":[true,false],\"m\":{\"x\":1,\"x\":3}}");
  EXPECT_THAT(parser.find("s").to_string_array(), ElementsAre("a", "b"));
  EXPECT_THAT(parser.find("i").to_int_array(), ElementsAre(1, -1));
  EXPECT_THAT(parser.find("d").to_double_array(), ElementsAre(1, 2.5));
  EXPECT_THAT(parser.find("b").to_bool_array(), ElementsAre(true, false));
  EXPECT_THAT(parser.find("m").to_int_map(), ElementsAre(Pair("x", 1)));
  EXPECT_THAT(parser.find("m").to_double_map(), ElementsAre(Pair("x", 1)));
  EXPECT_THAT(Parser("{\"a\":\"b\"}").root().to_string_map(), ElementsAre(Pair("a", "b")));
  EXPECT_THAT(Parser("{\"a\":true}").root().to_bool_map(), ElementsAre(Pair("a", true)));
  EXPECT_THAT(parser.find("d").dump_array(), ElementsAre("1", "2.5"));
  EXPECT_THAT(parser.find("m").dump_map(), ElementsAre(Pair("x", "1")));
}

TEST(Json, Search) {
  const Parser parser("{\"a\":{\"b\":null},\"\":1}");
  Node out("old", parser.root().value());
  EXPECT_FALSE(parser.root().find("b", out));
  EXPECT_EQ(out.name(), "old");
  EXPECT_TRUE(parser.root().find("a", out));
  EXPECT_EQ(out.name(), "a");
  EXPECT_TRUE(parser.exists("a") && parser.exists("") && parser.exists(Path{"a", "b"}));
  EXPECT_FALSE(parser.exists("b") || parser.exists(Path{"a", "b", "c"}) || out.exists("x"));
  EXPECT_TRUE(parser.empty("missing") && parser.empty(Path{"a", "b"}));
  EXPECT_FALSE(parser.empty("a"));
  EXPECT_EQ(parser.find(Path{}).name(), "root");
}

TEST(Json, AddingIsSeenThroughEveryNode) {
  Parser parser;
  const Node root = parser.root();
  Node n, inner;
  EXPECT_EQ(root.name() + root.dump(), "root{}");
  ASSERT_TRUE(root.add_array("a", n));
  EXPECT_EQ(n.name(), "a");
  ASSERT_TRUE(n.add_int(1, inner));
  EXPECT_EQ(inner.name(), "");
  EXPECT_EQ(root.dump(), "{\"a\":[1]}");
  ASSERT_TRUE(n.add_string("s", inner) && n.add_int64(INT64_MIN, inner));
  EXPECT_EQ(KindsOf(inner), "id");
  ASSERT_TRUE(n.add_double(5, inner));
  EXPECT_EQ(KindsOf(inner), "d");
  ASSERT_TRUE(n.add_bool(true, inner) && n.add_array(inner) && n.add_map(inner));
  ASSERT_TRUE(inner.add_string("k", "\"\n", n) && inner.add_int("k", -1, n) && inner.add_int64("l", INT64_MAX, n));
  ASSERT_TRUE(inner.add_double("d", 0.1, n) && inner.add_bool("b", false, n) && inner.add_map("m", n));
  EXPECT_EQ(parser.root().dump(),
            "{\"a\":[1,\"s\",-9223372036854775808,5.0,true,[],{\"k\":\"\\\"\\n\",\"k\":-1,\"l\":9223372036854775807,"
            "\"d\":0.10000000000000000555,\"b\":false,\"m\":{}}]}");
}

TEST(Json, TextsAreTakenAsTheyAreAndConvertedOnReading) {
  Parser parser;
  Node node;
  parser.root().add_string("k", "\xFF", node);
  EXPECT_THAT(MessageOf([&] { node.to_string(); }), StartsWith("Unable to convert string to UTF-8 (error "));
  EXPECT_EQ(MessageOf([&] { node.dump(); }), "An invalid UTF-8 string was passed to the JSON generator");
  for (const char* surrogate : {"\"\xED\xA0\x80\"", "\"\\udc00\""}) {
    EXPECT_THAT(MessageOf([&] { Parser(surrogate).root().to_string(); }), StartsWith("Unable to convert string to "));
  }
}

TEST(Emitter, RefusesWhatIsNoDocument) {
  const std::pair<std::function<void(Emitter&)>, const char*> cases[] = {
      {[](Emitter& e) { e.emit_map_open(), e.emit(1); }, "A non-string JSON key was passed"},
      {[](Emitter& e) { e.emit(1), e.emit(2); }, "A complete JSON document has been generated"},
      {[](Emitter& e) { e.emit(std::nan("")); },
       "An invalid floating point value was passed to the JSON generator (infinity or NaN)"},
      {[](Emitter& e) {
         for (;;) e.emit_array_open();
       },
       "YAJL's maximum generation depth was exceeded"},
      {[](Emitter& e) { e.emit_json("["); }, "JSON parse error:\n"},
  };
  for (const auto& [emit, message] : cases) {
    Emitter emitter;
    EXPECT_THAT(MessageOf([&, &run = emit] { run(emitter); }), StartsWith(message));
    emitter.reset();
    emitter.emit_null();
    EXPECT_EQ(emitter.dump(), "null");
  }
}

TEST(Emitter, WritesPieceByPieceAndKeepsWhatItGaveOut) {
  Emitter emitter;
  emitter.emit_map_open();
  emitter.emit("a");
  emitter.emit_array_open();
  emitter.emit(1), emitter.emit(2.5), emitter.emit(false), emitter.emit_null();
  emitter.emit_json(" { \"x\" : [] } ");
  emitter.emit("left\xFFout");  // malformed bytes are removed on output
  emitter.emit_array_close();
  const std::string soFar = "{\"a\":[1,2.5,false,null,{\"x\":[]},\"leftout\"]";
  EXPECT_EQ(emitter.dump(), soFar);
  emitter.emit_map_close();
  EXPECT_EQ(emitter.dump(), soFar);
}

}  // namespace
