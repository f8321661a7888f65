// font-unpacker: unpacks font files of the web for the agent in a separate process, because a broken one can make it loop, run
// out of memory or crash. agent/webfonts starts it. It answers the requests on its standard input (a socket) one by one and
// ends when the other side closes.
#include <unistd.h>

#include <string>
#include <vector>

#include "agent/include/CallEncoding.h"
#include "agent/unpacking/FontUnpacker.h"
#include "agent/unpacking/UnpackMessages.h"
#include "platform/ChildLimits.h"
#include "platform/Files.h"
#include "platform/LocalSocket.h"

namespace {

constexpr int kSocket = STDIN_FILENO;

std::vector<std::string> Unpack(const agent::FontUnpacker& unpacker, const std::string& path) {
  std::string bytes;
  if (const std::error_code error = platform::ReadFile(path, bytes)) {
    throw agent::UnpackError(platform::DescribeError(error));
  }
  return unpacker.Unpack(bytes);
}

bool Serve(const agent::FontUnpacker& unpacker, const std::string& path) {
  agent::UnpackAnswer answer;
  std::vector<std::string> fonts;
  platform::LimitChildTime(agent::kUnpackSeconds);
  try {
    fonts = Unpack(unpacker, path);
  } catch (const agent::UnpackError& error) {
    answer.problem = error.what();
  }
  platform::EndChildTime();
  answer.fonts = static_cast<uint32_t>(fonts.size());
  if (platform::SendMessage(kSocket, agent_protocol::ToText(agent_protocol::ToJson(answer)))) return false;
  for (const std::string& font : fonts) {
    if (platform::SendMessage(kSocket, font)) return false;
  }
  return true;
}

}  // namespace

int main() {
  platform::LimitChild(agent::kUnpackMemory);
  const agent::FontUnpacker unpacker;
  std::string path;
  while (!platform::ReceiveMessage(kSocket, path)) {
    if (!Serve(unpacker, path)) return 1;
  }
  return 0;
}
