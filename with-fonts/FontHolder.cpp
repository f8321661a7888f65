#include "with-fonts/FontHolder.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>

#include "Bridge/FontManagerInterface.h"
#include "Bridge/VPILoader.h"
#include "Documents/AllTrackedDocuments.h"
#include "Readers/CommonFunctionality.h"
#include "Readers/Document/StyleMatch.h"
#include "Readers/XMPFontMetadata.h"
#include "Services/MarquineGlobals.h"
#include "Tracking/FontActivationTracker.h"
#include "XCore/ECFExtensions/XCFUtils.h"
#include "agent/client/AgentProcess.h"
#include "agent/client/AgentStart.h"
#include "agent/include/AgentCalls.h"
#include "agent/include/AgentProtocol.h"
#include "docfonts/FileChoice.h"
#include "platform/Fonts.h"
#include "platform/Waiting.h"
#include "with-fonts/ActiveFonts.h"
#include "with-fonts/KeptFonts.h"
#include "with-fonts/NearestFonts.h"
#include "with-fonts/PrivateFontManager.h"

namespace with_fonts {

using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;
using platform::FontSnapshot;

// A font that the document needs.
struct FontHolder::Wanted {
  const docfonts::Font* font = nullptr;
  std::string name;  // PostScript name; empty if the library has no face for the style
  bool wasActive = false;
};

namespace {

namespace calls = agent_protocol::calls;

// An agent that ends again and again is not started all the time.
constexpr std::chrono::seconds kBetweenStarts(5), kAfterFailedStart(60);
// From the link of a font to the moment when programs see it. Linking has ended when the agent replies.
constexpr std::chrono::seconds kUntilListed(5);
// How long other programs may activate fonts and give them back while a document is opened. Programs may see a font for
// up to two seconds after it was given back, because fontconfig compares times in whole seconds.
constexpr std::chrono::seconds kUntilSettled(5);
constexpr std::chrono::milliseconds kBetweenTries(50);
constexpr std::chrono::seconds kLongestTurn(10);
// Of ActivateFontsForDocumentSilently.
constexpr TModuleErrorCode kFontsRefused = 0x12000000;

bool Contains(const Array& records, const std::string& name) {
  for (size_t i = 0; i < records.Count(); ++i) {
    if (Dictionary(records.At(i)).GetString(kGS_PostScriptNameKey).Text() == name) return true;
  }
  return false;
}

// The report about a document, with the fonts that it contains itself.
DocumentFonts StartOf(const docfonts::Report& report) {
  DocumentFonts fonts{report.file, {}, report.problems};
  for (const docfonts::Font& font : report.fonts) {
    if (font.embedded.value_or(false)) fonts.fonts.push_back({font.name, EUse::kEmbedded});
  }
  return fonts;
}

Dictionary RecordOf(const docfonts::Font& font, const std::string& name) {
  Dictionary record = Dictionary::Create();
  record.Set(kGS_PostScriptNameKey, name);
  for (const auto& [key, value] : font.slug) record.Set(key, value);
  return record;
}

FontActivationTracker& Tracker() { return *MarquineGlobals::GetSharedFontActivationTracker(); }

// Returns what is active then.
std::shared_ptr<const FontSnapshot> AwaitListing(const std::string& identifier) {
  const auto fonts = Tracker().GetOpenFontsForIdentifier(identifier);
  std::shared_ptr<const FontSnapshot> listed;
  platform::WaitUntil(kUntilListed, [&] {
    listed = platform::GetFontSnapshot();
    return std::all_of(fonts.begin(), fonts.end(), [&listed](const auto& font) {
      return listed->postScriptNames.contains(font.postScriptName.Text());
    });
  });
  return listed;
}

// Lets one of these programs at a time open or close documents: between the look at what is active and the request to
// hold it, another one must not give it back. Waits a few seconds at most, because the other may have been stopped.
class Turn {
 public:
  explicit Turn(const std::string& stateFolder)
      : lock_(open((stateFolder + "/with-fonts.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    platform::WaitUntil(kLongestTurn, [this] { return !lock_ || flock(lock_.Get(), LOCK_EX | LOCK_NB) == 0; });
  }

 private:
  const platform::Descriptor lock_;
};

// Whatever the preferences say: this program closes documents only to give their fonts back.
void GiveBack(OneTrackedDocument& document) {
  const auto held = document.Hold();
  Tracker().CloseAllFontsForIdentifier(document.GetIdentifier(), true, false, Array());
  AllTrackedDocuments::RemoveClosedDocument(&document);
}

}  // namespace

std::string FontHolder::Connect() {
  // An agent that ends with its last client may be about to end, and the plug-in's logic looks for it only once.
  std::string problem;
  const auto agent = agent_client::StartAgent(source_.stateFolder, source_.agentProgram, &problem);
  if (!agent) return problem + "; no font is activated";
  // The name under which the agent's library knows this program.
  MarquineGlobals::IdentifyPluginBundleID("com.velorant.with-fonts");
  MarquineGlobals::IdentifyPluginHostApp(platform::String::FromUTF8("with-fonts"));
  MarquineGlobals::IdentifyPluginInterfaceVersion(VPILoader::GetSharedInstance()->VersionStringRef());
  if (!source_.linksFolder.empty()) {
    // In the order of the plug-in's own start, which keeps a manager that exists.
    MarquineGlobals::GetSharedVPFInterface();
    FontManagerInterface::sm_pFontManager = std::make_unique<PrivateFontManager>(source_.linksFolder);
  }
  const TModuleErrorCode code = CommonFunctionality::Startup(false);
  CommonFunctionality::InitializeCommonPreferences();
  if (!FontManagerInterface::ConnectedManager()) {
    return "the font manager does not answer; no font is activated";
  }
  // A folder whose preferences were just made has no selected workgroup yet.
  FontManagerInterface::CheckSelectWorkgroup();
  if (FontManagerInterface::AutoActivationIsReady()) return "";
  if (code != 0) return "the font manager is not ready (code " + std::to_string(code) + "); no font is activated";
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui || ui->GetEnabledAutoActivationPref()) {
    return "the font manager does not work; no font is activated";
  }
  return "automatic activation is switched off in the preferences of the state folder; no font is activated";
}

std::vector<FontHolder::Wanted> FontHolder::WantedOf(const docfonts::Report& report,
                                                     const platform::FontSnapshot& system) {
  std::vector<Wanted> wanted;
  for (const docfonts::Font& font : report.fonts) {
    if (!IsNeeded(font, system)) continue;
    Wanted one{&font, font.style ? "" : font.name};
    one.wasActive = IsActive(font, one.name, system);
    if (!one.wasActive && font.style) {
      one.name = FindPostScriptName(*font.style);
      one.wasActive = IsActive(font, one.name, system);
    }
    wanted.push_back(std::move(one));
  }
  return wanted;
}

FontUse FontHolder::UseOf(const Wanted& wanted, const OneTrackedDocument& document,
                          const platform::FontSnapshot& system) {
  const docfonts::Font& font = *wanted.font;
  FontUse use{font.name, EUse::kMissing, FileOf(font, wanted.name, system)};
  const auto open = Tracker().GetOpenFontsForIdentifier(document.GetIdentifier());
  const auto opened = std::find_if(open.begin(), open.end(),
                                   [&wanted](const auto& info) { return info.postScriptName.Text() == wanted.name; });
  // The library's file rather than the link to it.
  const std::string path = opened == open.end() ? "" : opened->font.GetString(kGS_PathKey).Text();
  if (!path.empty()) use.file = path;
  if (wanted.wasActive) {
    use.use = EUse::kActive;
  } else if (IsActive(font, wanted.name, system)) {
    use.use = EUse::kActivated;
  } else if (Contains(document.GetNoncompliantFonts(), wanted.name)) {
    use.use = EUse::kRefused;
  } else if (document.GetNoncompliantFonts().Count() > 0 && !docfonts::ChooseFile(font).value_or("").empty()) {
    use.use = EUse::kLeft;
  } else if (opened != open.end()) {
    use.use = EUse::kFailed;
  } else {
    use.nearest = NearestFonts(font);
  }
  return use;
}

// True if another client of the agent has activated a font after this program has looked. The plug-in's logic leaves it
// alone then, and it would be given back with that client.
bool FontHolder::IsLeftToOthers(const Wanted& wanted, const std::string& identifier) {
  const auto open = Tracker().GetOpenFontsForIdentifier(identifier);
  return !wanted.wasActive && std::any_of(open.begin(), open.end(), [&wanted](const auto& info) {
    return info.bWasAlreadyActive && info.postScriptName.Text() == wanted.name;
  });
}

DocumentFonts FontHolder::Open(const std::string& path, const docfonts::Report& report) {
  if (AllTrackedDocuments::FindTrackedDocumentByPath(path)) return {report.file, {}, report.problems};
  DocumentFonts fonts;
  bool areHeld = false;
  const auto tryToOpen = [&] {
    const Turn turn(source_.stateFolder);
    if (OneTrackedDocument* former = AllTrackedDocuments::FindTrackedDocumentByPath(path)) GiveBack(*former);
    fonts = OpenOnce(path, report, areHeld);
    return areHeld;
  };
  // At the end it stays open as it is.
  platform::WaitUntil(kUntilSettled, tryToOpen, kBetweenTries);
  return fonts;
}

DocumentFonts FontHolder::OpenOnce(const std::string& path, const docfonts::Report& report, bool& areHeld) {
  DocumentFonts result = StartOf(report);
  // Reading what is active takes some milliseconds each time, so do it once before and once after the activation.
  const auto before = platform::GetFontSnapshot();
  const std::vector<Wanted> wanted = WantedOf(report, *before);
  Array extra = Array::Create();
  for (const Wanted& one : wanted) {
    if (!one.wasActive && !one.name.empty()) extra.Append(RecordOf(*one.font, one.name));
  }
  const auto document = std::make_shared<OneTrackedDocument>();
  document->SetIdentifier(FontActivationTracker::GenerateUniqueIdentifier());
  AllTrackedDocuments::AddDocument(document, path);
  // First, because the tracker keeps what it learns first: whether a font was active without this program.
  areHeld = HoldFontsOfOthers(document->GetIdentifier(), wanted, *before);
  int activated = 0;
  const TModuleErrorCode code =
      CommonFunctionality::ActivateFontsForDocumentSilently(true, true, activated, path, extra, document.get());
  if (code == kFontsRefused) result.problems.push_back("some of its fonts must not be activated, so none is");
  const auto after = AwaitListing(document->GetIdentifier());
  for (const Wanted& one : wanted) {
    result.fonts.push_back(UseOf(one, *document, *after));
    areHeld = areHeld && !IsLeftToOthers(one, document->GetIdentifier());
    const platform::ActiveFont* face = FindActive(*one.font, one.name, *after);
    // The agent uses hard links where it can.
    const bool isLinked = face && face->file.starts_with(source_.activeFolder + "/");
    if (source_.isForSandbox && isLinked && std::filesystem::is_symlink(face->file)) {
      result.problems.push_back(one.font->name +
                                ": the program's sandbox can't see it, because its file is on another "
                                "file system than your font folder");
    }
  }
  return result;
}

DocumentFonts FontHolder::Predict(const docfonts::Report& report) {
  const auto system = platform::GetFontSnapshot();
  DocumentFonts result = StartOf(report);
  for (const Wanted& one : WantedOf(report, *system)) {
    FontUse use{one.font->name, EUse::kActive, FileOf(*one.font, one.name, *system)};
    if (!one.wasActive) {
      use.file = docfonts::ChooseFile(*one.font).value_or("");
      use.use = use.file.empty() ? EUse::kMissing : EUse::kFound;
      if (use.file.empty()) use.nearest = NearestFonts(*one.font);
    }
    result.fonts.push_back(std::move(use));
  }
  return result;
}

// A font that is active for another client of the agent counts as active, and the plug-in's logic leaves it alone. It
// would be given back with that client, so hold it for this document, too. Returns false if one was given back
// meanwhile.
bool FontHolder::HoldFontsOfOthers(const std::string& identifier, const std::vector<Wanted>& wanted,
                                   const FontSnapshot& system) {
  FontManagerInterface& manager = *FontManagerInterface::sm_pFontManager;
  Array others = Array::Create();
  bool areAllHeld = true;
  for (const Wanted& one : wanted) {
    if (!one.wasActive) continue;
    const platform::ActiveFont* face = FindActive(*one.font, one.name.empty() ? one.font->name : one.name, system);
    if (!face || !face->file.starts_with(source_.activeFolder + "/")) continue;
    std::vector<uint64_t> ids;
    manager.FontIDsForPostScriptName(face->postScriptName, FontManagerInterface::kAllWorkgroupsID, ids);
    const size_t before = others.Count();
    for (const uint64_t id : ids) {
      Dictionary record = Dictionary::Create();
      record.Set(kGS_PostScriptNameKey, face->postScriptName);
      XCFUtils::PutULongIntoDictAsString(record, kGS_DatabaseIDKey, id);
      Array single = Array::Create();
      single.Append(record);
      const auto states = manager.GetFontIsActivated(single);
      if (states.empty() || !states.begin()->second) continue;
      Tracker().RegisterFontWithDocument(record, record.GetString(kGS_PostScriptNameKey), static_cast<uint32_t>(id),
                                         false, identifier, nullptr);
      others.Append(record);
    }
    areAllHeld = areAllHeld && others.Count() > before;
  }
  if (others.Count() > 0) {
    manager.ActivateFontsByID(others, identifier, nullptr, Array::Create(), Array::Create(), nullptr, nullptr);
  }
  return areAllHeld;
}

std::string FontHolder::Identify(const std::string& path, const docfonts::Report& report) {
  if (!FontManagerInterface::ConnectedManager()) {
    return "the font manager does not answer; the fonts are not identified";
  }
  const auto system = platform::GetFontSnapshot();
  Array fonts = Array::Create();
  for (const docfonts::Font& font : report.fonts) {
    if (!IsNeeded(font, *system)) continue;
    const platform::ActiveFont* face = FindActive(font, font.style ? "" : font.name, *system);
    // Without a face of exactly this style it is the nearest one that was activated.
    const std::string nearest = !face && font.style ? FindPostScriptName(*font.style) : "";
    const std::string name = face ? face->postScriptName : nearest;
    if (!name.empty()) fonts.Append(RecordOf(font, name));
  }
  bool areAllFound = false;
  const TModuleErrorCode unreadable = CommonFunctionality::CreateGlyphsureDataForClosedDocument(
      path, fonts, FontManagerInterface::kAllWorkgroupsID, areAllFound);
  const char* const kProblem =
      "its fonts are not identified: documents of its kind can't carry that, or it can't be written";
  if (unreadable != CoreErrorCodes::kSuccess) return kProblem;
  // What is there already is better than nothing.
  if (fonts.Count() == 0) return "none of its fonts is active and in the library; they are not identified";
  const TModuleErrorCode code = WriteXMPGlyphsureSlugToFile(path, fonts);
  return code == CoreErrorCodes::kSuccess ? "" : kProblem;
}

void FontHolder::Close(const std::string& path) {
  OneTrackedDocument* document = AllTrackedDocuments::FindTrackedDocumentByPath(path);
  if (!document) return;
  const Turn turn(source_.stateFolder);
  GiveBack(*document);
}

std::string FontHolder::CloseAll() {
  std::string problem = AllTrackedDocuments::GetDocumentList().empty() ? "" : BringAgentBack();
  const Turn turn(source_.stateFolder);
  while (!AllTrackedDocuments::GetDocumentList().empty()) GiveBack(*AllTrackedDocuments::GetDocumentList().front());
  return problem;
}

std::string FontHolder::Keep(const std::string& recordFile) {
  std::vector<uint32_t> fontIDs;
  for (const auto& document : AllTrackedDocuments::GetDocumentList()) {
    for (const auto& font : Tracker().GetOpenFontsForIdentifier(document->GetIdentifier())) {
      if (!font.bWasAlreadyActive) fontIDs.push_back(font.nDatabaseID);
    }
  }
  std::string problem = AddKeptFonts(recordFile, fontIDs);
  if (!problem.empty()) return problem;
  // As if the user had activated them: no end of a program changes that.
  const auto agent = agent_client::StartAgent(source_.stateFolder, source_.agentProgram, &problem);
  if (!agent) return problem;
  const auto code = agent->Call<calls::ActivateFonts>({fontIDs, agent_protocol::kActivated}).code;
  return code == agent_protocol::kSuccess ? ""
                                          : "the font manager can't keep the fonts (code " + std::to_string(code) + ")";
}

// The plug-in's logic would ask its user to start an agent that has ended, and do nothing until then. What it holds
// comes back with the connection to the new agent. A new agent also removes the links that a killed one has left.
std::string FontHolder::BringAgentBack() {
  if (agent_client::AnnouncedAgentProcess() == 0) {
    std::string problem;
    if (!agent_client::StartAgent(source_.stateFolder, source_.agentProgram, &problem)) return problem;
  }
  MarquineGlobals::SetPluginServicesEnabled(true);
  MarquineGlobals::SetConnectedToCore(true);
  return "";
}

std::string FontHolder::Tick() {
  if (!FontManagerInterface::sm_pFontManager) return "";
  std::string problem;
  const bool isGone = !MarquineGlobals::sConnectedToCore || agent_client::AnnouncedAgentProcess() == 0;
  if (isGone && Clock::now() >= nextStart_) {
    problem = BringAgentBack();
    nextStart_ = Clock::now() + (problem.empty() ? kBetweenStarts : kAfterFailedStart);
  }
  FontManagerInterface::sm_pFontManager->ProcessNotifications();
  return problem;
}

}  // namespace with_fonts
