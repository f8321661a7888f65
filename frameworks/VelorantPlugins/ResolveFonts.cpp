// The window in which the user chooses replacements for fonts without a certain match.
#include "frameworks/VelorantPlugins/Boxes.h"
#include "frameworks/VelorantPlugins/Exports.h"
#include "frameworks/VelorantPlugins/Texts.h"
#include "platform/Presenter.h"
#include "platform/Trace.h"

using platform::Array;
using platform::Dictionary;
using platform::Number;
using platform::Value;

namespace {

// Writes the chosen font into the problem font's own record, where the classification expects it.
void TakeChoice(Dictionary problemFont, const Dictionary& choices) {
  const std::string name = problemFont.GetString("PostScriptName").Text();
  const Number choice(choices.Get(name));
  if (!choice) return;
  const Array replacements = problemFont.GetArray("PossibleReplacements");
  const int64_t index = choice.Integer();
  if (index < 0 || index >= static_cast<int64_t>(replacements.Count())) {
    platform::ReportProblem("There is no replacement number " + std::to_string(index + 1) + " for " + name);
    return;
  }
  problemFont.Set("MatchedFont", replacements.At(static_cast<size_t>(index)));
}

}  // namespace

void VPFShowResolveFonts(platform::ValueRef problemFonts) {
  const Array fonts(Value::Retain(problemFonts));
  if (fonts.Count() == 0) return;
  Dictionary box = boxes::MakeBox("resolve", "ResolveFontsHeader", "ResolveFontsMessage", {"Use Choices", "Cancel"});
  const Array described = boxes::DescribeFonts(fonts);
  for (size_t i = 0; i < described.Count(); ++i) {
    Dictionary font(described.At(i));
    if (font.GetArray("PossibleReplacements").Count() == 0) font.Set("Description", texts::Localized("FontNotFound"));
  }
  box.Set("Fonts", described);
  const Dictionary answer = platform::RunBox(box);
  if (boxes::ButtonOf(box, answer) != 1) return;
  const Dictionary choices = answer.GetDictionary("Choices");
  for (size_t i = 0; i < fonts.Count(); ++i) {
    if (const Dictionary font(fonts.At(i)); font) TakeChoice(font, choices);
  }
}
