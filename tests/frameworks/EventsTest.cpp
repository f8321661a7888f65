// The event service: five exported functions.
#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "frameworks/PlugPlug/include/PlugPlugEvents.h"
#include "platform/Bundle.h"

namespace {

using csxs::event::Event;
using csxs::event::kEventErrorCode_InvalidParam;
using csxs::event::kEventErrorCode_OperationFailed;
using csxs::event::kEventErrorCode_Success;
using testing::ElementsAre;

constexpr const char* kType = "com.example.Type";

// Records its name and the event's data, and runs the test's function.
struct Listener {
  std::string name;
  std::vector<std::string>* heard = nullptr;
  std::function<void()> then;

  static void Hear(const Event* event, void* context) {
    auto* self = static_cast<Listener*>(context);
    self->heard->push_back(self->name + ":" + (event->data ? event->data : "null"));
    if (self->then) self->then();
  }
};

class EventsTest : public testing::Test {
 protected:
  EventsTest() {
    const platform::BundleRef bundle = platform::Bundle::Create(APP_DIR "/host/Frameworks/PlugPlug.framework");
    EXPECT_TRUE(bundle);
#define RESOLVE(name, result, parameters)                                        \
  name = reinterpret_cast<result(*) parameters>(bundle->FunctionForName(#name)); \
  EXPECT_NE(name, nullptr) << #name;
    PLUG_PLUG_FUNCTIONS(RESOLVE)
#undef RESOLVE
  }
  ~EventsTest() override {
    for (Listener* listener : {&a_, &b_, &c_}) Remove(*listener);
  }

  csxs::event::EventErrorCode Add(Listener& listener, const char* type = kType) {
    return PlugPlugAddEventListener(type, &Listener::Hear, &listener);
  }
  csxs::event::EventErrorCode Remove(Listener& listener, const char* type = kType) {
    return PlugPlugRemoveEventListener(type, &Listener::Hear, &listener);
  }
  csxs::event::EventErrorCode Send(const char* data, const char* type = kType, const char* extension = nullptr) {
    const Event event{type, 1, "test", extension, data};
    return PlugPlugDispatchEvent(&event);
  }

#define DECLARE_FUNCTION(name, result, parameters) result(*name) parameters = nullptr;
  PLUG_PLUG_FUNCTIONS(DECLARE_FUNCTION)
#undef DECLARE_FUNCTION

  std::vector<std::string> heard_;
  Listener a_{"a", &heard_, nullptr}, b_{"b", &heard_, nullptr}, c_{"c", &heard_, nullptr};
};

TEST_F(EventsTest, ListenersHearTheirTypeInTheOrderOfAdding) {
  EXPECT_EQ(Add(b_), kEventErrorCode_Success);
  EXPECT_EQ(Add(a_), kEventErrorCode_Success);
  EXPECT_EQ(Add(b_), kEventErrorCode_Success) << "once is enough";
  EXPECT_EQ(Add(c_, "com.example.Other"), kEventErrorCode_Success);
  EXPECT_EQ(Send("1"), kEventErrorCode_Success);
  EXPECT_EQ(Send("2", "com.example.Other"), kEventErrorCode_Success);
  EXPECT_EQ(Send(nullptr), kEventErrorCode_Success);
  EXPECT_THAT(heard_, ElementsAre("b:1", "a:1", "c:2", "b:null", "a:null"));
  EXPECT_EQ(Remove(b_), kEventErrorCode_Success);
  EXPECT_EQ(Send("3"), kEventErrorCode_Success);
  EXPECT_EQ(heard_.back(), "a:3");
  EXPECT_EQ(Remove(c_, "com.example.Other"), kEventErrorCode_Success);
  EXPECT_EQ(Send("lost", "com.example.Other"), kEventErrorCode_Success) << "nobody listens";
}

TEST_F(EventsTest, NullAndUnknownInputHasItsCode) {
  for (const char* nothing : {static_cast<const char*>(nullptr), ""}) {
    EXPECT_EQ(Add(a_, nothing), kEventErrorCode_InvalidParam);
    EXPECT_EQ(Remove(a_, nothing), kEventErrorCode_InvalidParam);
    EXPECT_EQ(Send("1", nothing), kEventErrorCode_InvalidParam);
    EXPECT_EQ(PlugPlugLoadExtension(nothing), kEventErrorCode_InvalidParam);
    EXPECT_EQ(PlugPlugUnloadExtension(nothing), kEventErrorCode_InvalidParam);
  }
  EXPECT_EQ(PlugPlugAddEventListener(kType, nullptr, &a_), kEventErrorCode_InvalidParam);
  EXPECT_EQ(PlugPlugRemoveEventListener(kType, nullptr, &a_), kEventErrorCode_InvalidParam);
  EXPECT_EQ(PlugPlugDispatchEvent(nullptr), kEventErrorCode_InvalidParam);
  EXPECT_EQ(Remove(a_), kEventErrorCode_OperationFailed);
  EXPECT_EQ(Add(a_), kEventErrorCode_Success);
  EXPECT_EQ(Remove(a_, "com.example.Other"), kEventErrorCode_OperationFailed);
  EXPECT_EQ(PlugPlugUnloadExtension("com.example.unknown"), kEventErrorCode_OperationFailed);
  EXPECT_TRUE(heard_.empty());
}

TEST_F(EventsTest, AnEventForAnExtensionNeedsItLoaded) {
  Add(a_);
  EXPECT_EQ(Send("1", kType, "com.example.panel"), kEventErrorCode_OperationFailed);
  EXPECT_EQ(PlugPlugLoadExtension("com.example.panel"), kEventErrorCode_Success);
  EXPECT_EQ(PlugPlugLoadExtension("com.example.panel"), kEventErrorCode_Success);
  EXPECT_EQ(Send("2", kType, "com.example.panel"), kEventErrorCode_Success);
  EXPECT_EQ(PlugPlugUnloadExtension("com.example.panel"), kEventErrorCode_Success);
  EXPECT_EQ(Send("3", kType, "com.example.panel"), kEventErrorCode_OperationFailed);
  EXPECT_THAT(heard_, ElementsAre("a:2"));
}

TEST_F(EventsTest, AListenerMayChangeTheListenersAndSendAgain) {
  a_.then = [&] {
    if (heard_.size() > 1) return;
    Remove(a_);  // itself
    Remove(b_);  // the next listener
    Add(c_);     // gets the next event, and the one sent from here
    Send("inner");
  };
  Add(a_);
  Add(b_);
  EXPECT_EQ(Send("outer"), kEventErrorCode_Success);
  EXPECT_THAT(heard_, ElementsAre("a:outer", "c:inner"));
  EXPECT_EQ(Send("next"), kEventErrorCode_Success);
  EXPECT_THAT(heard_, ElementsAre("a:outer", "c:inner", "c:next"));
}

TEST_F(EventsTest, EventsThatBegetEventsWithoutEndAreStopped) {
  int failures = 0;
  a_.then = [&] { failures += Send("again") == kEventErrorCode_Success ? 0 : 1; };
  Add(a_);
  EXPECT_EQ(Send("first"), kEventErrorCode_Success);
  EXPECT_EQ(failures, 1);
  a_.then = nullptr;
  EXPECT_EQ(Send("after"), kEventErrorCode_Success) << "and the service goes on";
}

}  // namespace
