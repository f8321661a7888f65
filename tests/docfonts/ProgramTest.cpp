// The program as a user starts it: output and exit status for good, bad and unusual arguments.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "support/ProgramRun.h"
#include "support/TempFolder.h"

namespace {

using Json = nlohmann::json;
using test_support::Outcome;
using test_support::TempFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class Program : public testing::Test {
 protected:
  // Takes the words as a shell does.
  Outcome Run(const std::string& words) const {
    return test_support::RunLine("'" APP_DIR "/docfonts/docfonts' " + words, folder);
  }
  static std::string Sample(const std::string& name) { return SOURCE_DIR "/samples/" + name; }

  TempFolder folder;
};
using DocfontsProgram = Program;

TEST_F(DocfontsProgram, ListsWhatEachReaderFound) {
  const Outcome poster = Run("--json " + Sample("archive.psd"));
  EXPECT_EQ(poster.status, 0) << poster.errors;
  const Json object = Json::parse(poster.output);
  EXPECT_EQ(object["kind"], "psd");
  // The document names AdobeInvisFont, too, which only its application has.
  ASSERT_EQ(object["fonts"].size(), 4u);
  EXPECT_EQ(object["fonts"][0]["name"], "LiberationSerif-Bold");
  EXPECT_EQ(object["fonts"][0]["found"], Json({"scan", "slug"}));
  EXPECT_EQ(object["fonts"][0]["slug"]["OutlineFileName"], "LiberationSerif-Bold.ttf");
  const Outcome leaflet = Run(Sample("leaflet.pdf"));
  EXPECT_THAT(leaflet.output, HasSubstr("NimbusSans-Bold"));
  EXPECT_THAT(leaflet.output, HasSubstr("embedded, subset RTLAZB"));
}

TEST_F(DocfontsProgram, SaysWhatCannotBeReadAndReadsTheRest) {
  ASSERT_EQ(mkfifo((folder / "pipe.psd").c_str(), 0600), 0);
  folder.Write("bad.pdf", "%PDF-1.4\n1 0 obj\n<<");
  const struct {
    std::string argument;
    const char* error;
  } kRows[] = {
      {folder / "no-such.psd", "No such file or directory"},
      {folder.Path(), "Is a directory"},
      {folder / "pipe.psd", "not supported"},
      {folder / "bad.pdf", "as a PDF: "},
      {"''", "No such file or directory"},
  };
  for (const auto& row : kRows) {
    const Outcome outcome = Run(row.argument + " " + Sample("poster.psd"));
    EXPECT_EQ(outcome.status, 1) << row.argument;
    EXPECT_THAT(outcome.errors, HasSubstr(row.error)) << row.argument;
    EXPECT_THAT(outcome.output, HasSubstr("LiberationSerif-Bold")) << row.argument;
  }
  for (const char* words : {"", "--no-such-option x", "--state", "--json=yes x"}) {
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.status, 2) << words;
    EXPECT_THAT(outcome.errors, StartsWith("docfonts: ")) << words;
  }
}

TEST_F(DocfontsProgram, WalksFoldersAndLeavesOutWhatIsNoDocument) {
  const std::string set = TempFolder::Content(Sample("poster.psd"));
  for (const char* name : {"tree/b.psd", "tree/below/a.psd", "tree/a.psd", "tree/.hidden.psd"}) folder.Write(name, set);
  folder.Write("tree/notes.txt", "no document");
  ASSERT_EQ(mkfifo((folder / "tree/pipe").c_str(), 0600), 0);
  ASSERT_EQ(symlink("..", (folder / "tree/below/up").c_str()), 0);
  const Outcome outcome = Run("-r --json " + folder / "tree");
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  std::vector<std::string> files;
  std::istringstream lines(outcome.output);
  for (std::string line; std::getline(lines, line);) {
    files.push_back(Json::parse(line)["file"].get<std::string>().substr(folder.Path().size()));
  }
  EXPECT_THAT(files, ElementsAre("/tree/a.psd", "/tree/b.psd", "/tree/below/a.psd"));
  EXPECT_EQ(outcome.errors, "");
}

TEST_F(DocfontsProgram, MissingListsOnlyWhatIsNotActive) {
  const std::string missing = folder.Write("missing.psd", "/FontSet [ << /Name (AdobeInvisFont) /Name (No-Such) >> ]");
  const Outcome outcome = Run("--missing " + missing + " " + Sample("leaflet.pdf"));
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.output, HasSubstr("No-Such"));
  EXPECT_THAT(outcome.output, testing::Not(HasSubstr("AdobeInvisFont")));
  EXPECT_THAT(outcome.output, testing::Not(HasSubstr("active")));
  EXPECT_THAT(outcome.output, testing::Not(HasSubstr("leaflet")));
}

// Names with any bytes are harmless on a terminal and leave JSON valid.
TEST_F(DocfontsProgram, NamesOfAnyBytesStayHarmless) {
  const std::string path = folder.Write("red\x1b[31m\n\xFF.psd", "/FontSet [ << /Name (A\x1b[2JB) >> ]");
  const Outcome text = Run("'" + path + "'"), json = Run("--json '" + path + "'");
  EXPECT_THAT(text.output, HasSubstr("red\\x1b[31m\\n\\xff.psd"));
  EXPECT_THAT(text.output, HasSubstr("A\\x1b[2JB"));
  EXPECT_EQ(Json::parse(json.output)["fonts"][0]["name"], "A\x1b[2JB");
}

TEST_F(DocfontsProgram, ManualPageDescribesExactlyTheOptions) {
  // In the page a hyphen that is typed has a backslash.
  std::string page = TempFolder::Content(SOURCE_DIR "/docfonts/docfonts.1");
  page = page.substr(page.find(".SH OPTIONS"), page.find(".SH EXIT STATUS") - page.find(".SH OPTIONS"));
  std::erase(page, '\\');
  const auto words = [](const std::string& text) {
    std::set<std::string> found;
    static const std::regex kOption("[ '](--?[a-z]+)");
    for (std::sregex_iterator at(text.begin(), text.end(), kOption), end; at != end; ++at) found.insert((*at)[1]);
    return found;
  };
  std::set<std::string> options = words(Run("--completion bash").output);
  options.erase("-o");  // of the line itself
  options.erase("-W");
  EXPECT_GE(options.size(), 7u);
  EXPECT_EQ(words(page), options);
}

TEST_F(DocfontsProgram, FailsWhereItsOutputCannotBeWritten) {
  const Outcome outcome = Run("-r '" SOURCE_DIR "/samples' 2>&1 >/dev/full; test $? = 1");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(DocfontsProgram, JsonFollowsItsSchema) {
  folder.Write("bad.pdf", "%PDF-1.4\n1 0 obj\n<<");
  const Outcome lines =
      Run("-r --json '" SOURCE_DIR "/samples' '" SOURCE_DIR "/tests/docfonts/samples' " + folder.Path());
  folder.Write("lines", lines.output);
  const std::string check =
      "python3 -c 'import json, sys, jsonschema\n"
      "schema = json.load(open(sys.argv[1]))\n"
      "lines = open(sys.argv[2]).read().splitlines()\n"
      "assert len(lines) > 5\n"
      "for line in lines: jsonschema.validate(json.loads(line), schema)' '" SOURCE_DIR
      "/docfonts/docfonts.schema.json' '" +
      folder / "lines" + "'";
  EXPECT_EQ(std::system(check.c_str()), 0) << lines.output;
}

}  // namespace
