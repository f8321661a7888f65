// From the font names of a document to fonts that are active, with and without dialogs.
#include "Readers/CommonFunctionality.h"
#include "Tracking/FontActivationTracker.h"
#include "plugin/HostFixture.h"

using fakes::ArrayOf;
using fakes::Named;
using fakes::NamesOf;
using platform::Array;

namespace {

using Lines = std::vector<std::string>;

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
  const char* rule;
  Lines fonts;
  bool pickBestMatch;
  int activated;
  Lines shown;
  const char* unresolved;  // names; null: nothing is kept
  bool mayExport;
};

const ActivationCase kActivationCases[] = {
    {"what is active already is no activation", {"Active", "Idle"}, true, 1, {}, "", true},
    {"a document that needs nothing keeps nothing", {}, true, 0, {}, nullptr, false},
    {"what the database lacks is missing",
     {"Idle", "Absent"},
     true,
     1,
     {"box SomeLayersMissingFontsMessage"},
     "Absent",
     true},
    {"nothing but missing fonts", {"Absent"}, true, 0, {}, "Absent", false},
    {"a font that fails counts as missing",
     {"Active", "Idle", "Failing"},
     true,
     1,
     {"box SomeLayersMissingFontsMessage"},
     "",
     true},
    {"a refused font is shown, and nothing is kept",
     {"Idle", "Refused"},
     true,
     0,
     {"restricted Refused"},
     nullptr,
     true},
    {"one of several is picked", {"Double"}, true, 1, {}, "", true},
    {"or the user is asked", {"Double"}, false, 0, {"resolve Double"}, "Double", false},
    {"and told of nothing else", {"Idle", "Absent"}, false, 1, {"resolve Absent"}, "Absent", true},
    {"without a problem nothing is kept then", {"Idle"}, false, 1, {}, nullptr, true},
    {"the host's own font is no problem", {"MyriadPro-Bold"}, false, 0, {}, nullptr, false},
    {"pseudo fonts are none", {"AdobeInvisFont", "PhotoshopKinsokuHard", "Idle"}, true, 1, {}, "", true},
};

TEST_F(Activation, OfADocumentFollowsTheTable) {
  for (const ActivationCase& row : kActivationCases) {
    AllTrackedDocuments::ResetForTesting();
    for (auto& [id, font] : agent.fonts) font.isHeld = false;
    ui->preferences["PickBestMatch"] = row.pickBestMatch;
    MakeReady();
    const std::string path = WriteDocument("a.psd", row.fonts);
    OneTrackedDocument* document = Track(path);
    int activated = -1;
    EXPECT_EQ(ActivateFontsForDocument(true, activated, path, document), -1);
    EXPECT_EQ(activated, row.activated) << row.rule;
    EXPECT_EQ(ui->TakeShown(), row.shown) << row.rule;
    const Array unresolved = document->GetUnresolvedFonts();
    EXPECT_EQ(static_cast<bool>(unresolved), row.unresolved != nullptr) << row.rule;
    EXPECT_EQ(NamesOf(unresolved), row.unresolved ? row.unresolved : "") << row.rule;
    EXPECT_EQ(document->GetCanExportFontsForDocument(), row.mayExport) << row.rule;
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
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Double"});
  int activated = 0;
  OneTrackedDocument* document = Track(path);
  ActivateFontsForDocument(true, activated, path, document);
  EXPECT_EQ(activated, 1);
  EXPECT_EQ(Held().size(), 1u);
  EXPECT_FALSE(document->GetUnresolvedFonts());
}

TEST_F(Activation, PrefersTheFontOfTheSlugUnlessIdentificationIsOff) {
  for (const bool identifies : {true, false}) {
    agent.Font(5).checksum = "111", agent.Font(6).checksum = "222";
    for (auto& [id, font] : agent.fonts) font.isHeld = false;
    ui->preferences["EnableGlyphsure"] = identifies;
    ui->preferences["PickBestMatch"] = 1;
    MakeReady();
    const std::string path = Sample("no-text.psd");
    const platform::Dictionary slug = fakes::AgentAnswers::MakeRecord(agent.Font(6));
    ASSERT_EQ(WriteXMPGlyphsureSlugToFile(path, ArrayOf({slug})), CoreErrorCodes::kSuccess);
    // The file names no fonts: its slug is taken at its word.
    int activated = 0;
    ActivateFontsForDocument(true, activated, path, Track(path));
    EXPECT_EQ(Held(), identifies ? std::vector<uint32_t>{6} : std::vector<uint32_t>{});
  }
}

TEST_F(Activation, OfAnOpenDocumentTellsTheHostWhetherItMayBeExported) {
  struct Host : fakes::CountingHost {
    void SetCanExportFontsForDocument(bool can) override { told.push_back(can); }
    std::vector<bool> told;
  } listening;
  HostAppInterface::SetForTesting(&listening);
  MakeReady();
  const std::string path = WriteDocument("a.psd", {"Idle"});
  OneTrackedDocument* document = Track(path);
  int activated = 0;
  ActivateFontsForDocument(true, activated, path, document);
  EXPECT_TRUE(listening.told.empty());
  ActivateFontsForDocument(false, activated, path, document);
  EXPECT_EQ(listening.told, std::vector<bool>{true});
}

TEST_F(Activation, InSilenceShowsNothing) {
  const struct {
    const char* rule;
    std::string file;
    Lines fonts;
    Array extra;
    TModuleErrorCode code;
    int activated;
    const char *unresolved, *refused;
  } kRows[] = {
      {"names from the bytes", "a.psd", {"Idle", "Absent"}, Array(), 0, 1, "Absent", ""},
      {"a refused font", "a.psd", {"Idle", "Refused"}, Array(), 0x12000000, 0, "", "Refused"},
      {"fonts of the caller's", "a.psd", {"Active"}, ArrayOf({Named("Idle")}), 0, 1, "", ""},
      {"a PDF is not scanned where the caller has fonts", "a.pdf", {"Idle"}, ArrayOf({Named("Active")}), 0, 0, "", ""},
      {"and is where it has none", "a.pdf", {"Idle"}, Array(), 0, 1, "", ""},
      {"a file that has gone", "", {}, Array(), 0x7000000, 0, "", ""},
  };
  ui->preferences["PickBestMatch"] = 1;
  for (const auto& row : kRows) {
    AllTrackedDocuments::ResetForTesting();
    for (auto& [id, font] : agent.fonts) font.isHeld = false;
    MakeReady();
    const std::string path = row.file.empty() ? folder / "gone.psd" : WriteDocument(row.file, row.fonts);
    OneTrackedDocument* document = Track(path);
    int activated = -1;
    EXPECT_EQ(CommonFunctionality::ActivateFontsForDocumentSilently(true, true, activated, path, row.extra, document),
              row.code)
        << row.rule;
    EXPECT_EQ(activated, row.activated) << row.rule;
    EXPECT_EQ(NamesOf(document->GetUnresolvedFonts()), row.unresolved) << row.rule;
    EXPECT_EQ(NamesOf(document->GetNoncompliantFonts()), row.refused) << row.rule;
    EXPECT_TRUE(ui->TakeShown().empty()) << row.rule;
    MarquineGlobals::GetSharedFontActivationTracker()->CloseAllFonts(true, false);
  }
}

TEST_F(Activation, DataForASlugIsThatOfTheActiveFontsThatTheDatabaseKnows) {
  MakeReady();
  const struct {
    Lines fonts;
    const char* names;
    bool allFound;
  } kRows[] = {
      {{"Active", "AdobeInvisFont"}, "Active", true}, {{"Active", "Idle", "Absent"}, "Active", false}, {{}, "", true}};
  for (const auto& row : kRows) {
    const std::string path = WriteDocument("a.psd", row.fonts);
    Array fonts;
    bool allFound = !row.allFound;
    EXPECT_EQ(CreateGlyphsureDataForDocument(path, fonts, -2, false, allFound), 0);
    EXPECT_EQ(NamesOf(fonts), row.names);
    EXPECT_EQ(allFound, row.allFound);
    const Array closed = Array::Create();
    EXPECT_EQ(CommonFunctionality::CreateGlyphsureDataForClosedDocument(Sample("brochure.psd"), closed, -2, allFound),
              0u);
    EXPECT_FALSE(allFound);
  }
  bool allFound = false;
  EXPECT_EQ(CommonFunctionality::CreateGlyphsureDataForClosedDocument("", Array(), -2, allFound), 0x6000000u);
}

}  // namespace
