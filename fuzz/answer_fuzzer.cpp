// Lines of any bytes as what an agent sends. As messages: notifications arrive complete and with the data of their
// kind. As results of calls: the exported functions accept them or return a code.
#include <sys/socket.h>

#include <cstring>
#include <mutex>
#include <semaphore>
#include <sstream>
#include <thread>
#include <vector>

#include "Check.h"
#include "Input.h"
#include "agent/client/AgentConnection.h"
#include "agent/include/AgentProtocol.h"
#include "agent/include/MessageDepth.h"
#include "frameworks/VelorantPluginInterface/Exports.h"
#include "frameworks/VelorantPluginInterface/Notifications.h"
#include "platform/Folders.h"
#include "support/TempFolder.h"

namespace {

using agent_protocol::Json;
using platform::Array;
using platform::Dictionary;
using platform::Value;

// Answers every call of one client with the same result.
class FakeAgent {
 public:
  FakeAgent() {
    platform::Places places;
    places.runtime = folder_.Path() + "/run";
    platform::SetPlaces(places);
    std::error_code error;
    listening_ = platform::ListenLocal(places.runtime, agent_protocol::kAgentSocketName, error);
    CHECK(!error);
    std::thread([this] { Serve(); }).detach();
  }
  void SetResult(const std::string& json) {
    const std::lock_guard lock(mutex_);
    result_ = json;
  }

 private:
  void Serve() {
    std::error_code error;
    const platform::Descriptor client = platform::AcceptLocal(listening_.Get(), error);
    std::string message;
    while (!platform::ReceiveMessage(client.Get(), message)) {
      CHECK(!platform::SendMessage(client.Get(), AnswerTo(message)));
    }
  }
  std::string AnswerTo(const std::string& message) {
    const Json request = Json::parse(message);
    const std::lock_guard lock(mutex_);
    const std::string result = request["call"] == "Hello" ? R"({"protocol":2})" : result_;
    return R"({"id":)" + std::to_string(request["id"].get<uint64_t>()) + R"(,"code":0,"result":)" + result + "}";
  }

  test_support::TempFolder folder_;
  platform::Descriptor listening_;
  std::mutex mutex_;
  std::string result_ = "{}";
};

// Reads the data as the list of kinds says.
PluginInterface::TModuleErrorCode OnNotification(PluginInterface::ECallbackKind kind, void* data) {
  using PluginInterface::EventPayload;
  EventPayload payload = EventPayload::kNothing;
#define PAYLOAD(number, name, of) \
  if (kind == number) payload = EventPayload::k##of;
  AGENT_EVENTS(PAYLOAD)
#undef PAYLOAD
  if (!data) return 0;
  if (payload == EventPayload::kDictionary) {
    CHECK(Value::Retain(static_cast<PluginInterface::ValueRef>(data)).Is(platform::ValueType::kDictionary));
  } else {
    CHECK(payload != EventPayload::kNothing);
    static_cast<void>(*static_cast<volatile uint32_t*>(data));
  }
  return 0;
}

std::binary_semaphore sLost{0};

void Receive(const std::vector<std::string>& messages) {
  int ends[2];
  CHECK(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0);
  const platform::Descriptor agent(ends[0]);
  const agent_client::AgentConnection connection(platform::Descriptor(ends[1]), plugin_interface::Deliver,
                                                 [] { sLost.release(); });
  for (const std::string& message : messages) platform::SendMessage(agent.Get(), message);
  shutdown(agent.Get(), SHUT_WR);
  sLost.acquire();
}

void Call(PluginInterface::FacadeHandle h) {
  const uint32_t ids[2] = {1, 2};
  uint32_t numbers[2] = {}, more[2] = {}, count = 0, moreCount = 0;
  int32_t state = 0;
  char text[32] = "";
  GetFontsByPostscriptName(h, "Name", ids, 2, numbers, 2, &count);
  CHECK(count <= 2);
  ActivateFonts(h, 2, ids, 0, 2, 1, 1, 2, 2, numbers, more, &count, &moreCount);
  CHECK(count <= 2 && moreCount <= 2);
  GetFontIsActivated(h, 2, ids, numbers);
  GetFontConflicts(h, 2, ids, numbers);
  GetIsOnline(h, &state);
  GetSystemWorkgroupID(h, &count);
  if (GetDefaultLibraryName(h, text, sizeof text) == 0) CHECK(std::memchr(text, 0, sizeof text) != nullptr);
  PluginInterface::ValueRef out = nullptr;
  GetAllWorkgroupsForUser(h, &out, true, false);
  const Value workgroups = Value::Adopt(out);
  Dictionary request = Dictionary::Create();
  request.Set("DatabaseID", "1");
  request.Set("AssignedFamilyID", "1");
  PluginInterface::FontRecordFields fields;
  if (GetFontInfoByID(h, ids, 2, request.Ref(), &fields, &out) == 0) CHECK(Dictionary(Value::Adopt(out)));
  const Array family = Array::Create();
  FindFontsInSameFamilyForActivation(request.Ref(), ids, 2, family.Ref());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static auto* const sAgent = new FakeAgent;  // its thread runs as long as the process
  static const bool sRegistered = (plugin_interface::AddCallback(OnNotification), true);
  CHECK(sRegistered);
  std::istringstream lines{std::string(BytesOf(data, size))};
  std::vector<std::string> messages;
  for (std::string line; std::getline(lines, line);) messages.push_back(line);
  Receive(messages);
  // Only text that is a valid message; anything else would end the connection.
  if (messages.empty() || agent_protocol::IsTooDeep("[" + messages[0])) return 0;
  const Json result = Json::parse(messages[0], nullptr, false);
  if (result.is_discarded()) return 0;
  sAgent->SetResult(result.dump());
  Call(GetPluginFacadeInstance());
  return 0;
}
