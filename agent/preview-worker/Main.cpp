// preview-worker: draws the names of fonts for the agent in a separate process, because a broken font can make it loop,
// run out of memory or crash. agent/previews/PreviewWorker.cpp starts it. It answers the requests on its standard input
// (a socket) one by one and ends when the other side closes.
#include <unistd.h>

#include <stdexcept>
#include <string>

#include "agent/include/CallEncoding.h"
#include "agent/rendering/NameRenderer.h"
#include "agent/rendering/RenderMessages.h"
#include "platform/ChildLimits.h"
#include "platform/LocalSocket.h"

namespace {

using agent::Pictures;
using agent::RenderAnswer;
using agent::RenderRequest;
constexpr int kSocket = STDIN_FILENO;

bool Send(const RenderAnswer& answer, const Pictures& pictures) {
  if (platform::SendMessage(kSocket, agent_protocol::ToText(agent_protocol::ToJson(answer)))) return false;
  if (!answer.problem.empty()) return true;
  return !platform::SendMessage(kSocket, pictures.png) && !platform::SendMessage(kSocket, pictures.png2x);
}

bool Serve(agent::NameRenderer& renderer, const std::string& message, const std::string& path) {
  RenderAnswer answer;
  Pictures pictures;
  try {
    const auto request = agent_protocol::FromJson<RenderRequest>(agent_protocol::Json::parse(message), "request");
    platform::LimitChildTime(agent::kRenderSeconds);
    pictures = renderer.Render(request, path);
    answer.couldOpen = pictures.couldOpen;
  } catch (const std::runtime_error& error) {
    answer.problem = error.what();
  }
  platform::EndChildTime();
  return Send(answer, pictures);
}

}  // namespace

int main() {
  platform::LimitChild(agent::kRenderMemory);
  agent::NameRenderer renderer;
  std::string request, path;
  while (!platform::ReceiveMessage(kSocket, request) && !platform::ReceiveMessage(kSocket, path)) {
    if (!Serve(renderer, request, path)) return 1;
  }
  return 0;
}
