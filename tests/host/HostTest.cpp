#include "host/HostTest.h"

#include <filesystem>

#include "host/HostObjects.h"
#include "host/LiveObjects.h"
#include "host/Suites.h"
#include "host/TypeIDs.h"
#include "host/plugins/Recorder.h"
#include "platform/Bundle.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Trace.h"

using namespace host_sdk;
namespace fs = std::filesystem;

namespace {

HostTest* sTest = nullptr;
platform::OrderWindowMethod sOrderWindow = nullptr;

std::string NameOf(const std::string& path) { return path.empty() ? "untitled" : fs::path(path).filename().string(); }

std::string Describe(const host::ActionValue& value) {
  if (const auto* alias = std::get_if<host::AliasData>(&value)) return NameOf(alias->Path());
  if (const auto* number = std::get_if<int32_t>(&value)) return std::to_string(*number);
  if (const auto* object = std::get_if<host::ObjectValue>(&value)) return host::StringOfTypeID(object->objectClass);
  return "?";
}

SPErr RecordEvent(FourCharCode event, PIActionDescriptor descriptor) {
  const std::string name = host::StringOfTypeID(event);
  std::string line = name;
  for (const auto& [key, value] : host::HostObjects::Shared().descriptors.Find(descriptor)->items) {
    line += " " + host::StringOfTypeID(key) + "=" + Describe(value);
  }
  sTest->events.push_back(line + " current=" + sTest->Current());
  return sTest->onEvent ? sTest->onEvent(name) : kNoErr;
}

SPErr RecordMessage(const char* selector, SPMessageData* message) {
  sTest->events.push_back(selector);
  return sTest->onMessage ? sTest->onMessage(selector, message) : kNoErr;
}

void RecordOrder(platform::Window& window, platform::WindowOrdering place, int relativeTo) {
  sTest->events.push_back("order \"" + window.Title() + "\" current=" + sTest->Current());
  if (sTest->onOrder) sTest->onOrder(window);
  sOrderWindow(window, place, relativeTo);
}

void SetHooks(const RecorderHooks& hooks) {
  const platform::BundleRef bundle = platform::Bundle::Create(HostTest::RecorderBundle());
  reinterpret_cast<RecorderSetHooksFunction>(bundle->FunctionForName("RecorderSetHooks"))(hooks);
}

// The fonts of fonts-dejavu-core are active, and no others.
void UseFonts(const test_support::TempFolder& folder) {
  platform::Places places;
  places.fontConfigFile = folder.WriteFontsConf({"/usr/share/fonts/truetype/dejavu"});
  platform::SetPlaces(places);
}

}  // namespace

std::string HostTest::RecorderBundle() { return std::string(PLUGINS_DIR) + "/Recorder.plugin"; }

void HostTest::SetUp() {
  sTest = this;
  UseFonts(configuration_);
  platform::Clock::SetDriven(1000);
  platform::SetProblemSink([](const std::string& line) { sTest->problems.push_back(line); });
  SetHooks({RecordMessage, RecordEvent});
  sOrderWindow = &RecordOrder;
  platform::ExchangeOrderWindowMethod(sOrderWindow);
  ASSERT_EQ(application.Start(RecorderBundle()), "");
  EXPECT_EQ(TakeEvents(), std::vector<std::string>{"Startup"});
}

void HostTest::TearDown() {
  onEvent = nullptr;
  onMessage = nullptr;
  application.Quit();
  EXPECT_EQ(host::LiveObjects().Total(), 0u);
  platform::ExchangeOrderWindowMethod(sOrderWindow);
  SetHooks({});
  platform::SetProblemSink(nullptr);
  platform::Clock::UseSystemTime();
}

std::string HostTest::Sample(const std::string& name, const std::string& as) const {
  std::string path = InFolder(as.empty() ? name : as);
  EXPECT_FALSE(platform::CopyFile(std::string(SOURCE_DIR) + "/samples/" + name, path));
  return path;
}

std::string HostTest::Write(const std::string& name, const std::string& content) const {
  EXPECT_FALSE(platform::ReplaceFile(InFolder(name), content));
  return InFolder(name);
}

int32_t HostTest::Open(const std::string& path) {
  int32_t id = 0;
  EXPECT_EQ(application.Open(path, &id), "");
  return id;
}

std::string HostTest::Current() const {
  const auto& references = host::ActionReferenceSuite();
  PIActionReference reference = nullptr;
  PIActionDescriptor properties = nullptr;
  references.Make(&reference);
  references.PutEnumerated(reference, host::kClassDocument, host::kTypeOrdinal, host::kEnumTarget);
  const SPErr error = host::ActionControlSuite().Get(&properties, reference);
  references.Free(reference);
  if (error != kNoErr) return "none";
  auto& descriptors = host::HostObjects::Shared().descriptors;
  const host::DescriptorData& data = *descriptors.Find(properties);
  const auto* file = data.Get<host::AliasData>(host::kKeyFileReference);
  std::string text = std::to_string(*data.Get<int32_t>(host::kKeyDocumentID)) + " " + NameOf(file ? file->Path() : "");
  if (*data.Get<bool>(host::kKeyIsDirty)) text += "*";
  descriptors.Remove(properties);
  return text;
}
