// Each key that the sources use has a fitting text in each language.
#include "frameworks/VelorantPlugins/Texts.h"

#include <filesystem>
#include <map>
#include <regex>
#include <set>

#include "frameworks/UIFramework.h"
#include "platform/Files.h"
#include "support/ScopedVariable.h"

namespace framework_tests {
namespace {

using test_support::ScopedVariable;
using Texts = std::map<std::string, std::string>;

Texts TextsOf(std::span<const texts::Text> table) {
  Texts map;
  for (const texts::Text& text : table) EXPECT_TRUE(map.emplace(text.key, text.text).second) << "twice: " << text.key;
  return map;
}

// Returns the string literals of a statement. Adjacent ones are joined, as by the compiler.
std::vector<std::string> LiteralsOf(const std::string& statement) {
  static const std::regex kLiteral(R"re("((?:[^"\\]|\\.)*)")re");
  std::vector<std::string> literals;
  for (std::sregex_iterator at(statement.begin(), statement.end(), kLiteral), end; at != end; ++at) {
    const std::string between = at->prefix();
    const bool isNeighbour = !literals.empty() && between.find_first_not_of(" \n") == std::string::npos;
    isNeighbour ? literals.back() += at->str(1) : literals.emplace_back(at->str(1));
  }
  std::erase(literals, "");
  return literals;
}

// A text that looks like one of the framework's identifiers, anywhere: a variable may pass such a key on.
bool IsIdentifier(const std::string& literal) {
  static const std::regex kName(
      "[A-Z]\\w*(Header|HeaderFormat|HeaderForDoc|HeaderForQuit|Message|Msg|Title|LaunchPrefs|Workgroup)");
  static const std::set<std::string> kOthers = {"CurrentWorkgroup", "WindowTitle"};  // keys of dictionaries
  return std::regex_match(literal, kName) && !kOthers.contains(literal);
}

// Returns the keys in a folder's sources: arguments of calls that take keys, and texts that look like keys.
std::set<std::string> KeysUsedIn(const std::string& folder) {
  static const std::regex kCall(
      R"(\b(LocalizedString|localized|ShowMessageBox|ShowFormattedVaultMessage|Localized|Formatted|MakeBox|ShowFonts)\()");
  std::set<std::string> keys;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() != ".cpp" || entry.path().filename().string().starts_with("Texts")) continue;
    std::string source;
    EXPECT_FALSE(platform::ReadFile(entry.path(), source));
    for (size_t start = 0, end; start < source.size(); start = end + 1) {
      end = std::min(source.find_first_of(";{}", start), source.size());
      const std::string statement = source.substr(start, end - start);
      const bool isCall = std::regex_search(statement, kCall);
      for (const std::string& literal : LiteralsOf(statement)) {
        if (isCall || IsIdentifier(literal)) keys.insert(literal);
      }
    }
  }
  return keys;
}

TEST(Texts, EveryKeyThatIsUsedHasOne) {
  const Texts english = TextsOf(texts::kEnglish);
  std::set<std::string> used = KeysUsedIn(SOURCE_DIR "/plugins");
  EXPECT_GE(used.size(), 55u) << "the sources are not read as they should be";
  used.merge(KeysUsedIn(SOURCE_DIR "/frameworks/VelorantPlugins"));
  EXPECT_GE(used.size(), 75u) << "the sources are not read as they should be";
  // Keys of dictionaries and tables next to them, and the part from which keys of labels are made.
  for (const char* notAKey : {"Fonts", "Description", "Message", "Header", "Key", "Label", "Foundry", "Version",
                              "FontKind", "WorkgroupName", "IsActive", "Workgroups", "Default", "PossibleReplacements",
                              "NonLocalized", "Adding '%s' to user's workgroup list."}) {
    used.erase(notAKey);
  }
  // Kinds of boxes, values and formats.
  std::erase_if(used, [](const std::string& key) { return key[0] != '[' && !(key[0] >= 'A' && key[0] <= 'Z'); });
  // Unused so far, or used in a way that this test does not recognise.
  used.insert({"PhotoshopMissingFonts", "All Libraries", "MasterGoogleFontsLibrary", "Set Name:", "%@'s fonts"});
  for (const std::string& key : used) EXPECT_TRUE(english.contains(key)) << key;
}

// Returns the placeholders of a text, in a form that can be compared.
std::multiset<std::string> PlaceholdersOf(const std::string& text) {
  static const std::regex kPlaceholder(R"(%.|\[[^\]]*\])");
  std::multiset<std::string> found;
  for (std::sregex_iterator at(text.begin(), text.end(), kPlaceholder), end; at != end; ++at) found.insert(at->str());
  return found;
}

TEST(Texts, TheLanguagesHaveTheSameKeysAndPlaceholders) {
  const Texts english = TextsOf(texts::kEnglish);
  const std::pair<const char*, std::span<const texts::Text>> languages[] = {
      {"German", texts::kGerman},         {"French", texts::kFrench},   {"Spanish", texts::kSpanish},
      {"Portuguese", texts::kPortuguese}, {"Italian", texts::kItalian}, {"Japanese", texts::kJapanese}};
  for (const auto& [name, table] : languages) {
    const Texts translated = TextsOf(table);
    EXPECT_EQ(translated.size(), english.size()) << name;
    for (const auto& [key, text] : translated) {
      ASSERT_TRUE(english.contains(key)) << name << ": " << key;
      EXPECT_EQ(PlaceholdersOf(text), PlaceholdersOf(english.at(key))) << name << ": " << key;
      EXPECT_FALSE(text.empty()) << name << ": " << key;
      EXPECT_TRUE(platform::String::FromUTF8(text)) << name << ": " << key;
    }
  }
  for (const auto& [key, text] : english) {
    for (const std::string& placeholder : PlaceholdersOf(text)) {
      EXPECT_THAT(placeholder, testing::AnyOf("%d", "%@", "[host app]", "[FONT_MANAGER_MODIFIER]")) << key;
    }
  }
}

TEST_F(UIFrameworkTest, TheTextIsInTheUsersLanguage) {
  const struct {
    const char* locale;
    std::optional<std::string> language;
    const char* title;
  } rows[] = {{"C", "de", "Missing Fonts"},
              {"de_DE.UTF-8", std::nullopt, "Fehlende Schriften"},
              {"fr_FR", std::nullopt, "Polices manquantes"},
              {"es", std::nullopt, "Fuentes no disponibles"},
              {"pt_BR", std::nullopt, "Fontes ausentes"},
              {"it_IT", std::nullopt, "Font mancanti"},
              {"ja_JP", std::nullopt, "フォント"},
              {"sv_SE", std::nullopt, "Missing Fonts"},
              {"sv_SE", "nb:ja:de", "フォント"},
              {"de_DE", "en:de", "Missing Fonts"}};
  for (const auto& row : rows) {
    const ScopedVariable locale("LC_ALL", row.locale), language("LANGUAGE", row.language);
    Start();
    EXPECT_EQ(Localized("PhotoshopMissingFonts"), row.title) << row.locale;
    EXPECT_EQ(Localized("no such key [host app]"), "no such key [host app]");
  }
  EXPECT_EQ(VPFLocalizedString(nullptr), nullptr);
}

TEST_F(UIFrameworkTest, PlaceholdersAreFilledInOnce) {
  const char* kTitle = "[FONT_MANAGER_MODIFIER] Auto-Activation Plug-in for [host app]";
  EXPECT_EQ(Localized(kTitle), "Velorant Auto-Activation Plug-in for Document Host");
  platform::Dictionary details = platform::Dictionary::Create();
  details.Set("HostApp", "PhotoshopCC2020");
  Start(details);
  EXPECT_EQ(Localized(kTitle), "Velorant Auto-Activation Plug-in for Document Host");
  details.Set("HostApp", "[FONT_MANAGER_MODIFIER] [");
  Start(details);
  const struct {
    const char *bundle, *name;
  } rows[] = {{"MarquinePrimePlugin", "Marquine Prime"}, {"HarbinetPlugin", "Harbinet"}, {"Another", "Another"}};
  for (const auto& row : rows) {
    platform::Dictionary manager = platform::Dictionary::Create();
    manager.Set("FontManager", row.bundle);
    VPFSetHostDetails(manager.Ref());
    EXPECT_EQ(Localized(kTitle), std::string(row.name) + " Auto-Activation Plug-in for [FONT_MANAGER_MODIFIER] [");
  }
}

}  // namespace
}  // namespace framework_tests
