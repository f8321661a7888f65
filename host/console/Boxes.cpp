#include "host/console/Boxes.h"

#include <charconv>
#include <cstdio>
#include <sstream>
#include <vector>

#include "platform/PlainText.h"

namespace console {

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

constexpr const char* kNameKey = "PostScriptName";
constexpr const char* kReplacementsKey = "PossibleReplacements";

bool HasText(const Dictionary& box) {
  const auto kind = box.GetString("Kind").View();
  return kind == "text" || kind == "save-folder";
}

// Texts of boxes may contain names of files and fonts.
std::string TextOf(const Dictionary& dictionary, const char* key) {
  return platform::OneLine(dictionary.GetString(key).Text());
}

// Returns the lines of header and message.
std::vector<std::string> TitleOf(const Dictionary& box) {
  std::string text = box.GetString("Header").Text();
  const std::string message = box.GetString("Message").Text();
  if (!text.empty() && !message.empty()) text += " - ";
  text += message;
  if (text.empty()) text = box.GetString("Kind").Text();
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(platform::OneLine(line));
  return lines;
}

// Confirms a box that only informs, and closes a box that asks for a decision.
Answer DefaultAnswer(const Dictionary& box) {
  Answer answer;
  answer.button = box.GetArray("Buttons").Count() <= 1 && !HasText(box) ? 1 : 0;
  return answer;
}

int32_t NumberOr(const std::string& text, int32_t otherwise) {
  int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : otherwise;
}

void DrawFonts(const Dictionary& box) {
  const Array fonts = box.GetArray("Fonts");
  for (size_t i = 0; i < fonts.Count(); ++i) {
    const Dictionary font(fonts.At(i));
    const std::string description = TextOf(font, "Description");
    std::fprintf(stderr, "|   %s%s%s\n", TextOf(font, kNameKey).c_str(), description.empty() ? "" : ": ",
                 description.c_str());
    const Array candidates = font.GetArray(kReplacementsKey);
    for (size_t j = 0; j < candidates.Count(); ++j) {
      std::fprintf(stderr, "|     %zu  %s\n", j + 1, TextOf(Dictionary(candidates.At(j)), "Description").c_str());
    }
  }
}

// Prints a box that the user is not asked about, and its answer.
void Report(const Dictionary& box, const std::string& outcome) {
  std::string title;
  for (const std::string& line : TitleOf(box)) title += (title.empty() ? "" : "; ") + line;
  std::fprintf(stderr, "box: %s [%s]\n", title.c_str(), outcome.c_str());
  DrawFonts(box);
}

// One box that the user answers question by question.
class Dialogue {
 public:
  Dialogue(const AskLine& ask, const Dictionary& box)
      : ask_(ask), box_(box), session_("box: " + box.GetString("Kind").Text()) {}

  Answer Run() {
    const char* begin = "\n+-- ";
    for (const std::string& line : TitleOf(box_)) {
      std::fprintf(stderr, "%s%s\n", begin, line.c_str());
      begin = "|   ";
    }
    DrawFonts(box_);
    if (!(AskForText() && AskForReplacements() && AskForWorkgroup() && AskForPreferences() && AskForButton())) {
      answer_.button = 0;
    }
    return answer_;
  }

 private:
  // Each returns false if the user wants to answer no more.
  bool Ask(const std::string& prompt, std::string& line) { return ask_(session_, "| " + prompt, line); }
  bool AskForText();
  bool AskForReplacements();
  bool AskForWorkgroup();
  bool AskForPreferences();
  bool AskForButton();

  const AskLine& ask_;
  const Dictionary& box_;
  host::ModalSession session_;
  Answer answer_;
};

bool Dialogue::AskForText() {
  if (!HasText(box_)) return true;
  const std::string initial = box_.GetString("Default").Text();
  std::string line;
  if (!Ask("text" + (initial.empty() ? "" : " (" + platform::OneLine(initial) + ")") + ": ", line)) return false;
  answer_.text = line.empty() ? initial : line;
  return true;
}

// Asks, for each font with several files, which of them to use, or none.
bool Dialogue::AskForReplacements() {
  const Array fonts = box_.GetArray("Fonts");
  for (size_t i = 0; i < fonts.Count(); ++i) {
    const Dictionary font(fonts.At(i));
    const Array candidates = font.GetArray(kReplacementsKey);
    if (candidates.Count() == 0) continue;
    std::string line;
    if (!Ask(TextOf(font, kNameKey) + " (number, empty for none): ", line)) return false;
    const int32_t place = NumberOr(line, 0);
    if (place < 1 || static_cast<size_t>(place) > candidates.Count()) continue;
    answer_.fonts[font.GetString(kNameKey).Text()] = place;
  }
  return true;
}

bool Dialogue::AskForWorkgroup() {
  const Array workgroups = box_.GetArray("Workgroups");
  if (workgroups.Count() == 0) return true;
  for (size_t i = 0; i < workgroups.Count(); ++i) {
    std::fprintf(stderr, "|   %zu  %s\n", i + 1, TextOf(Dictionary(workgroups.At(i)), "Name").c_str());
  }
  std::string line;
  if (!Ask("workgroup (number, empty to leave it): ", line)) return false;
  const int32_t place = NumberOr(line, 0);
  if (place >= 1 && static_cast<size_t>(place) <= workgroups.Count()) {
    const Dictionary chosen(workgroups.At(static_cast<size_t>(place) - 1));
    answer_.choice = static_cast<int32_t>(chosen.GetInteger("ID"));
  }
  return true;
}

std::string ValueText(const platform::Value& value) {
  if (value.Is(platform::ValueType::kBoolean)) return platform::Boolean(value).IsTrue() ? "1" : "0";
  return std::to_string(platform::Number(value).Integer());
}

bool Dialogue::AskForPreferences() {
  const Array entries = box_.GetArray("Preferences");
  for (size_t i = 0; i < entries.Count(); ++i) {
    const Dictionary entry(entries.At(i));
    std::string line;
    if (!Ask(TextOf(entry, "Label") + " (" + ValueText(entry.Get("Value")) + "): ", line)) return false;
    if (!line.empty()) answer_.preferences[entry.GetString("Key").Text()] = line;
  }
  return true;
}

bool Dialogue::AskForButton() {
  const Array buttons = box_.GetArray("Buttons");
  std::string prompt;
  for (size_t i = 0; i < buttons.Count(); ++i) {
    prompt += "[" + std::to_string(i + 1) + "] " + platform::OneLine(String(buttons.At(i)).View()) + "  ";
  }
  if (buttons.Count() == 0) prompt = "[1] OK  ";
  std::string line;
  if (!Ask(prompt + "> ", line)) return false;
  answer_.button = NumberOr(line, 1);
  return true;
}

}  // namespace

Boxes::Boxes(AnswerQueue& answers) : answers_(answers) {
  platform::Presenter presenter;
  presenter.context = this;
  presenter.runBox = [](void* context, platform::ValueRef box) {
    return static_cast<Boxes*>(context)->Run(Dictionary(platform::Value::Retain(box))).Release();
  };
  presenter.showProgress = [](void* context, platform::ValueRef progress) {
    static_cast<Boxes*>(context)->progress_.Show(Dictionary(platform::Value::Retain(progress)));
  };
  presenter.updateProgress = [](void* context, platform::ValueRef progress) {
    static_cast<Boxes*>(context)->progress_.Update(Dictionary(platform::Value::Retain(progress)));
  };
  presenter.hideProgress = [](void* context) { static_cast<Boxes*>(context)->progress_.Hide(); };
  platform::SetPresenter(&presenter);
}

Boxes::~Boxes() { platform::SetPresenter(nullptr); }

Dictionary Boxes::Run(const Dictionary& box) {
  progress_.Hide();
  if (const auto answer = answers_.Take()) {
    Report(box, "answered: button " + std::to_string(answer->button));
    return AnswerDictionary(*answer);
  }
  if (ask_) return AnswerDictionary(Dialogue(ask_, box).Run());
  const Answer answer = DefaultAnswer(box);
  Report(box, answer.button == 0 ? "closed" : "confirmed");
  return AnswerDictionary(answer);
}

}  // namespace console
