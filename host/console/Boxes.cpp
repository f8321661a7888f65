#include "host/console/Boxes.h"

#include <charconv>
#include <cstdio>

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

std::string TitleOf(const Dictionary& box) {
  const std::string header = box.GetString("Header").Text(), message = box.GetString("Message").Text();
  const std::string text = header.empty() || message.empty() ? header + message : header + " - " + message;
  return text.empty() ? box.GetString("Kind").Text() : text;
}

// A box that only tells something is confirmed; one that asks for a decision is closed.
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

void DrawFont(const Dictionary& font) {
  const std::string description = font.GetString("Description").Text();
  std::fprintf(stderr, "|   %s%s%s\n", font.GetString(kNameKey).CString(), description.empty() ? "" : ": ",
               description.c_str());
  const Array candidates = font.GetArray(kReplacementsKey);
  for (size_t i = 0; i < candidates.Count(); ++i) {
    std::fprintf(stderr, "|     %zu  %s\n", i + 1, Dictionary(candidates.At(i)).GetString("Description").CString());
  }
}

void Draw(const Dictionary& box) {
  std::fprintf(stderr, "\n+-- %s\n", TitleOf(box).c_str());
  const Array fonts = box.GetArray("Fonts");
  for (size_t i = 0; i < fonts.Count(); ++i) DrawFont(Dictionary(fonts.At(i)));
}

// A box that nobody is asked about: what it showed and what became of it.
void Report(const Dictionary& box, const std::string& outcome) {
  std::fprintf(stderr, "box: %s [%s]\n", TitleOf(box).c_str(), outcome.c_str());
  const Array fonts = box.GetArray("Fonts");
  for (size_t i = 0; i < fonts.Count(); ++i) DrawFont(Dictionary(fonts.At(i)));
}

// For each font with several files to choose from, one of them or none.
void AskForReplacements(const AskLine& ask, const Dictionary& box, Answer& answer) {
  const Array fonts = box.GetArray("Fonts");
  for (size_t i = 0; i < fonts.Count(); ++i) {
    const Dictionary font(fonts.At(i));
    const Array candidates = font.GetArray(kReplacementsKey);
    if (candidates.Count() == 0) continue;
    const std::string name = font.GetString(kNameKey).Text();
    std::string line;
    if (!ask("| " + name + " (number, empty for none): ", line)) return;
    const int32_t place = NumberOr(line, 0);
    if (place >= 1 && static_cast<size_t>(place) <= candidates.Count()) answer.fonts[name] = place;
  }
}

void AskForWorkgroup(const AskLine& ask, const Dictionary& box, Answer& answer) {
  const Array workgroups = box.GetArray("Workgroups");
  for (size_t i = 0; i < workgroups.Count(); ++i) {
    std::fprintf(stderr, "|   %zu  %s\n", i + 1, Dictionary(workgroups.At(i)).GetString("Name").CString());
  }
  std::string line;
  if (workgroups.Count() == 0 || !ask("| workgroup (number, empty to leave it): ", line)) return;
  const int32_t place = NumberOr(line, 0);
  if (place < 1 || static_cast<size_t>(place) > workgroups.Count()) return;
  const Dictionary chosen(workgroups.At(static_cast<size_t>(place) - 1));
  answer.choice = static_cast<int32_t>(chosen.GetInteger("ID"));
}

std::string ValueText(const platform::Value& value) {
  if (value.Is(platform::ValueType::kBoolean)) return platform::Boolean(value).IsTrue() ? "1" : "0";
  return std::to_string(platform::Number(value).Integer());
}

void AskForPreferences(const AskLine& ask, const Dictionary& box, Answer& answer) {
  const Array entries = box.GetArray("Preferences");
  for (size_t i = 0; i < entries.Count(); ++i) {
    const Dictionary entry(entries.At(i));
    std::string line;
    const std::string prompt = entry.GetString("Label").Text() + " (" + ValueText(entry.Get("Value")) + "): ";
    if (!ask("| " + prompt, line)) return;
    if (!line.empty()) answer.preferences[entry.GetString("Key").Text()] = line;
  }
}

void AskForButton(const AskLine& ask, const Dictionary& box, Answer& answer) {
  const Array buttons = box.GetArray("Buttons");
  std::string prompt = "| ";
  for (size_t i = 0; i < buttons.Count(); ++i) {
    prompt += "[" + std::to_string(i + 1) + "] " + String(buttons.At(i)).Text() + "  ";
  }
  if (buttons.Count() == 0) prompt += "[1] OK  ";
  std::string line;
  if (!ask(prompt + "> ", line)) {
    answer.button = 0;
    return;
  }
  answer.button = NumberOr(line, 1);
}

Answer AskUser(const AskLine& ask, const Dictionary& box) {
  Draw(box);
  Answer answer;
  if (HasText(box)) {
    std::string line;
    const std::string initial = box.GetString("Default").Text();
    if (!ask("| text" + (initial.empty() ? "" : " (" + initial + ")") + ": ", line)) {
      answer.button = 0;
      return answer;
    }
    answer.text = line.empty() ? initial : line;
  }
  AskForReplacements(ask, box, answer);
  AskForWorkgroup(ask, box, answer);
  AskForPreferences(ask, box, answer);
  AskForButton(ask, box, answer);
  return answer;
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
  if (ask_) return AnswerDictionary(AskUser(ask_, box));
  const Answer answer = DefaultAnswer(box);
  Report(box, answer.button == 0 ? "closed" : "confirmed");
  return AnswerDictionary(answer);
}

}  // namespace console
