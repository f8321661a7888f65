// What reaches the plug-in, in which order, and the state of the documents at that moment.
#include <sys/stat.h>

#include <stdexcept>

#include "host/HostTest.h"
#include "host/ModalSession.h"
#include "host/Suites.h"
#include "host/TypeIDs.h"
#include "platform/RunLoop.h"

using namespace host_sdk;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// Plays an event with the descriptor that `fill` fills.
SPErr Play(FourCharCode event, const std::function<void(PIActionDescriptor)>& fill) {
  PIActionDescriptor descriptor = nullptr, result = nullptr;
  host::ActionDescriptorSuite().Make(&descriptor);
  fill(descriptor);
  const SPErr error = host::ActionControlSuite().Play(event, descriptor, kSilentDialogMode, &result);
  host::ActionDescriptorSuite().Free(descriptor);
  return error;
}

SPErr PlayOpen(const std::string& path) {
  return Play(host::kEventOpen, [&](PIActionDescriptor descriptor) {
    Handle alias = nullptr;
    host::AliasSuite().MakeFromPath(path.c_str(), &alias);
    host::ActionDescriptorSuite().PutAlias(descriptor, host::kKeyTarget, alias);
    host::HandleSuite().Dispose(alias);
  });
}

SPErr PlayClose(FourCharCode saving) {
  return Play(host::kEventClose, [&](PIActionDescriptor descriptor) {
    if (saving) host::ActionDescriptorSuite().PutEnumerated(descriptor, host::kKeySaving, host::kTypeYesNo, saving);
  });
}

SPErr PlaySelect(int32_t id) {
  return Play(host::kEventSelect, [&](PIActionDescriptor descriptor) {
    PIActionReference reference = nullptr;
    host::ActionReferenceSuite().Make(&reference);
    host::ActionReferenceSuite().PutIdentifier(reference, host::kClassDocument, static_cast<uint32_t>(id));
    host::ActionDescriptorSuite().PutReference(descriptor, host::kKeyTarget, reference);
    host::ActionReferenceSuite().Free(reference);
  });
}

using EventTest = HostTest;

}  // namespace

TEST_F(EventTest, OpeningOrdersTheWindowBeforeItNotifies) {
  const int32_t id = Open(Sample("poster.psd"));
  EXPECT_THAT(TakeEvents(),
              ElementsAre("order \"Missing Fonts\" current=1 poster.psd", "open null=poster.psd current=1 poster.psd"));
  ASSERT_EQ(application.Windows().size(), 1u);
  EXPECT_TRUE(application.Windows()[0].isVisible);
  EXPECT_EQ(application.Close(id), "");
  EXPECT_THAT(TakeEvents(), ElementsAre("close current=none"));
  EXPECT_THAT(application.Windows(), IsEmpty());
}

TEST_F(EventTest, NoWindowWithoutMissingFonts) {
  Open(Sample("no-text.psd"));
  Open(Sample("leaflet.pdf"));
  int32_t made = 0;
  application.Make(&made);
  application.Edit(made, "DejaVuSans");
  EXPECT_EQ(application.SaveAs(made, InFolder("active.psd")), "");
  application.Close(made);
  Open(InFolder("active.psd"));
  for (const std::string& event : TakeEvents()) EXPECT_THAT(event, testing::Not(HasSubstr("order")));
}

TEST_F(EventTest, SaveNotifiesAroundTheChangeOfTheFile) {
  const std::string path = Sample("poster.psd");
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  const int32_t id = Open(path);
  Open(Sample("no-text.psd"));
  EXPECT_EQ(application.Edit(id, "DejaVuSans-Bold"), "");
  TakeEvents();
  std::vector<bool> isNew;
  onEvent = [&](const std::string&) {
    isNew.push_back(Read(path) != Read(std::string(SOURCE_DIR) + "/samples/poster.psd"));
    return kNoErr;
  };
  EXPECT_EQ(application.Save(id), "");
  EXPECT_THAT(TakeEvents(), ElementsAre("save in=poster.psd documentID=1 current=1 poster.psd*",
                                        "save in=poster.psd documentID=1 current=1 poster.psd"));
  EXPECT_THAT(isNew, ElementsAre(false, true));
  struct stat info;
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0640u);
}

TEST_F(EventTest, NewDocumentGetsItsFileBetweenTheNotifications) {
  int32_t id = 0;
  application.Make(&id);
  application.Edit(id, "DejaVuSans");
  EXPECT_THAT(application.Save(id), HasSubstr("no file yet"));
  EXPECT_EQ(application.SaveAs(id, InFolder("new.psd")), "");
  EXPECT_THAT(TakeEvents(),
              ElementsAre("make new=document current=1 untitled", "save in=new.psd documentID=1 current=1 untitled*",
                          "save in=new.psd documentID=1 current=1 new.psd"));
}

TEST_F(EventTest, QuittingClosesEveryDocumentFirst) {
  Open(Sample("no-text.psd"));
  application.Make(nullptr);
  TakeEvents();
  application.Quit();
  EXPECT_THAT(TakeEvents(), ElementsAre("close current=2 untitled", "close current=none", "Shutdown"));
}

// As the plug-in does: from a timer, the document in front is closed without saving and opened again.
TEST_F(EventTest, CloseAndReopenFromATimerGivesANewID) {
  const std::string path = Sample("no-text.psd");
  const int32_t id = Open(path);
  Open(Sample("leaflet.pdf"));
  TakeEvents();
  platform::RunLoop::Main().AddTimer(platform::RunLoopTimer::After(4, 0,
                                                                   [&](platform::RunLoopTimer&) {
                                                                     EXPECT_EQ(PlaySelect(id), kNoErr);
                                                                     EXPECT_EQ(PlayClose(host::kEnumNo), kNoErr);
                                                                     EXPECT_EQ(PlayOpen(path), kNoErr);
                                                                     EXPECT_EQ(Current(), "3 no-text.psd");
                                                                     EXPECT_THAT(TakeEvents(), IsEmpty())
                                                                         << "nothing re-enters a plug-in";
                                                                   }),
                                     platform::RunLoopMode::kDefault);
  application.Wait(3.5);
  EXPECT_THAT(TakeEvents(), IsEmpty());
  application.Wait(1);
  EXPECT_THAT(TakeEvents(), ElementsAre("close current=3 no-text.psd", "open null=no-text.psd current=3 no-text.psd"));
}

TEST_F(EventTest, EventsPlayedByACommandAreToldWhenItHasReturned) {
  onMessage = [&](const std::string& selector, SPMessageData*) {
    if (selector != "Do It") return kNoErr;
    EXPECT_EQ(PlayOpen(InFolder("no-text.psd")), kNoErr);
    bool hasRun = false;  // the loop, in the command's box
    platform::RunLoop::Main().Post([&] { hasRun = true; });
    EXPECT_TRUE(host::ModalSession("A box").RunUntil([&] { return hasRun; }, 10));
    EXPECT_THAT(TakeEvents(), ElementsAre("Do It", "order \"A box\" current=1 no-text.psd"));
    return kNoErr;
  };
  Sample("no-text.psd");
  EXPECT_EQ(application.DoIt(1, nullptr), "");
  EXPECT_THAT(TakeEvents(), ElementsAre("open null=no-text.psd current=1 no-text.psd"));
}

TEST_F(EventTest, PlayedEventsThatCannotBeDoneLeaveTheDocuments) {
  const int32_t id = Open(Sample("no-text.psd"));
  application.Edit(id, "DejaVuSans");
  const auto nothing = [](PIActionDescriptor) {};
  struct Row {
    const char* what;
    SPErr error;
    SPErr expected;
  };
  const Row rows[] = {
      {"closing a changed document without a word on saving", PlayClose(0), kBadParameters},
      {"opening a missing file", PlayOpen(InFolder("missing.psd")), kNoSuchObject},
      {"opening nothing", Play(host::kEventOpen, nothing), kBadParameters},
      {"selecting nothing", Play(host::kEventSelect, nothing), kBadParameters},
      {"selecting a document that is not open", PlaySelect(99), kNoSuchObject},
      {"an event that the host has not", Play(host::TypeIDOfString("replaceSubstitutes"), nothing), kNoSuchObject},
  };
  for (const Row& row : rows) EXPECT_EQ(row.error, row.expected) << row.what;
  EXPECT_EQ(Current(), "1 no-text.psd*");
  EXPECT_THAT(problems, ElementsAre(InFolder("missing.psd") + ": No such file or directory"));
  EXPECT_EQ(PlayClose(host::kEnumYes), kNoErr);
  EXPECT_EQ(Current(), "none");
  EXPECT_EQ(PlayClose(host::kEnumNo), kNoSuchObject);
  Open(InFolder("no-text.psd"));
  EXPECT_THAT(application.Documents()[0].fontNames, ElementsAre("DejaVuSans"));
}

TEST_F(EventTest, WhatThePluginThrowsIsReportedAndSurvived) {
  const std::function<void()> throwers[] = {[] { throw 7; }, [] { throw 7L; }, [] { throw 7u; },
                                            [] { throw std::runtime_error("7"); }, [] { throw 'x'; }};
  const std::string path = Sample("poster.psd");
  for (const auto& thrower : throwers) {
    problems.clear();
    onEvent = [&](const std::string&) { return thrower(), kNoErr; };
    onOrder = [&](platform::Window&) { thrower(); };
    const int32_t id = Open(path);
    EXPECT_EQ(application.Windows().size(), 1u) << "the user sees what the host would have shown";
    EXPECT_EQ(application.Save(id), "");
    EXPECT_EQ(application.Close(id), "");
    EXPECT_EQ(problems.size(), 5u);
    EXPECT_THAT(problems[0], HasSubstr("\"Missing Fonts\""));
    EXPECT_THAT(problems[1], HasSubstr("the event \"open\""));
    EXPECT_THAT(problems[1], testing::AnyOf(HasSubstr("7"), HasSubstr("unknown type")));
  }
}

TEST_F(EventTest, DocumentClosedFromWithinItsNotificationIsGone) {
  const std::string path = Sample("poster.psd");
  for (const std::string when : {"open", "save"}) {
    onEvent = [&](const std::string& event) { return event == when ? PlayClose(host::kEnumNo) : kNoErr; };
    const int32_t id = Open(path);
    if (when == "save") {
      EXPECT_EQ(application.Save(id), "");
    }
    EXPECT_EQ(Current(), "none");
  }
  EXPECT_THAT(problems, IsEmpty());
}
