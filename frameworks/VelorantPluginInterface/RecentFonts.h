// The answers to the last look-ups of fonts, and the records that the agent sent along. Callers look a name up and then ask
// for the record of each font with it, and look the name up again each time; one question to the agent is enough for that.
//
// The answers are used for a moment only, and not after a call that may change a font, nor after a notification.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "agent/include/AgentCalls.h"

namespace plugin_interface {

// Thread-safe.
class RecentFonts {
 public:
  using Numbers = agent_protocol::Numbers;
  using Record = agent_protocol::Record;
  struct Question {
    std::string name;
    bool byFamily = false;
    Numbers workgroupIDs;
    bool operator==(const Question&) const = default;
  };

  static constexpr double kKeptSeconds = 0.05;
  static constexpr uint32_t kMostRecords = 16;  // that an answer brings along

  static RecentFonts& Shared();

  std::optional<Numbers> IDsFor(const Question& question);
  std::optional<Record> RecordOf(uint32_t fontID);
  // For each font 1 if it is active, otherwise 0. Nothing unless all are known.
  std::optional<Numbers> FlagsOf(const Numbers& fontIDs);
  // Call Generation before the question is sent. What was forgotten meanwhile is not remembered.
  void Remember(uint64_t generation, const Question& question, const agent_protocol::calls::LookUpFonts::Found& found);
  uint64_t Generation();
  void Forget();

 private:
  struct Answer {
    Question question;
    Numbers fontIDs;
  };
  struct Font {
    Record record;
    uint32_t isActive = 0;
  };
  void ForgetOld();
  void Clear();

  std::mutex mutex_;
  uint64_t generation_ = 0;
  double since_ = 0;  // on Clock::Steady, of the oldest answer
  std::vector<Answer> answers_;
  std::map<uint32_t, Font> fonts_;
};

}  // namespace plugin_interface
