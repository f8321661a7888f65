// Requests of several clients, and their effects: the links, the fonts that fontconfig lists, and the notifications.
#include "agent/activation/Activations.h"

#include <gmock/gmock.h>

#include <memory>
#include <set>
#include <sstream>

#include "agent/fonts/FontFile.h"
#include "platform/Folders.h"
#include "platform/Fonts.h"
#include "support/DebianFonts.h"
#include "support/TempFolder.h"

namespace {

using namespace agent;
using namespace agent_protocol;
using namespace debian_fonts;

// The fonts of these tests, by letter: x and y are plain; o and t are one face in two files; c and d share a file; s
// and u belong to the operating system, and the library has u's name as v; r may not be activated; b is damaged before
// it is requested; z is unknown.
class Desk {
 public:
  Desk() {
    const std::string system = folder_ / "system";
    platform::Places places;
    places.runtime = folder_ / "run";
    places.fontConfigFile = folder_.WriteFontsConf({folder_ / "active", system});
    platform::SetPlaces(places);
    user_ = std::make_unique<UserStore>(folder_ / "user.db");
    AddFile("x", Bytes(kLiberation + "LiberationSerif-Bold.ttf"), "library/x.ttf");
    AddFile("y", Bytes(kLiberation + "LiberationMono-Bold.ttf"), "library/Let's Eat");
    AddFile("o", Bytes(kOpenType + "NimbusSans-Bold.otf"), "library/o.otf");
    AddFile("t", Bytes(kType1 + "NimbusSans-Bold.t1"), "library/t.t1");
    AddFile("cd", MakeCollection({Bytes(kOpenType + "D050000L.otf"), Bytes(kOpenType + "Z003-MediumItalic.otf")}),
            "library/cd.ttc");
    AddFile("s", Bytes(kDejaVu + "DejaVuSans.ttf"), "system/s.ttf");
    AddFile("u", Bytes(kDejaVu + "DejaVuSansMono.ttf"), "system/u.ttf");
    AddFile("v", Bytes(kDejaVu + "DejaVuSansMono.ttf"), "library/v.ttf");
    AddFile("r", Bytes(kLiberation + "LiberationSans-Bold.ttf"), "library/r.ttf");
    AddFile("b", Bytes(kLiberation + "LiberationSans-Italic.ttf"), "library/b.ttf");
    folder_.Write("library/b.ttf", "no font any more");
    table_.SetSystemActiveFiles({system + "/s.ttf", system + "/u.ttf"});
    Start();
  }
  ~Desk() {
    activations_.reset();
    platform::SetPlaces({});
  }

  // Leaves everything as a killed agent does, and starts another.
  void KillAndStart() {
    Start();
    activations_->RemoveUnaskedLinks();
    activations_->Reconcile();
  }

  // A step is a client's letter, what it does and a font: + asks for a document, & asks again after a restart, ? for a
  // preview, * by the user; - gives back, = gives back what the user asked for; ! the client goes, ~ it goes and keeps;
  // # the agent is killed.
  void Take(const std::string& step) {
    if (step == "#") return KillAndStart();
    const ClientID client = static_cast<unsigned char>(step[0]);
    const std::vector<uint32_t> ids = {step.size() > 2 ? IDOf(step[2]) : 0};
    switch (step[1]) {
      case '+': return Note(activations_->Activate(client, ids, kAutoActivated));
      case '&': return Note(activations_->Activate(client, ids, kAutoActivatedAgain));
      case '?': return Note(activations_->Activate(client, ids, kPreviewActivated));
      case '*': return Note(activations_->Activate(client, ids, kActivated));
      case '-':
      case '=': activations_->Deactivate(client, ids, step[1] == '='); return;
      case '!': activations_->ReleaseClient(client); return;
      case '~': activations_->KeepClient(client); return;
      default: FAIL() << "what is " << step << "?";
    }
  }

  // "x1 o3": the fonts that are active but for the system's, each with the state that the agent reports.
  std::string States() const {
    std::string states;
    for (const auto& [letter, id] : ids_) {
      const Font& font = *table_.Find(id);
      if (!activations_->IsActive(font) || table_.IsSystemActive(font)) continue;
      states += std::string(1, letter) + std::to_string(activations_->StateOf(font)) + " ";
    }
    return states.substr(0, states.empty() ? 0 : states.size() - 1);
  }
  // The result of the last activation: + active, ! failed, % refused, each with the font's letter.
  const std::string& Outcome() const { return outcome_; }

  // fontconfig lists what the agent reports as active, and the clients were notified.
  void ExpectTruth() const {
    std::multiset<std::string> listed, claimed;
    for (const platform::ActiveFont& font : platform::ActiveFonts()) {
      if (folderOfLinks_->Holds(font.file)) listed.insert(font.postScriptName);
    }
    std::set<uint32_t> active;
    for (const auto& [letter, id] : ids_) {
      const Font& font = *table_.Find(id);
      if (!activations_->IsActive(font) || table_.IsSystemActive(font)) continue;
      claimed.insert(font.face.postScriptName);
      active.insert(id);
    }
    EXPECT_EQ(listed, claimed);
    EXPECT_EQ(announced_, active);
  }

 private:
  uint32_t IDOf(char letter) const {
    const auto found = ids_.find(letter);
    return found == ids_.end() ? 4711 : found->second;
  }

  void AddFile(const std::string& letters, const std::string& bytes, const std::string& name) {
    const std::string path = folder_.Write(name, bytes);
    const FontFileContent content = FontFileReader().Read(path);
    ASSERT_EQ(content.faces.size(), letters.size()) << path;
    std::vector<Font> fonts;
    for (const FontFace& face : content.faces) {
      Font font;
      font.id = ids_[letters[fonts.size()]] = user_->FontID(path, face, {1, 1000 + ids_.size(), 0, 0}).id;
      font.path = path;
      font.face = face;
      fonts.push_back(font);
    }
    table_.ReplaceFile(path, fonts);
  }

  void Start() {
    announced_.clear();
    folderOfLinks_ = std::make_unique<ActiveFolder>(folder_ / "active", LinkKind::kSymbolic, loop_);
    ASSERT_FALSE(folderOfLinks_->Prepare());
    activations_ = std::make_unique<Activations>(
        Activations::Parts{table_, *folderOfLinks_, *user_}, std::set<std::string>{"LiberationSans-Bold"},
        ActivationEvents{[this](uint32_t id) { EXPECT_TRUE(announced_.insert(id).second); },
                         [this](uint32_t id) { EXPECT_EQ(announced_.erase(id), 1u); }, [](const std::string&) {}});
  }

  void Note(const ActivationOutcome& outcome) {
    outcome_.clear();
    const std::pair<char, const std::vector<uint32_t>&> lists[] = {
        {'+', outcome.activated}, {'!', outcome.failed}, {'%', outcome.refused}};
    for (const auto& [mark, ids] : lists) {
      for (const uint32_t id : ids) {
        outcome_ += mark;
        outcome_ += LetterOf(id);
      }
    }
  }
  char LetterOf(uint32_t id) const {
    for (const auto& [letter, known] : ids_) {
      if (known == id) return letter;
    }
    return 'z';
  }

  test_support::TempFolder folder_;
  platform::RunLoop loop_;
  FontTable table_;
  std::unique_ptr<UserStore> user_;
  std::map<char, uint32_t> ids_;
  std::set<uint32_t> announced_;
  std::string outcome_;
  std::unique_ptr<ActiveFolder> folderOfLinks_;
  std::unique_ptr<Activations> activations_;
};

struct RuleRow {
  const char* steps;
  const char* states;
  const char* outcome;  // of the last activation
};

const RuleRow kRules[] = {
    {"A+x", "x1", "+x"},
    {"A+x A-x", "", "+x"},
    {"A+x A+x A-x", "", "+x"},    // requested twice, deactivated once
    {"A+x B+x A-x", "x1", "+x"},  // the other client still holds it
    {"A+x B+x A-x B-x", "", "+x"},
    {"A+x B-x", "x1", "+x"},   // a client cannot deactivate what another one holds
    {"A+x A+y A!", "", "+y"},  // the end of a client deactivates all its fonts
    {"A+x B+x A!", "x1", "+x"},
    {"A?x", "x3", "+x"},
    {"A?x A+x", "x1", "+x"},  // the stronger request wins, in either order
    {"A+x A?x", "x1", "+x"},
    {"A+x B?x A!", "x3", "+x"},
    {"A*x A!", "x4", "+x"},  // the user's activation lasts until the user deactivates it
    {"A*x A-x", "x4", "+x"},
    {"A*x A=x", "", "+x"},
    {"A+y", "y1", "+y"},      // a name without an extension
    {"A+o A+t", "o1", "!t"},  // one face in two files: never both
    {"A+t A+o", "t1", "!o"},
    {"A+o A-o A+t", "t1", "+t"},
    {"A+c", "c1 d1", "+c"},  // fontconfig reads whole files
    {"A+c A?d", "c1 d3", "+d"},
    {"A+c A+d A-c", "c1 d1", "+d"},
    {"A+c A+d A-c A-d", "", "+d"},
    {"A+s", "", "+s"},  // the system has it active, so there is nothing to do or to hold
    {"A+s A-s", "", "+s"},
    {"A+v", "", "!v"},  // the system's file of this name is active
    {"A+r", "", "%r"},
    {"A+b", "", "!b"},  // linked, but fontconfig does not list it
    {"A+z", "", "!z"},
    {"A+x #", "", "+x"},  // no client requests it any more
    {"A+x A+c #", "", "+c"},
    {"A*x #", "x4", "+x"},  // a stored activation is active again
    {"A+x A~", "x1", "+x"},
    {"A+x A~ #", "x1", "+x"},
    {"A+x A~ # B-x", "", "+x"},  // any client may deactivate what a client left active
    {"A+x A~ B+x B!", "x1", "+x"},
    {"A?x A+y A~", "y1", "+y"},  // a preview ends with its client, kept or not
    {"A&x A+y A~", "y1", "+y"},  // a restored activation is not kept
    {"A&x A+x A~ #", "x1", "+x"},
    {"A+d A~ #", "c1 d1", "+d"},
    {"A+x A! # A+x", "x1", "+x"},
};

TEST(Activations, FollowWhoAsks) {
  for (const RuleRow& row : kRules) {
    SCOPED_TRACE(row.steps);
    Desk desk;
    std::istringstream steps(row.steps);
    for (std::string step; steps >> step;) {
      desk.Take(step);
      desk.ExpectTruth();
    }
    EXPECT_EQ(desk.States(), row.states);
    EXPECT_EQ(desk.Outcome(), row.outcome);
  }
}

}  // namespace
