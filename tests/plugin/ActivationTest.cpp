// From the font names of a document to active fonts, with and without dialogs.
#include "Readers/CommonFunctionality.h"
#include "Tracking/FontActivationTracker.h"
#include "plugin/HostFixture.h"

using fakes::ArrayOf;
using fakes::Named;
using fakes::NamesOf;
using platform::Array;

namespace {

class ActivationFixture : public HostFixture {
 protected:
  ActivationFixture() {
    agent.Add({.id = 1, .postScriptName = "Active", .ownState = 4});
    agent.Add({.id = 2, .postScriptName = "Idle"});
    agent.Add({.id = 3, .postScriptName = "Failing", .fails = true});
    agent.Add({.id = 4, .postScriptName = "Refused", .isRefused = true});
    agent.Add({.id = 5, .postScriptName = "Double"});
    agent.Add({.id = 6, .postScriptName = "Double", .foundry = "Other"});
    agent.Add({.id = 7, .postScriptName = "MyriadPro-Bold"});
    agent.Add({.id = 8, .postScriptName = "MyriadPro-Bold", .foundry = "Other"});
    ui->preferences["PickBestMatch"] = 1;
  }
  // Resets everything as if no document had been opened.
  void StartAfresh() {
    AllTrackedDocuments::ResetForTesting();
    for (auto& [id, font] : agent.fonts) font.isHeld = false;
    MakeReady();
  }
  OneTrackedDocument* Track(const std::string& path) {
    AllTrackedDocuments::AddDocument(nullptr, path);
    OneTrackedDocument* document = AllTrackedDocuments::FindTrackedDocumentByPath(path);
    document->SetIdentifier("id of " + path);
    return document;
  }
};
using Activation = ActivationFixture;

struct ActivationCase {
  const char *rule, *fonts;
  bool pickBestMatch;
  int activated;
  const char* shown;
  const char* unresolved;  // names; null if nothing is cached
  bool mayExport;
};

constexpr const char* kMissing = "box SomeLayersMissingFontsMessage";
const ActivationCase kActivationCases[] = {
    {"active already is no activation", "Active Idle", true, 1, "", "", true},
    {"what needs nothing keeps nothing", "", true, 0, "", nullptr, false},
    {"the database lacks one", "Idle Absent", true, 1, kMissing, "Absent", true},
    {"and has none", "Absent", true, 0, "", "Absent", false},
    {"a font that fails is missing", "Active Idle Failing", true, 1, kMissing, "", true},
    {"a refused one is shown, nothing kept", "Idle Refused", true, 0, "restricted Refused", nullptr, true},
    {"one of several is picked", "Double", true, 1, "", "", true},
    {"or the user is asked", "Double", false, 0, "resolve Double", "Double", false},
    {"and told of nothing else", "Idle Absent", false, 1, "resolve Absent", "Absent", true},
    {"without a problem nothing is kept then", "Idle", false, 1, "", nullptr, true},
    {"the host's own font is no problem", "MyriadPro-Bold", false, 0, "", nullptr, false},
    {"pseudo fonts are none", "AdobeInvisFont PhotoshopKinsokuHard Idle", true, 1, "", "", true},
};

TEST_F(Activation, OfADocumentFollowsTheTable) {
  for (const ActivationCase& row : kActivationCases) {
    SCOPED_TRACE(row.rule);
    ui->preferences["PickBestMatch"] = row.pickBestMatch;
    StartAfresh();
    const std::string path = WriteDocument("a.psd", Words(row.fonts));
    OneTrackedDocument* document = Track(path);
    int activated = -1;
    EXPECT_EQ(ActivateFontsForDocument(true, activated, path, document), -1);
    EXPECT_EQ(activated, row.activated);
    EXPECT_EQ(Shown(), row.shown);
    const Array unresolved = document->GetUnresolvedFonts();
    EXPECT_EQ(static_cast<bool>(unresolved), row.unresolved != nullptr);
    EXPECT_EQ(NamesOf(unresolved), row.unresolved ? row.unresolved : "");
    EXPECT_EQ(document->GetCanExportFontsForDocument(), row.mayExport);
    FontManagerInterface::OnHostAppShuttingDown(false);
    MarquineGlobals::CleanUpOnShutdown();
    MarquineGlobals::SetSharedVPFInterfaceForTesting(ui->interface.get());
  }
}

TEST_F(Activation, TakesWhatTheUserChose) {
  ui->onResolve = [](Array problems) {
    platform::Dictionary font(problems.At(0));
    font.Set("MatchedFont", font.GetArray("PossibleReplacements").At(1));
  };
  ui->preferences["PickBestMatch"] = 0;
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Double"});
  int activated = 0;
  OneTrackedDocument* document = Track(path);
  ActivateFontsForDocument(true, activated, path, document);
  EXPECT_EQ(activated, 1);
  EXPECT_FALSE(document->GetUnresolvedFonts());
}

TEST_F(Activation, PrefersTheFontOfTheSlugUnlessIdentificationIsOff) {
  for (const bool identifies : {true, false}) {
    agent.Font(5).checksum = "111", agent.Font(6).checksum = "222";
    ui->preferences["EnableGlyphsure"] = identifies;
    StartAfresh();
    const std::string path = Sample("no-text.psd");
    const platform::Dictionary slug = fakes::AgentAnswers::MakeRecord(agent.Font(6));
    ASSERT_EQ(WriteXMPGlyphsureSlugToFile(path, ArrayOf({slug})), CoreErrorCodes::kSuccess);
    // The file names no fonts, so all fonts of its slug are used.
    int activated = 0;
    ActivateFontsForDocument(true, activated, path, Track(path));
    EXPECT_EQ(Held(), identifies ? "6" : "");
  }
}

TEST_F(Activation, OfAnOpenDocumentTellsTheHostWhetherItMayBeExported) {
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Idle"});
  OneTrackedDocument* document = Track(path);
  int activated = 0;
  ActivateFontsForDocument(true, activated, path, document);
  EXPECT_EQ(host.TakeHeard(), std::vector<std::string>());
  ActivateFontsForDocument(false, activated, path, document);
  EXPECT_EQ(host.TakeHeard(), std::vector<std::string>{"SetCanExportFontsForDocument 1"});
}

TEST_F(Activation, InSilenceShowsNothing) {
  const Array none, active = ArrayOf({Named("Active")}), idle = ArrayOf({Named("Idle")});
  const struct {
    const char *rule, *file, *fonts;
    Array extra;
    TModuleErrorCode code;
    int activated;
    const char *unresolved, *refused;
  } kRows[] = {
      {"names from the bytes", "a.psd", "Idle Absent", none, 0, 1, "Absent", ""},
      {"a refused font", "a.psd", "Idle Refused", none, 0x12000000, 0, "", "Refused"},
      {"fonts of the caller's", "a.psd", "Active", idle, 0, 1, "", ""},
      {"a PDF is not scanned where the caller has fonts", "a.pdf", "Idle", active, 0, 0, "", ""},
      {"and is where it has none", "a.pdf", "Idle", none, 0, 1, "", ""},
      {"a file that has gone", nullptr, "", none, 0x7000000, 0, "", ""},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.rule);
    StartAfresh();
    const std::string path = row.file ? WriteDocument(row.file, Words(row.fonts)) : folder / "gone.psd";
    OneTrackedDocument* document = Track(path);
    int activated = -1;
    EXPECT_EQ(CommonFunctionality::ActivateFontsForDocumentSilently(true, true, activated, path, row.extra, document),
              row.code);
    EXPECT_EQ(activated, row.activated);
    EXPECT_EQ(NamesOf(document->GetUnresolvedFonts()), row.unresolved);
    EXPECT_EQ(NamesOf(document->GetNoncompliantFonts()), row.refused);
    EXPECT_EQ(Shown(), "");
    MarquineGlobals::GetSharedFontActivationTracker()->CloseAllFonts(true, false);
  }
}

TEST_F(Activation, DataForASlugIsThatOfTheActiveFontsThatTheDatabaseKnows) {
  MakeReady();
  const struct {
    const char *fonts, *names;
    bool allFound;
  } kRows[] = {{"Active AdobeInvisFont", "Active", true}, {"Active Idle Absent", "Active", false}, {"", "", true}};
  bool allFound = false;
  for (const auto& row : kRows) {
    Array fonts;
    EXPECT_EQ(CreateGlyphsureDataForDocument(WriteDocument("a.psd", Words(row.fonts)), fonts, -2, false, allFound), 0);
    EXPECT_EQ(NamesOf(fonts), row.names);
    EXPECT_EQ(allFound, row.allFound);
  }
  const Array closed = Array::Create();
  EXPECT_EQ(CommonFunctionality::CreateGlyphsureDataForClosedDocument(Sample("brochure.psd"), closed, -2, allFound),
            0u);
  EXPECT_FALSE(allFound);
  EXPECT_EQ(CommonFunctionality::CreateGlyphsureDataForClosedDocument("", Array(), -2, allFound), 0x6000000u);
}

}  // namespace
