// An agent whose first scan takes long: it reports progress over 400 files, knows no font, and serves nothing else.
#include <poll.h>

#include <nlohmann/json.hpp>
#include <vector>

#include "agent/include/AgentProtocol.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Folders.h"
#include "platform/LocalSocket.h"
#include "platform/Process.h"

namespace {

using Json = nlohmann::json;
using platform::Descriptor;

constexpr uint32_t kNobodyServesThis = 0x08000000;
constexpr int kMostMilliseconds = 60000;

bool Send(const Descriptor& client, const Json& message) {
  return !platform::SendMessage(client.Get(), message.dump());
}

// Returns false when the client has gone.
bool Serve(const Descriptor& client) {
  std::string text;
  if (platform::ReceiveMessage(client.Get(), text)) return false;
  const Json request = Json::parse(text);
  Json reply = {{"id", request["id"]}, {"code", 0}, {"result", Json::object()}};
  if (request["call"] == "Hello") {
    reply["result"]["protocol"] = agent_protocol::kProtocolVersion;
  } else if (request["call"] == "GetScanReport") {
    for (const int step : {0, 200, 400}) {
      const Json payload = {
          {"stepIndex", step}, {"numSteps", 400}, {"text", "/fonts/" + std::to_string(step) + ".otf"}};
      Send(client, {{"notify", PluginInterface::kBulkReplicationProgress}, {"payload", payload}});
    }
    reply["result"] = {{"files", 400}, {"faces", 400}, {"problems", Json::array()}};
  } else {
    reply["code"] = kNobodyServesThis;
  }
  return Send(client, reply);
}

// Runs until its last client has gone.
void Run(const Descriptor& listening) {
  std::vector<Descriptor> clients;
  do {
    std::vector<pollfd> polled = {{listening.Get(), POLLIN, 0}};
    for (const Descriptor& client : clients) polled.push_back({client.Get(), POLLIN, 0});
    if (poll(polled.data(), polled.size(), kMostMilliseconds) <= 0) return;
    for (size_t i = polled.size() - 1; i > 0; --i) {
      if (polled[i].revents != 0 && !Serve(clients[i - 1])) clients.erase(clients.begin() + static_cast<long>(i) - 1);
    }
    std::error_code error;
    if (polled[0].revents != 0) clients.push_back(platform::AcceptLocal(listening.Get(), error));
  } while (!clients.empty());
}

}  // namespace

int main(int, char** arguments) {
  platform::Places places;
  places.runtime = std::string(arguments[1]) + "/run";
  platform::SetPlaces(places);
  std::error_code error;
  const Descriptor listening = platform::ListenLocal(places.runtime, agent_protocol::kAgentSocketName, error);
  if (!listening) return 1;
  const auto announcement = platform::AnnounceApplication(agent_protocol::kAgentName, agent_protocol::kAgentIdentifier);
  Run(listening);
}
