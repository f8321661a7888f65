// The answer of a user or a script to a box.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>

#include "host/console/Words.h"
#include "platform/Value.h"

namespace console {

struct Answer {
  int32_t button = 1;  // from 1; 0 closes the box
  std::optional<std::string> text;
  std::optional<int32_t> choice;         // a workgroup's ID
  std::map<std::string, int32_t> fonts;  // PostScript name to the replacement's number in the box, from 1
  std::map<std::string, std::string> preferences;
};

// Parses "button 2 text 'My set' choice 3 font NimbusSans-Bold 1 pref PickBestMatch 0", in any order and number.
// Returns an empty text, or one line that says what is wrong.
std::string ReadAnswer(const Words& words, Answer& answer);

// Converts the answer to the form that the caller of a box expects.
platform::Dictionary AnswerDictionary(const Answer& answer);

// Answers for future boxes, in order.
class AnswerQueue {
 public:
  void Add(const Answer& answer) { answers_.push_back(answer); }
  std::optional<Answer> Take();
  size_t Count() const { return answers_.size(); }

 private:
  std::deque<Answer> answers_;
};

}  // namespace console
