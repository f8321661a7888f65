// Well-formed and malformed requests, and their replies.
#include "agent/server/Dispatcher.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "agent/include/AgentProtocol.h"
#include "agent/store/Database.h"

namespace test_calls {

struct Sum {
  struct Arguments {
    agent_protocol::Numbers list;
    AGENT_FIELDS(list)
  };
  struct Result {
    uint32_t sum = 0;
    AGENT_FIELDS(sum)
  };
};

struct Text {
  struct Part {
    std::string text;
    agent_protocol::Record record;
    AGENT_FIELDS(text, record)
  };
  struct Arguments {
    bool wanted = false;
    std::vector<Part> parts;
    AGENT_FIELDS(wanted, parts)
  };
  using Result = Arguments;
};

struct Full {
  struct Arguments : agent_protocol::calls::Nothing {};
  using Result = agent_protocol::calls::Nothing;
};

struct Lost {
  struct Arguments : agent_protocol::calls::Nothing {};
  using Result = agent_protocol::calls::Nothing;
};

struct Fonts {
  struct Arguments : agent_protocol::calls::Nothing {};
  using Result = agent_protocol::calls::Nothing;
};

}  // namespace test_calls

namespace agent_protocol {
#define NAME(name)                              \
  template <>                                   \
  struct CallName<test_calls::name> {           \
    static constexpr const char* kText = #name; \
  };
NAME(Sum)
NAME(Text)
NAME(Full)
NAME(Lost)
NAME(Fonts)
#undef NAME
}  // namespace agent_protocol

namespace {

using namespace agent;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class DispatcherTest : public testing::Test {
 protected:
  static constexpr size_t kHeldBytes = 4096;  // of all clients, and two requests of each

  DispatcherTest() {
    using namespace test_calls;
    dispatcher_.Add<Sum>(Needs::kNothing, [](ClientID, const Sum::Arguments& arguments) -> Answer<Sum> {
      uint32_t sum = 0;
      for (const uint32_t number : arguments.list) sum += number;
      return Sum::Result{sum};
    });
    dispatcher_.Add<Text>(Needs::kNothing,
                          [](ClientID, const Text::Arguments& arguments) -> Answer<Text> { return arguments; });
    dispatcher_.Add<Full>(Needs::kNothing, [](ClientID, const Full::Arguments&) -> Answer<Full> {
      throw StoreError("the disk is full", 13);
    });
    dispatcher_.Add<Lost>(Needs::kNothing, [](ClientID, const Lost::Arguments&) -> Answer<Lost> {
      throw std::filesystem::filesystem_error("no such folder", std::make_error_code(std::errc::io_error));
    });
    dispatcher_.Add<Fonts>(Needs::kFonts,
                           [](ClientID, const Fonts::Arguments&) -> Answer<Fonts> { return calls::Nothing(); });
  }

  std::vector<std::string> sent_;
  std::vector<ClientID> breaches_;
  std::vector<std::string> reports_;
  Dispatcher dispatcher_{{[this](ClientID, const std::string& message) { sent_.push_back(message); },
                          [this](ClientID client) { breaches_.push_back(client); },
                          [this](const std::string& line) { reports_.push_back(line); }},
                         {2, kHeldBytes}};
};

struct RequestRow {
  const char* request;
  const char* reply;  // null if the client is to be dropped
};

constexpr const char* kBadArgument = R"({"code":67108864,"id":1,"result":{}})";

const RequestRow kRequests[] = {
    {R"({"id":1,"call":"Sum","arguments":{"list":[1,2,3]}})", R"({"code":0,"id":1,"result":{"sum":6}})"},
    {R"({"id":1,"call":"Sum","arguments":{"list":[]}})", R"({"code":0,"id":1,"result":{"sum":0}})"},
    // A pseudo ID is sent as its 32 bits, signed or unsigned. Unknown members are ignored.
    {R"({"id":1,"call":"Sum","arguments":{"list":[-2],"more":null}})",
     R"({"code":0,"id":1,"result":{"sum":4294967294}})"},
    {R"({"id":1,"call":"Sum","arguments":{"list":[4294967295]}})", R"({"code":0,"id":1,"result":{"sum":4294967295}})"},
    {R"({"id":1,"call":"Text","arguments":{"wanted":true,"parts":[{"text":"\u00e4","record":{"a":"b"}}]}})",
     "{\"code\":0,\"id\":1,\"result\":{\"parts\":[{\"record\":{\"a\":\"b\"},\"text\":\"\xC3\xA4\"}],\"wanted\":true}}"},
    {R"({"id":1,"call":"Text","arguments":{"wanted":true,"parts":[{"text":"","record":{"a":1}}]}})", kBadArgument},
    {R"({"id":1,"call":"Text","arguments":{"wanted":true,"parts":[{"text":""}]}})", kBadArgument},
    {R"({"id":1,"call":"Sum","arguments":{"list":[4294967296]}})", kBadArgument},
    {R"({"id":1,"call":"Sum","arguments":{"list":[-2147483649]}})", kBadArgument},
    {R"({"id":1,"call":"Sum","arguments":{"list":["1"]}})", kBadArgument},
    {R"({"id":1,"call":"Sum","arguments":{}})", kBadArgument},
    {R"({"id":1,"call":"Text","arguments":{"wanted":1,"parts":[]}})", kBadArgument},
    {R"({"id":1,"call":"Text","arguments":{"wanted":true,"parts":[null]}})", kBadArgument},
    {R"({"id":1,"call":"Full"})", R"({"code":218103808,"id":1,"result":{}})"},
    {R"({"id":1,"call":"Lost"})", R"({"code":352321536,"id":1,"result":{}})"},
    {R"({"id":1,"call":"Nobody"})", R"({"code":134217728,"id":1,"result":{}})"},
    {R"({"id":-1,"call":"Sum"})", nullptr},
    {R"({"call":"Sum"})", nullptr},
    {R"({"id":1})", nullptr},
    {R"({"id":1,"call":7})", nullptr},
    {R"({"id":1,"call":"Sum","arguments":[]})", nullptr},
    {R"({"id":1,"call":"Sum")", nullptr},
    {"", nullptr},
};

TEST_F(DispatcherTest, AnswersRequestsAndRefusesWhatIsNone) {
  for (const RequestRow& row : kRequests) {
    SCOPED_TRACE(row.request);
    sent_.clear();
    breaches_.clear();
    dispatcher_.OnMessage(5, row.request);
    if (row.reply) {
      EXPECT_THAT(sent_, ElementsAre(row.reply));
      EXPECT_THAT(breaches_, IsEmpty());
    } else {
      EXPECT_THAT(sent_, IsEmpty());
      EXPECT_THAT(breaches_, ElementsAre(5));
    }
  }
}

TEST_F(DispatcherTest, SurvivesAMessageOfNothingButBrackets) {
  dispatcher_.OnMessage(5, std::string(1 << 20, '['));
  EXPECT_THAT(breaches_, ElementsAre(5));
  const auto nested = [](size_t depth) {
    return R"({"id":1,"call":"Sum","arguments":{"list":)" + std::string(depth, '[') + std::string(depth, ']') + "}}";
  };
  dispatcher_.OnMessage(6, nested(300));
  EXPECT_THAT(breaches_, ElementsAre(5, 6));
  dispatcher_.OnMessage(7, nested(100));
  EXPECT_THAT(sent_, ElementsAre(kBadArgument));
}

// The cost of a client is limited, for each request and for all waiting ones.
TEST_F(DispatcherTest, RefusesWhatWouldCostTooMuch) {
  const auto sum = [](size_t count) {
    return Json{{"id", 1}, {"call", "Sum"}, {"arguments", {{"list", std::vector<int>(count, 0)}}}}.dump();
  };
  dispatcher_.OnMessage(1, sum(agent_protocol::kMostNumbers));
  dispatcher_.OnMessage(1, sum(agent_protocol::kMostNumbers + 1));
  EXPECT_THAT(sent_, ElementsAre(R"({"code":0,"id":1,"result":{"sum":0}})", kBadArgument));
  sent_.clear();
  const std::string waiting = R"({"id":1,"call":"Fonts"})";
  for (const ClientID client : {1, 1, 1, 2, 3}) dispatcher_.OnMessage(client, waiting);
  EXPECT_THAT(sent_, ElementsAre(R"({"code":285212672,"id":1,"result":{}})")) << "the third of one client";
  dispatcher_.OnMessage(4, waiting + std::string(kHeldBytes, ' '));
  EXPECT_THAT(sent_, SizeIs(2));
  dispatcher_.Release();
  EXPECT_THAT(sent_, SizeIs(2 + 4));
}

// "Not found" must not mean "not yet".
TEST_F(DispatcherTest, CallsThatNeedFontsWaitForTheFirstScan) {
  dispatcher_.OnMessage(1, R"({"id":1,"call":"Fonts"})");
  dispatcher_.OnMessage(2, R"({"id":2,"call":"Fonts"})");
  dispatcher_.OnMessage(3, R"({"id":3,"call":"Fonts"})");
  dispatcher_.OnMessage(1, R"({"id":4,"call":"Sum","arguments":{"list":[]}})");
  EXPECT_THAT(sent_, ElementsAre(testing::HasSubstr("\"id\":4")));
  dispatcher_.OnGone(2);
  dispatcher_.Release();
  EXPECT_THAT(sent_, ElementsAre(testing::HasSubstr("\"id\":4"), testing::HasSubstr("\"id\":1"),
                                 testing::HasSubstr("\"id\":3")));
  dispatcher_.OnMessage(1, R"({"id":5,"call":"Fonts"})");
  EXPECT_EQ(sent_.size(), 4u);
}

}  // namespace
