// The command line, the words of a script, and completion.
#include <gmock/gmock.h>

#include "host/console/Answers.h"
#include "host/console/Commands.h"
#include "host/console/Complete.h"
#include "host/console/Options.h"
#include "support/TempFolder.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace console {

TEST(Options, TakeTheirValuesInBothForms) {
  Options options;
  EXPECT_EQ(ParseOptions({"a.psd", "--library", "x", "--json", "--library=y=z", "--state=s", "--", "--odd"}, options),
            "");
  EXPECT_THAT(options.files, ElementsAre("a.psd", "--odd"));
  EXPECT_THAT(options.library, ElementsAre("x", "y=z"));
  EXPECT_EQ(options.state, "s");
  EXPECT_TRUE(options.json);
  EXPECT_FALSE(options.interactive || options.desktop || options.help);
}

TEST(Options, WrongOnesAreToldInOneLine) {
  struct Row {
    std::vector<std::string> arguments;
    const char* told;
  };
  const Row rows[] = {
      {{"--jsno"}, "unknown option '--jsno'"},
      {{"-j"}, "unknown option '-j'"},
      {{"--library"}, "--library needs a FOLDER"},
      {{"--state="}, "--state needs a FOLDER"},
      {{"--json=1"}, "--json takes no value"},
      {{"--script", "s", "a.psd"}, "no documents on the command line"},
      {{"--script", "s", "--interactive"}, "cannot be used together"},
      {{"--script", "s", "--panel"}, "cannot be used together"},
  };
  for (const Row& row : rows) {
    Options options;
    const std::string told = ParseOptions(row.arguments, options);
    EXPECT_THAT(told, HasSubstr(row.told));
    EXPECT_EQ(told.find('\n'), std::string::npos);
  }
}

TEST(Options, HelpAndCompletionNameEveryOption) {
  EXPECT_THAT(HelpText(), HasSubstr("\n  --script FILE       replay the commands of a file, one per line\n"));
  // The whole line that the shell reads.
  EXPECT_THAT(CompletionText("bash"),
              testing::MatchesRegex("complete -o default -W '(--[a-z]+ )+--help' velorant-host\n"));
}

TEST(Words, QuotesEscapesAndComments) {
  struct Row {
    const char* line;
    Words words;
  };
  const Row rows[] = {
      {"", {}},
      {"  open  a.psd\tb.psd\r", {"open", "a.psd", "b.psd"}},
      {R"(open "Let's Eat.psd" 'A & "B"')", {"open", "Let's Eat.psd", "A & \"B\""}},
      {R"(open a\ b.psd '\' "\"")", {"open", "a b.psd", "\\", "\""}},
      {R"(answer text "" # the rest)", {"answer", "text", ""}},
      {"open a#b.psd", {"open", "a#b.psd"}},
  };
  for (const Row& row : rows) {
    Words words;
    EXPECT_EQ(SplitWords(row.line, words), "") << row.line;
    EXPECT_EQ(words, row.words) << row.line;
    std::string quoted;
    for (const std::string& word : row.words) quoted += QuoteWord(word) + " ";
    Words again;
    EXPECT_EQ(SplitWords(quoted, again), "") << quoted;
    EXPECT_EQ(again, row.words) << quoted;
  }
  Words words;
  EXPECT_THAT(SplitWords("open 'a", words), HasSubstr("quote"));
}

TEST(Commands, AreCheckedBeforeAnythingIsDone) {
  struct Row {
    Words words;
    const char* told;  // empty if correct
  };
  const Row rows[] = {
      {{}, ""},
      {{"open", "a", "b", "c"}, ""},
      {{"open"}, "open takes FILE ..."},
      {{"frob"}, "unknown command 'frob'"},
      {{"make", "x"}, "make takes no arguments"},
      {{"save", ""}, "the name is empty"},
      {{"save-as", ""}, "the name is empty"},
      {{"close", ""}, "the name is empty"},
      {{"wait", "0.5"}, ""},
      {{"wait", "-1"}, "wait takes seconds"},
      {{"wait", "nan"}, "wait takes seconds"},
      {{"wait", "5s"}, "wait takes seconds"},
      {{"do-it", "4"}, ""},
      {{"do-it", "four"}, "do-it takes a number"},
      {{"show", "trace", "10"}, ""},
      {{"show", "fonts", "10"}, "only 'show trace'"},
      {{"show", "weather"}, "not 'weather'"},
      {{"set", "PickBestMatch", "1"}, ""},
      {{"set", "PickBestMatch", "yes"}, "PickBestMatch is 0 or 1"},
      {{"set", "RMF5", "-1"}, ""},
      {{"set", "NoSuchKey", "1"}, "unknown preference 'NoSuchKey'"},
      {{"answer", "button", "2", "text", "My set"}, ""},
      {{"answer", "button"}, "answer button takes a value"},
      {{"answer", "font", "X", "0"}, "takes a number"},
      {{"answer", "colour", "red"}, "not 'colour'"},
  };
  for (const Row& row : rows) {
    const std::string told = CheckCommand(row.words);
    if (*row.told) {
      EXPECT_THAT(told, HasSubstr(row.told));
    } else {
      EXPECT_EQ(told, "");
    }
  }
}

TEST(Answers, BecomeWhatABoxExpects) {
  Answer answer;
  ASSERT_EQ(
      ReadAnswer({"button", "2", "text", "My set", "choice", "7", "font", "A-Bold", "2", "pref", "K", "0"}, answer),
      "");
  const platform::Dictionary given = AnswerDictionary(answer);
  EXPECT_EQ(given.GetInteger("Button"), 2);
  EXPECT_EQ(given.GetString("Text").Text(), "My set");
  EXPECT_EQ(given.GetInteger("Choice"), 7);
  EXPECT_EQ(given.GetDictionary("Choices").GetInteger("A-Bold"), 1);
  EXPECT_EQ(given.GetDictionary("Preferences").GetInteger("K", -1), 0);
  EXPECT_FALSE(AnswerDictionary(Answer()).Contains("Choice"));
}

TEST(Completion, OffersWhatMayFollow) {
  const test_support::TempFolder folder;
  folder.Write("poster.psd", "");
  folder.Write("post card.psd", "");
  folder.Write("posters/a.psd", "");
  folder.Write(".hidden", "");
  const std::string at = folder.Path() + "/";
  const std::vector<std::string> documents = {"a b.psd", "c.psd"};
  struct Row {
    std::string line;
    size_t start;
    std::vector<std::string> words;
  };
  const Row rows[] = {
      {"sh", 0, {"show"}},
      {"s", 0, {"save", "save-as", "set", "show"}},
      {"show t", 5, {"trace"}},
      {"show trace ", 11, {}},
      {"set PickB", 4, {"PickBestMatch"}},
      {"close ", 6, {"a\\ b.psd", "c.psd"}},
      {"open " + at + "post", 5, {at + "post\\ card.psd", at + "poster.psd", at + "posters/"}},
      {"open x " + at + "posters/", 7, {at + "posters/a.psd"}},
      {"save-as x " + at, 10, {}},
      {"open \"" + at + "post c", 5, {at + "post\\ card.psd"}},
      {"open " + at + ".h", 5, {at + ".hidden"}},
      {"frob ", 5, {}},
  };
  for (const Row& row : rows) {
    const Candidates candidates = CompleteLine(row.line, documents);
    EXPECT_EQ(candidates.words, row.words) << row.line;
    if (!row.words.empty()) {
      EXPECT_EQ(candidates.start, row.start) << row.line;
    }
  }
  EXPECT_EQ(CommonStart({"save", "save-as"}), "save");
  EXPECT_EQ(CommonStart({"a", "b"}), "");
  EXPECT_THAT(CompleteLine("open /no/such/folder/", documents).words, IsEmpty());
}

}  // namespace console
