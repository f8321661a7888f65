// The list of documents and its lookups.
#include "Tracking/FontActivationTracker.h"
#include "plugin/HostFixture.h"

using fakes::ArrayOf;
using fakes::Named;

namespace {

class TrackedDocuments : public HostFixture {
 protected:
  static OneTrackedDocument* Add(const std::string& identifier, const std::string& path, long handle) {
    const auto document = std::make_shared<OneTrackedDocument>();
    document->SetIdentifier(identifier);
    document->SetDocumentHandle(handle);
    AllTrackedDocuments::AddDocument(document, path);
    return document.get();
  }
  // Opens the agent's one font for documents with these identifiers.
  void OpenFor(const Lines& identifiers) {
    agent.Add({.id = 1, .postScriptName = "One"});
    MakeReady();
    ui->preferences["CloseFontsOnDocClose"] = 1;
    platform::Dictionary font = Named("One");
    font.Set("MatchedFont", fakes::AgentAnswers::MakeRecord(agent.Font(1)));
    FontActivationTracker& tracker = *MarquineGlobals::GetSharedFontActivationTracker();
    for (const std::string& identifier : identifiers) {
      tracker.OpenFontsForIdentifier(ArrayOf({font}), identifier, false, platform::Array(), platform::Array());
    }
  }
};

TEST_F(TrackedDocuments, AreFoundByPathHandleAndIdentifier) {
  OneTrackedDocument* first = Add("id-1", "/a.psd", 7);
  OneTrackedDocument* untitled = Add("id-2", "", 0);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByPath("/a.psd"), first);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByPath("/A.psd"), nullptr);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByPath(""), untitled);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByIdentifier("id-2"), untitled);
  EXPECT_EQ(AllTrackedDocuments::GetCurrentDocument(), nullptr);
  AllTrackedDocuments::SetCurrentDocument("id-1");
  EXPECT_EQ(AllTrackedDocuments::GetCurrentDocument(), first);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByHandle(7), first);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByHandle(0), untitled);
  trace.clear();
  untitled->SetDocumentHandle(8);
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByHandle(0), nullptr);
  EXPECT_TRUE(trace.empty());
  EXPECT_EQ(AllTrackedDocuments::FindTrackedDocumentByHandle(9), nullptr);
  EXPECT_TRUE(Traced("WARNING: FindTrackedDocumentByHandle() could not find document 0x00000009"));
}

TEST_F(TrackedDocuments, APathIsTrackedOnce) {
  Add("id-1", "", 1);
  const auto second = std::make_shared<OneTrackedDocument>();
  second->SetDocumentFilePath("/own.psd");
  AllTrackedDocuments::AddDocument(second, "");
  EXPECT_EQ(second->GetDocumentFilePath(), "/own.psd");
  AllTrackedDocuments::AddDocument(nullptr, "/new.psd");
  EXPECT_EQ(Tracked(), "- 1, new.psd 0");
}

TEST_F(TrackedDocuments, TheMostRecentIsTheFirstWithTheGreatestOpenTime) {
  for (const char* path : {"/0.psd", "/1.psd", "/2.psd", "/3.psd"}) {
    platform::Clock::SetDriven(path[1] < '2' ? kNow : kNow + 1);
    OneTrackedDocument* added = Add(path, path, 1);
    if (path[1] > '0') added->SetTimeOpenEventWasHandled();
    const OneTrackedDocument* latest = AllTrackedDocuments::GetMostRecentlyOpenedDocument();
    EXPECT_EQ(latest ? latest->GetIdentifier() : "", path[1] == '0' ? "" : path[1] == '3' ? "/2.psd" : path);
  }
}

TEST_F(TrackedDocuments, UnresolvedFontsAreMissingOnlyWithoutReplacements) {
  OneTrackedDocument document;
  platform::Dictionary replaceable = Named("Replaceable");
  replaceable.Set("PossibleReplacements", ArrayOf({Named("Other")}));
  const struct {
    platform::Array unresolved;
    bool hasMissing;
  } kRows[] = {{ArrayOf({replaceable}), false}, {ArrayOf({replaceable, Named("Missing")}), true}, {{}, false}};
  for (const auto& row : kRows) {
    document.SetUnresolvedFonts(row.unresolved);
    document.SetUnresolvedFonts(document.GetUnresolvedFonts());
    EXPECT_EQ(document.GetUnresolvedFonts(), row.unresolved);
    EXPECT_EQ(document.GetHasMissingFonts(), row.hasMissing);
  }
}

TEST_F(TrackedDocuments, RemovingClosesTheFontsOfThatDocumentAlone) {
  OneTrackedDocument *first = Add("id-1", "/1.psd", 1), *second = Add("id-2", "/2.psd", 2);
  OpenFor({"id-1", "id-2"});
  const auto* list = &AllTrackedDocuments::GetDocumentList();
  AllTrackedDocuments::RemoveClosedDocument(first);
  EXPECT_EQ(Tracked(), "2.psd 2");
  EXPECT_EQ(Held(), "1");
  AllTrackedDocuments::RemoveClosedDocument(second);
  EXPECT_EQ(Held(), "");
  EXPECT_EQ(&AllTrackedDocuments::GetDocumentList(), list);
  EXPECT_TRUE(list->empty());
}

TEST_F(TrackedDocuments, AnExceptionLeavesTheRecordForALaterClose) {
  OneTrackedDocument* document = Add("id-1", "/1.psd", 1);
  OpenFor({"id-1"});
  agent.onCall = [](fakes::AgentFunction) { throw std::runtime_error("the agent's library failed"); };
  AllTrackedDocuments::RemoveClosedDocument(document);
  agent.onCall = nullptr;
  EXPECT_TRUE(Traced("Exception thrown in RemoveClosedDocument()"));
  EXPECT_EQ(Tracked(), "1.psd 1");
}

}  // namespace
