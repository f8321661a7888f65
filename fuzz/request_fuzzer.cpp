// Any bytes as what a client sends to the agent: gives the same messages however it arrives. Each message gets one
// reply or ends the connection. Each call reads its arguments.
#include <algorithm>
#include <vector>

#include "Check.h"
#include "Input.h"
#include "agent/server/Dispatcher.h"
#include "agent/server/Server.h"

namespace {

using namespace agent;

struct Stream {
  std::vector<std::string> messages;
  bool isBroken = false;
};

Stream Cut(std::string_view bytes, size_t step) {
  platform::FrameReader reader(agent_protocol::kLongestRequest);
  Stream stream;
  for (size_t at = 0; at < bytes.size() && !stream.isBroken; at += step) {
    reader.Add(bytes.substr(at, step));
    std::string message;
    platform::FrameReader::Result result;
    while ((result = reader.Next(message)) == platform::FrameReader::Result::kMessage)
      stream.messages.push_back(message);
    stream.isBroken = result == platform::FrameReader::Result::kTooLong;
  }
  return stream;
}

struct Client {
  std::vector<std::string> replies;
  size_t breaches = 0;
  Dispatcher dispatcher{{[this](ClientID, const std::string& message) { replies.push_back(message); },
                         [this](ClientID) { ++breaches; }, [](const std::string&) {}}};
};

void AddSessionCalls(Dispatcher& dispatcher) {
#define ADD_CALL(name)                                                                                              \
  dispatcher.Add<calls::name>(Needs::kNothing, [](ClientID, const calls::name::Arguments&) -> Answer<calls::name> { \
    return calls::name::Result();                                                                                   \
  });
  AGENT_SESSION_CALLS(ADD_CALL)
#undef ADD_CALL
}

void AddFontCalls(Dispatcher& dispatcher) {
#define ADD_CALL(name)         \
  dispatcher.Add<calls::name>( \
      Needs::kFonts, [](ClientID, const calls::name::Arguments&) -> Answer<calls::name> { return kNotFound; });
  AGENT_FONT_CALLS(ADD_CALL)
#undef ADD_CALL
}

void CheckReply(const std::string& text) {
  const Json reply = Json::parse(text);
  CHECK(reply.size() == 3 && reply["id"].is_number_unsigned() && reply["code"].is_number_unsigned() &&
        reply["result"].is_object());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes = BytesOf(data, size);
  const Stream stream = Cut(bytes, std::max<size_t>(size, 1));
  const Stream inPieces = Cut(bytes, 3);
  CHECK(stream.messages == inPieces.messages && stream.isBroken == inPieces.isBroken);

  Client client;
  AddSessionCalls(client.dispatcher);
  AddFontCalls(client.dispatcher);
  for (const std::string& message : stream.messages) client.dispatcher.OnMessage(1, message);
  client.dispatcher.Release();
  CHECK(client.replies.size() + client.breaches == stream.messages.size());
  for (const std::string& reply : client.replies) CheckReply(reply);
  return 0;
}
