#include "Readers/Document/FontStyle.h"

#include <algorithm>
#include <cctype>

#include "Readers/Document/DocumentFontKeys.h"

namespace {

struct Word {
  std::string_view text;  // lower case, without hyphens
  int weight;             // 0 if the word says nothing about it
  bool isItalic;
  int stretch;  // 0 likewise
};

// The first word of a weight or width is the one that NameOf writes.
constexpr Word kWords[] = {
    {"thin", 100, false, 0},     {"extralight", 200, false, 0},    {"ultralight", 200, false, 0},
    {"light", 300, false, 0},    {"semilight", 350, false, 0},     {"demilight", 350, false, 0},
    {"book", 400, false, 0},     {"regular", 400, false, 0},       {"normal", 400, false, 0},
    {"medium", 500, false, 0},   {"semibold", 600, false, 0},      {"demibold", 600, false, 0},
    {"bold", 700, false, 0},     {"extrabold", 800, false, 0},     {"ultrabold", 800, false, 0},
    {"black", 900, false, 0},    {"heavy", 900, false, 0},         {"italic", 0, true, 0},
    {"oblique", 0, true, 0},     {"ultracondensed", 0, false, 50}, {"extracondensed", 0, false, 62},
    {"condensed", 0, false, 75}, {"semicondensed", 0, false, 87},  {"semiexpanded", 0, false, 112},
    {"expanded", 0, false, 125}, {"extraexpanded", 0, false, 150}, {"ultraexpanded", 0, false, 200},
};

constexpr std::string_view kGenericFamilies[] = {"serif",   "sans-serif", "sans",     "monospace",     "cursive",
                                                 "fantasy", "system-ui",  "ui-serif", "ui-sans-serif", "ui-monospace",
                                                 "inherit", "initial",    "unset",    "math",          "emoji"};

std::string Simplified(std::string_view word) {
  std::string simple;
  for (const char c : word) {
    if (c != '-') simple += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return simple;
}

const Word* FindWord(std::string_view text) {
  const std::string simple = Simplified(text);
  const auto* found =
      std::find_if(std::begin(kWords), std::end(kWords), [&](const Word& row) { return row.text == simple; });
  return found == std::end(kWords) ? nullptr : found;
}

std::string Capitalised(std::string_view word) {
  std::string text(word);
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text;
}

template <class Matches>
std::string WordFor(Matches matches) {
  const auto* found = std::find_if(std::begin(kWords), std::end(kWords), matches);
  return found == std::end(kWords) ? std::string() : " " + Capitalised(found->text);
}

bool IsSize(std::string_view word) {
  return !word.empty() && word.find_first_not_of("0123456789.") == std::string_view::npos;
}

}  // namespace

std::string NameOf(const FontStyle& style) {
  std::string name = style.family;
  if (style.stretch != FontStyle::kNormalStretch) {
    name += WordFor([&](const Word& row) { return row.stretch == style.stretch; });
  }
  if (style.weight != FontStyle::kNormalWeight) {
    const std::string word = WordFor([&](const Word& row) { return row.weight == style.weight; });
    name += word.empty() ? " " + std::to_string(style.weight) : word;
  }
  return style.isItalic ? name + " Italic" : name;
}

FontStyle StyleOfName(std::string_view name) {
  FontStyle style;
  // A comma ends the family. Behind it are the style or fallback families.
  const size_t comma = name.find(',');
  std::string text(name.substr(comma == std::string_view::npos ? 0 : comma + 1));
  for (;;) {
    while (text.ends_with(' ')) text.pop_back();
    const size_t start = text.find_last_of(' ');
    // Without a comma the first word is the family.
    if (start == std::string::npos) break;
    const std::string last = text.substr(start + 1);
    const Word* word = FindWord(last);
    if (!word && !IsSize(last)) break;
    if (word && word->weight != 0) style.weight = word->weight;
    if (word && word->stretch != 0) style.stretch = word->stretch;
    if (word && word->isItalic) style.isItalic = true;
    text.resize(start);
  }
  style.family = comma == std::string_view::npos ? text : std::string(name.substr(0, comma));
  return style;
}

bool IsGenericFamily(std::string_view family) {
  std::string lower;
  for (const char c : family) lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return std::find(std::begin(kGenericFamilies), std::end(kGenericFamilies), lower) != std::end(kGenericFamilies);
}

void StyledFonts::Add(const FontStyle& style) {
  if (!style.family.empty() && !IsGenericFamily(style.family)) mFonts.insert(style);
}

void StyledFonts::AppendTo(platform::Array records) const {
  for (const FontStyle& style : mFonts) {
    platform::Dictionary record = platform::Dictionary::Create();
    record.Set(kDocumentFont_FamilyKey, style.family);
    record.Set(kDocumentFont_WeightKey, std::to_string(style.weight));
    record.Set(kDocumentFont_ItalicKey, style.isItalic ? "1" : "0");
    record.Set(kDocumentFont_StretchKey, std::to_string(style.stretch));
    const auto look = mLooks.find(style.family);
    if (mEmbedded.contains(style.family)) {
      record.Set(kDocumentFont_EmbeddedKey, "1");
    } else if (look != mLooks.end()) {
      SetLook(record, look->second);
    }
    records.Append(record);
  }
}
