#include "host/console/Answers.h"

#include <charconv>

namespace console {

namespace {

bool ReadNumber(const std::string& text, int32_t& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number >= 0;
}

// Reads one key with its values. Moves `at` from the key to the word after the values.
std::string TakeKey(const Words& words, size_t& at, Answer& answer) {
  const std::string& key = words[at];
  const bool isPair = key == "font" || key == "pref";
  if (!isPair && key != "button" && key != "choice" && key != "text") {
    return "answer knows button, choice, text, font and pref, not '" + key + "'";
  }
  const size_t count = isPair ? 2 : 1;
  if (words.size() - at - 1 < count) return "answer " + key + (isPair ? " takes two values" : " takes a value");
  const std::string& first = words[at + 1];
  const std::string& last = words[at + count];
  at += count + 1;
  if (key == "text") {
    answer.text = first;
    return "";
  }
  if (key == "pref") {
    answer.preferences[first] = last;
    return "";
  }
  int32_t number = 0;
  if (!ReadNumber(last, number) || (key == "font" && number == 0)) {
    return "answer " + key + " takes a number, not '" + last + "'";
  }
  if (key == "button") answer.button = number;
  if (key == "choice") answer.choice = number;
  if (key == "font") answer.fonts[first] = number;
  return "";
}

}  // namespace

std::string ReadAnswer(const Words& words, Answer& answer) {
  for (size_t at = 0; at < words.size();) {
    std::string problem = TakeKey(words, at, answer);
    if (!problem.empty()) return problem;
  }
  return "";
}

platform::Dictionary AnswerDictionary(const Answer& answer) {
  using platform::Dictionary;
  using platform::Number;
  Dictionary dictionary = Dictionary::Create();
  dictionary.Set("Button", Number::FromInteger(answer.button));
  if (answer.text) dictionary.Set("Text", *answer.text);
  if (answer.choice) dictionary.Set("Choice", Number::FromInteger(*answer.choice));
  if (!answer.fonts.empty()) {
    Dictionary choices = Dictionary::Create();
    for (const auto& [name, number] : answer.fonts) choices.Set(name, Number::FromInteger(number - 1));
    dictionary.Set("Choices", choices);
  }
  if (!answer.preferences.empty()) {
    Dictionary preferences = Dictionary::Create();
    for (const auto& [key, value] : answer.preferences) {
      int32_t number = 0;
      if (ReadNumber(value, number)) {
        preferences.Set(key, Number::FromInteger(number));
      } else {
        preferences.Set(key, value);
      }
    }
    dictionary.Set("Preferences", preferences);
  }
  return dictionary;
}

std::optional<Answer> AnswerQueue::Take() {
  if (answers_.empty()) return std::nullopt;
  Answer answer = answers_.front();
  answers_.pop_front();
  return answer;
}

}  // namespace console
