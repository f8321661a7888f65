// The part of CSS that chooses fonts: font-family, font-weight, font-style, font-stretch and font, and style sheets
// with selectors of one element.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Readers/Document/FontStyle.h"

// Applies a declaration to an inherited style. Unknown properties and values change nothing.
void ApplyCSSProperty(std::string_view property, std::string_view value, FontStyle& style);
// Applies "property: value; ..."
void ApplyCSSDeclarations(std::string_view text, FontStyle& style);

// A style sheet. Of a selector with several elements ("g text") only the last one counts, so a rule may apply too
// often; pseudo-classes and media queries are ignored.
class CSSStyleSheet {
 public:
  void Append(std::string_view text);
  // Applies the rules for an element, the most specific one last. `classes` are separated by blanks.
  void Apply(std::string_view element, std::string_view classes, std::string_view id, FontStyle& style) const;
  // Families that @font-face rules define, because the document has their outlines.
  const std::vector<std::string>& Embedded() const { return mEmbedded; }

 private:
  struct Rule {
    std::string element, cssClass, id;  // empty: any
    std::string declarations;
  };
  void AppendRules(std::string_view selectors, std::string_view declarations);

  std::vector<Rule> mRules;
  std::vector<std::string> mEmbedded;
};
