#include "agent/previews/PreviewWorker.h"

#include <utility>

#include "agent/include/CallEncoding.h"
#include "platform/ChildLimits.h"

namespace agent {

namespace {

constexpr double kPatience = 2.0 * platform::kChildPatience * kRenderSeconds;
constexpr uint32_t kLongestAnswer = 8u << 20;  // bytes

RenderAnswer FirstOf(const std::vector<std::string>& messages) {
  return agent_protocol::FromJson<RenderAnswer>(agent_protocol::Json::parse(messages[0]), "answer");
}

// The pictures follow if there is no problem.
bool IsWhole(const std::vector<std::string>& messages) {
  return messages.size() >= 3 || !FirstOf(messages).problem.empty();
}

RenderedName NameOf(Worker::Answer answer) {
  if (!answer.problem.empty()) return {answer.problem, true, false, "", ""};
  const RenderAnswer first = FirstOf(answer.messages);
  if (!first.problem.empty()) return {first.problem, false, first.couldOpen, "", ""};
  return {"", false, first.couldOpen, std::move(answer.messages[1]), std::move(answer.messages[2])};
}

}  // namespace

PreviewWorker::PreviewWorker(std::string program, platform::RunLoop& loop)
    : worker_({std::move(program), "drawn", kPatience, kLongestAnswer, IsWhole}, loop) {}

void PreviewWorker::Render(const RenderRequest& request, const std::string& path, Done done) {
  worker_.Ask({agent_protocol::ToText(agent_protocol::ToJson(request)), path},
              [done = std::move(done)](Worker::Answer answer) { done(NameOf(std::move(answer))); });
}

}  // namespace agent
