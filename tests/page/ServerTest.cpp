// What the panel's server gives to whom.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "host/panel/HostRequests.h"
#include "host/panel/ReadableFiles.h"
#include "host/panel/RequestCheck.h"
#include "support/TempFolder.h"

namespace panel {
namespace {

const ServerIdentity kServer{"0123abcd", 4711};
constexpr const char* kHost = "127.0.0.1:4711";
constexpr const char* kOrigin = "http://127.0.0.1:4711";

TEST(RequestCheck, OnlyPagesOfThisServerGetAnything) {
  const struct {
    RequestParts request;
    Wanted wanted;
    std::string name;
  } rows[] = {
      {{"GET", "/0123abcd/", kHost, ""}, Wanted::kPageFile, "index.html"},
      {{"GET", "/0123abcd/panel.js", kHost, kOrigin}, Wanted::kPageFile, "panel.js"},
      {{"GET", "/0123abcd/files/tmp/a%20b", kHost, ""}, Wanted::kFile, "/tmp/a b"},
      {{"GET", "/0123abcd/files/tmp/%e2%82%ac", kHost, ""}, Wanted::kFile, "/tmp/\u20ac"},
      {{"GET", "/0123abcd/events", kHost, kOrigin, true}, Wanted::kEvents, ""},
      // Without the token, with a wrong one, with a part of it.
      {{"GET", "/", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/panel.js", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abce/", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abc/", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "0123abcd/", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "", kHost, ""}, Wanted::kNothing, ""},
      // Another site, also one whose name resolves to this machine; a WebSocket always has an origin.
      {{"GET", "/0123abcd/", "fonts.example:4711", ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/", "127.0.0.1", ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/", kHost, "http://127.0.0.1:4712"}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/", kHost, "null"}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/events", kHost, "", true}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/panel.js", kHost, kOrigin, true}, Wanted::kNothing, ""},
      // Paths with two names, and malformed ones.
      {{"GET", "/0123abcd/files/tmp/../etc/passwd", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/files/tmp/%2e%2e/etc/passwd", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/files//etc/passwd", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/files/tmp%2f..%2fa", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/files/", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/files/a%00", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/files/a%2", kHost, ""}, Wanted::kNothing, ""},
      {{"GET", "/0123abcd/files/a%zz", kHost, ""}, Wanted::kNothing, ""},
      {{"POST", "/0123abcd/", kHost, kOrigin}, Wanted::kNothing, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.request.method) + " " + std::string(row.request.target));
    const Decision decision = CheckRequest(row.request, kServer);
    EXPECT_EQ(decision.wanted, row.wanted);
    EXPECT_EQ(decision.name, row.name);
    EXPECT_EQ(decision.reason == nullptr, row.wanted != Wanted::kNothing);
    EXPECT_EQ(decision.status == 200, row.wanted != Wanted::kNothing);
  }
}

TEST(ReadableFiles, AreTheNamedListsAndThePreviews) {
  const test_support::TempFolder folder;
  std::filesystem::create_directories(folder / "previews/deeper");
  const std::string list = folder.Write("list", "7\tName\n"), other = folder.Write("other", "secret");
  const std::string preview = folder.Write("previews/7@2x.png", "PNG"),
                    deeper = folder.Write("previews/deeper/7.png", "");
  const std::string notDrawn = folder.Write("previews/index", "secret");
  const std::string link = folder / "previews/link.png", pipe = folder / "previews/pipe.png";
  std::filesystem::create_symlink(other, link);
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  ReadableFiles files(folder / "previews");
  EXPECT_FALSE(files.Read(list));
  for (const std::string& message :
       {"({\"messageID\":41,\"filename\":\"file://" + list + "\"})",
        // Another message, another scheme, a wrong type, not a message at all.
        "({\"messageID\":13,\"filename\":\"file://" + other + "\"})",
        "({\"messageID\":41,\"filename\":\"" + other + "\"})", std::string("({\"messageID\":41,\"filename\":[1]})"),
        std::string("({\"messageID\":\"41\",\"filename\":7})"), std::string("(\"filename\")"),
        std::string("\"filename\""), std::string(")\"filename\"(")}) {
    files.Learn(message);
  }
  ASSERT_TRUE(files.Read(list));
  EXPECT_EQ(files.Read(list)->bytes, "7\tName\n");
  ASSERT_TRUE(files.Read(preview));
  EXPECT_STREQ(files.Read(preview)->type, "image/png");
  for (const std::string& path : {other, deeper, notDrawn, link, pipe, folder / "previews", std::string()}) {
    EXPECT_FALSE(files.Read(path)) << path;
  }
  std::filesystem::remove(list);
  EXPECT_FALSE(files.Read(list));
}

class Fonts : public FontSource {
 public:
  std::optional<std::vector<Part>> Parts() override { return {{{"workgroup", 11, "Head\"lines"}, {"set", 3, "\xff"}}}; }
  std::optional<std::vector<Kind>> Kinds() override { return {{{"TrueType", {2, 4}}, {"Postscript", {}}}}; }
  std::optional<Deactivation> DeactivateFamily(uint32_t fontID) override {
    if (fontID != 2) return std::nullopt;
    return Deactivation{{2}, {{4, "document", "a.psd"}, {6, "system", ""}}};
  }
};

TEST(HostRequests, AreAnsweredUnderTheirNumber) {
  const struct {
    const char* request;
    const char* answer;  // as JSON; empty for none
  } rows[] = {
      {R"({"request":7,"call":"getParts"})",
       R"({"request":7,"parts":[{"kind":"workgroup","number":11,"name":"Head\"lines"},
                                {"kind":"set","number":3,"name":"\ufffd"}]})"},
      {R"({"request":0,"call":"getKinds"})",
       R"({"request":0,"kinds":[{"kind":"TrueType","fontIDs":[2,4]},{"kind":"Postscript","fontIDs":[]}]})"},
      {R"({"request":8,"call":"deactivateFamily","fontID":2})",
       R"({"request":8,"inactive":[2],"kept":[{"fontID":4,"why":"document","document":"a.psd"},
                                              {"fontID":6,"why":"system","document":""}]})"},
      {R"({"request":8,"call":"deactivateFamily","fontID":3})", R"({"request":8,"problem":"failed"})"},
      {R"({"request":8,"call":"deactivateFamily","fontID":-2})", R"({"request":8,"problem":"malformed"})"},
      {R"({"request":8,"call":"deactivateFamily","fontID":4294967298})", R"({"request":8,"problem":"malformed"})"},
      {R"({"request":8,"call":"deactivateFamily"})", R"({"request":8,"problem":"malformed"})"},
      {R"({"request":8,"call":["getParts"]})", R"({"request":8,"problem":"malformed"})"},
      {R"({"request":8})", R"({"request":8,"problem":"malformed"})"},
      {R"({"request":"8","call":"getParts"})", ""},
      {R"({"call":"getParts"})", ""},
      {R"([7])", ""},
      {"({\"request\":7})", ""},
      {"", ""},
  };
  Fonts fonts;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.request);
    const std::string answer = AnswerHostRequest(fonts, row.request);
    const bool isAnswered = *row.answer != '\0';
    EXPECT_NE(answer.empty(), isAnswered);
    if (isAnswered) {
      EXPECT_EQ(nlohmann::json::parse(answer), nlohmann::json::parse(row.answer));
    }
  }
}

}  // namespace
}  // namespace panel
