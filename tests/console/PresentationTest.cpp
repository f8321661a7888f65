// What the user sees: boxes, progress, and why a file was chosen.
#include <gmock/gmock.h>

#include <filesystem>

#include "host/console/Boxes.h"
#include "host/console/FontLister.h"
#include "host/console/Report.h"
#include "host/console/TraceRecorder.h"
#include "platform/PlainText.h"
#include "platform/Presenter.h"
#include "platform/RunLoop.h"
#include "platform/Trace.h"
#include "platform/Window.h"
#include "support/TempFolder.h"

using platform::Array;
using platform::Dictionary;
using platform::Number;
using platform::String;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace console {

namespace {

Dictionary MakeBox(const char* kind, std::initializer_list<const char*> buttons) {
  Dictionary box = Dictionary::Create();
  box.Set("Kind", kind);
  box.Set("Header", "Something");
  Array list = Array::Create();
  for (const char* button : buttons) list.Append(String::FromUTF8(button));
  box.Set("Buttons", list);
  return box;
}

Dictionary MakeProgress(int64_t current, int64_t most) {
  Dictionary progress = Dictionary::Create();
  progress.Set("Header", "Scanning");
  progress.Set("CurrentProgress", Number::FromInteger(current));
  progress.Set("MaxProgress", Number::FromInteger(most));
  return progress;
}

}  // namespace

TEST(Boxes, TakeTheNextAnswerAndElseTheirDefault) {
  AnswerQueue answers;
  Answer second;
  second.button = 2;
  answers.Add(second);
  const Boxes boxes(answers);
  testing::internal::CaptureStderr();
  EXPECT_EQ(platform::RunBox(MakeBox("message", {"OK", "Cancel"})).GetInteger("Button"), 2);
  // Without a user nothing is decided, and boxes with one button are confirmed.
  EXPECT_EQ(platform::RunBox(MakeBox("message", {"Try Again", "Cancel"})).GetInteger("Button"), 0);
  EXPECT_EQ(platform::RunBox(MakeBox("message", {"OK"})).GetInteger("Button"), 1);
  EXPECT_EQ(platform::RunBox(MakeBox("text", {"OK", "Cancel"})).GetInteger("Button"), 0);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 4);
  EXPECT_THAT(told, HasSubstr("box: Something [answered: button 2]"));
}

TEST(Boxes, AskTheUserForEachChoice) {
  AnswerQueue answers;
  Boxes boxes(answers);
  Dictionary candidate = Dictionary::Create(), font = Dictionary::Create(), lone = Dictionary::Create();
  const std::string name =
      "A-\x1b[31m\xc2\x9b"
      "Bold";
  candidate.Set("Description", "URW, 1.00");
  Array candidates = Array::Create(), fonts = Array::Create();
  candidates.Append(candidate);
  candidates.Append(candidate);
  font.Set("PostScriptName", name);
  font.Set("PossibleReplacements", candidates);
  lone.Set("PostScriptName", "B-Bold");
  fonts.Append(font);
  fonts.Append(lone);
  Dictionary box = MakeBox("resolve", {"Use", "Cancel"});
  box.Set("Fonts", fonts);

  std::vector<std::string> lines = {"2", "1"};
  size_t asked = 0;
  int fired = 0;
  const auto timer = platform::RunLoopTimer::After(0, 1, [&](platform::RunLoopTimer&) { ++fired; });
  platform::RunLoop::Main().AddTimer(timer, platform::RunLoopMode::kDefault);
  boxes.SetTerminal([&](host::ModalSession& session, const std::string&, std::string& line) {
    EXPECT_NE(platform::Window::Modal(), nullptr);
    session.RunUntil([] { return false; }, 0);
    if (asked == lines.size()) return false;
    line = lines[asked++];
    return true;
  });
  testing::internal::CaptureStderr();
  const Dictionary answer = platform::RunBox(box);
  EXPECT_EQ(answer.GetDictionary("Choices").GetInteger(name, -1), 1);
  EXPECT_EQ(answer.GetInteger("Button"), 1);
  EXPECT_EQ(platform::RunBox(MakeBox("message", {"OK"})).GetInteger("Button"), 0);  // the input has ended
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              AllOf(HasSubstr("2  URW, 1.00"), HasSubstr("A-\\x1b[31m\\u009bBold"), Not(HasSubstr("\x1b"))));
  EXPECT_EQ(platform::Window::Modal(), nullptr);
  EXPECT_EQ(fired, 0) << "the timer that closes and reopens a document must wait until the box is closed";
  platform::RunLoop::Main().RemoveTimer(timer);
}

TEST(Progress, IsAFewPlainLinesWithoutATerminal) {
  testing::internal::CaptureStderr();
  {
    ProgressLine line;
    line.Show(MakeProgress(0, 400));
    for (int64_t i = 0; i <= 400; ++i) line.Update(MakeProgress(i, 400));
    line.Hide();
    Dictionary endless = MakeProgress(0, 100);
    endless.Set("IsIndeterminate", Number::FromInteger(1));
    line.Show(endless);
    line.Update(endless);
    line.Hide();
  }
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(told, "Scanning\nScanning: 100 of 400\nScanning: 200 of 400\nScanning: 300 of 400\nScanning: 400 of 400\n");
}

TEST(TraceRecorder, FindsTheLastReasonSinceTheMark) {
  TraceRecorder recorder;
  platform::TraceLine(0, "Matched 'A' with '/old.otf': only candidate");
  recorder.Mark();
  platform::TraceLine(0, "Preferred '/a's/A.otf' over '/b/A.t1' for 'A': OpenType first");
  platform::TraceLine(0, "Matched 'A' with '/a's/A.otf': best match");
  platform::TraceLine(0, "Preferred '/AB.otf' over '/AB.t1' for 'AB': version");
  platform::TraceLine(0, "Preferred '/C.otf' over '/C.t1' for 'C': OpenType first");
  platform::TraceLine(0, "Matched 'C' with '/C.t1': chosen by the user");
  platform::TraceLine(0, "Matched 'B' with '/B.otf': only candidate");
  const TraceRecorder::Reason a = recorder.ReasonFor("A"), b = recorder.ReasonFor("B");
  EXPECT_EQ(a.how, "best match");
  EXPECT_EQ(a.stage, "OpenType first");
  EXPECT_EQ(a.over, "/b/A.t1");
  EXPECT_EQ(b.how, "only candidate");
  EXPECT_EQ(b.over, "");
  EXPECT_EQ(recorder.ReasonFor("C").over, "");  // not the best one, so no stage preferred it
  recorder.Mark();
  EXPECT_EQ(recorder.ReasonFor("A").how, "");
}

TEST(TraceRecorder, CountsRepeatedLinesAndIndents) {
  TraceRecorder recorder;
  platform::TraceLine(1, "in\n");
  for (int i = 0; i < 3; ++i) platform::TraceLine(0, "tick");
  platform::TraceLine(-1, "out");
  EXPECT_THAT(recorder.LastLines(9), ElementsAre("in", "  tick  (3 times)", "out"));
  EXPECT_THAT(recorder.LastLines(1), ElementsAre("out"));
}

TEST(Report, TextIsGroupedByDocumentAndEndsWithATally) {
  const auto report = MakeTextReport();
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  report->Opened({"a.psd", {"N", "M", "O"}, {"N"}, {{"M", "/m.otf", "only candidate"}}, {"O"}});
  report->Saving("a.psd", {"O"});
  report->Saved("a.psd", {"N", "M"}, {"O"});
  report->Closed("a.psd", {"M"});
  report->Opened({"b\xff.psd", {}, {}, {}, {}});
  report->Saved("b\xff.psd", {}, {});
  EXPECT_FALSE(RunReported(*report, "open", [] { throw std::bad_alloc(); }));
  EXPECT_TRUE(RunReported(*report, "open", [] {}));
  report->Note("b\xff.psd", "closed");
  report->Finish();
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "a.psd\n"
            "  names       N, M, O\n"
            "  active      N\n"
            "  activated   M  /m.otf\n"
            "                only candidate\n"
            "  missing     O\n"
            "  at risk     identification of O: not active now, so the save can take it out\n"
            "  saved       identification of N, M\n"
            "  lost        identification of O\n"
            "  given back  M\n"
            "\n"
            "b\\xff.psd\n"
            "  names       no fonts\n"
            "  saved       no identification of fonts\n"
            "              closed\n"
            "\n"
            "2 documents: 3 fonts named, 1 active already, 1 activated, 1 missing; 1 problem\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "open: there is not enough memory\n");
}

TEST(PlainText, WhatActsOnATerminalIsEscaped) {
  const std::pair<const char*, const char*> rows[] = {
      {"Größe 字 😀", "Größe 字 😀"},    {"a\nb\tc\x1b[0m\x7f", "a\\nb\\tc\\x1b[0m\\x7f"},
      {"\xc2\x9b[0m", "\\u009b[0m"},    // the same as "\x1b[" to a terminal
      {"\x9b[0m", "\\x9b[0m"},          // and to one of 8 bits
      {"a \xe2\x80\xae", "a \\u202e"},  // writes from right to left
      {"g\xf6\xc3", "g\\xf6\\xc3"},
  };
  for (const auto& [text, shown] : rows) EXPECT_EQ(platform::OneLine(text), shown);
  EXPECT_EQ(platform::ValidStart("g\xf6.psd"), "g");
  EXPECT_EQ(platform::ValidStart("größe"), "größe");
}

TEST(Report, JsonLinesHaveTheirKeysInOrder) {
  const auto report = MakeJsonReport();
  testing::internal::CaptureStdout();
  report->Opened({"a.psd", {"N", "M"}, {"N"}, {{"M", "/m.otf", "only candidate"}}, {}});
  report->Saving("a.psd", {"M"});
  report->Saved("a.psd", {"N"}, {"M"});
  report->Closed("a.psd", {"M"});
  report->Error("b\xff.psd", "No such file");
  report->Finish();
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            R"({"event":"opened","file":"a.psd","named":["N","M"],"active":["N"],)"
            R"("activated":[{"name":"M","file":"/m.otf","why":"only candidate"}],"missing":[]})"
            "\n"
            R"({"event":"saving","file":"a.psd","atRisk":["M"]})"
            "\n"
            R"({"event":"saved","file":"a.psd","slug":["N"],"lost":["M"]})"
            "\n"
            R"({"event":"closed","file":"a.psd","deactivated":["M"]})"
            "\n"
            "{\"event\":\"error\",\"file\":\"b\xef\xbf\xbd.psd\",\"message\":\"No such file\"}\n");
  EXPECT_EQ(report->Errors(), 1);
}

// A user may have replaced the program by one of another version.
TEST(FontLister, SaysWhatIsWrongWithTheAnswer) {
  const test_support::TempFolder folder;
  const struct {
    const char *answer, *names, *problem;
  } kRows[] = {
      {R"({"fonts":[{"name":"A"},{"name":"B"}],"problems":["damaged"]})", "A B ", "damaged"},
      {R"({"fonts":[]})", "", ""},
      {R"({"fonts":[{"name":7}]})", "", "the answer of docfonts is not understood"},
      {R"({"fonts":["A"]})", "", "the answer of docfonts is not understood"},
      {R"({"fonts":[],"problems":[1]})", "", "the answer of docfonts is not understood"},
      {R"([])", "", "the answer of docfonts is not understood"},
      {"{", "", "the answer of docfonts is not understood"},
      {"", "", "docfonts does not answer"},
  };
  for (const auto& row : kRows) {
    folder.Write("answer", row.answer);
    const std::string program = folder.Write("docfonts", "#!/bin/sh\ncat '" + folder / "answer" + "'\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    const ListedFonts listed = ListFonts(program, "any");
    std::string names;
    for (const std::string& name : listed.names) names += name + " ";
    EXPECT_EQ(names, row.names) << row.answer;
    EXPECT_EQ(listed.problem, row.problem) << row.answer;
  }
  EXPECT_EQ(ListFonts(folder / "none", "any").problem, folder / "none can't be started: No such file or directory");
}

}  // namespace console
