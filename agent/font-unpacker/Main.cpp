// font-unpacker: unpacks web font files (WOFF, WOFF2) for the agent, which starts it (agent/webfonts). It is a separate
// process, because a broken file can make it loop, run out of memory or crash. Its standard input is a socket, on which
// it answers requests (UnpackMessages.h) one by one until the agent closes its end.
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

// Returns a font file for each face. Throws UnpackError if the file cannot be read or unpacked.
std::vector<std::string> Unpack(const agent::FontUnpacker& unpacker, const std::string& path) {
  std::string bytes;
  if (const std::error_code error = platform::ReadFile(path, bytes)) {
    throw agent::UnpackError(platform::DescribeError(error));
  }
  return unpacker.Unpack(bytes);
}

// Unpacks the file and sends the answer. Returns false if the agent has closed its end. A file that needs too much time
// or memory ends the process; the agent notices that and starts another one.
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
  for (;;) {
    if (const std::error_code closed = platform::ReceiveMessage(kSocket, path)) return 0;
    if (!Serve(unpacker, path)) return 1;
  }
}
