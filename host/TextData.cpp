#include "host/TextData.h"

#include <bit>
#include <cstdint>

#include "host/ByteOrder.h"
#include "host/FontSets.h"
#include "platform/TextEncoding.h"

namespace host {

namespace {

// The tree of the text data. %T is the text as a string, %L its length in units and %N the font's name. The second half
// repeats the resources of the first, because programs read either.
constexpr std::string_view kEngineDict = R"(

<<
	/EngineDict
	<<
		/Editor
		<<
			/Text %T
		>>
		/ParagraphRun
		<<
			/DefaultRunData
			<<
				/ParagraphSheet
				<<
					/DefaultStyleSheet 0
					/Properties
					<<
					>>
				>>
				/Adjustments
				<<
					/Axis [ 1.0 0.0 1.0 ]
					/XY [ 0.0 0.0 ]
				>>
			>>
			/RunArray [
			<<
				/ParagraphSheet
				<<
					/DefaultStyleSheet 0
					/Properties
					<<
						/Justification 0
						/AutoHyphenate true
						/AutoLeading 1.2
					>>
				>>
				/Adjustments
				<<
					/Axis [ 1.0 0.0 1.0 ]
					/XY [ 0.0 0.0 ]
				>>
			>>
			]
			/RunLengthArray [ %L ]
			/IsJoinable 1
		>>
		/StyleRun
		<<
			/DefaultRunData
			<<
				/StyleSheet
				<<
					/StyleSheetData
					<<
					>>
				>>
			>>
			/RunArray [
			<<
				/StyleSheet
				<<
					/StyleSheetData
					<<
						/Font 0
						/FontSize 12.0
						/AutoKerning true
						/FillColor
						<<
							/Type 1
							/Values [ 1.0 0.0 0.0 0.0 ]
						>>
					>>
				>>
			>>
			]
			/RunLengthArray [ %L ]
			/IsJoinable 2
		>>
		/GridInfo
		<<
			/GridIsOn false
			/ShowGrid false
			/GridSize 18.0
			/GridLeading 22.0
			/AlignLineHeightToGridFlags false
		>>
		/AntiAlias 4
		/UseFractionalGlyphWidths true
	>>
	/ResourceDict
%R	/DocumentResources
%R>>)";

constexpr std::string_view kResources = R"(	<<
		/TheNormalStyleSheet 0
		/TheNormalParagraphSheet 0
		/ParagraphSheetSet [
		<<
			/Name %P
			/DefaultStyleSheet 0
			/Properties
			<<
				/Justification 0
				/AutoHyphenate true
				/AutoLeading 1.2
			>>
		>>
		]
		/StyleSheetSet [
		<<
			/Name %P
			/StyleSheetData
			<<
				/Font 0
				/FontSize 12.0
				/AutoLeading true
				/AutoKerning true
				/Ligatures true
				/FillColor
				<<
					/Type 1
					/Values [ 1.0 0.0 0.0 0.0 ]
				>>
			>>
		>>
		]
		/FontSet [
		<<
			/Name %N
			/Script 0
			/FontType 0
			/Synthetic 0
		>>
		]
		/SuperscriptSize .583
		/SuperscriptPosition .333
		/SubscriptSize .583
		/SubscriptPosition .333
		/SmallCapSize .7
	>>
)";

// One pass, so that replacements are not searched again.
template <class Replacement>
std::string Fill(std::string_view form, const Replacement& replacement) {
  std::string filled;
  for (size_t at = 0; at < form.size(); ++at) {
    if (form[at] == '%') {
      filled += replacement(form[++at]);
    } else {
      filled.push_back(form[at]);
    }
  }
  return filled;
}

size_t UnitsOf(const std::string& text) { return platform::UTF8ToUTF16(text).value_or(std::u16string()).size(); }

std::string EngineData(const std::string& text, const std::string& fontName) {
  std::string resources =
      Fill(kResources, [&](char mark) { return TextDataString(mark == 'N' ? fontName : "Normal"); });
  return Fill(kEngineDict, [&](char mark) {
    if (mark == 'R') return resources;
    if (mark == 'L') return std::to_string(UnitsOf(text) + 1);  // including the end of the paragraph
    return TextDataString(text + "\r");
  });
}

void AppendReal(std::string& out, double value) { AppendBigEndian(out, std::bit_cast<uint64_t>(value), 8); }

// A key, class or value of a descriptor: a length of 0 and a four-character code.
void AppendID(std::string& out, std::string_view id) {
  AppendBigEndian(out, id.size() == 4 ? 0 : id.size(), 4);
  out += id;
}

void AppendDescriptorHead(std::string& out, std::string_view objectClass, uint64_t count) {
  AppendBigEndian(out, 1, 4);  // class name: an empty text with its zero
  AppendBigEndian(out, 0, 2);
  AppendID(out, objectClass);
  AppendBigEndian(out, count, 4);
}

void AppendEnumerated(std::string& out, std::string_view key, std::string_view type, std::string_view value) {
  AppendID(out, key);
  out += "enum";
  AppendID(out, type);
  AppendID(out, value);
}

void AppendRealItem(std::string& out, std::string_view key, double value) {
  AppendID(out, key);
  out += "doub";
  AppendReal(out, value);
}

void AppendTextItem(std::string& out, std::string_view key, const std::string& text) {
  AppendID(out, key);
  out += "TEXT";
  AppendBigEndian(out, UnitsOf(text) + 1, 4);
  out += platform::EncodeText(text, platform::TextEncoding::kUTF16BE).value_or(std::string());
  AppendBigEndian(out, 0, 2);
}

}  // namespace

std::string TypeToolData(const std::string& text, const std::string& fontName) {
  constexpr uint64_t kVersion = 1, kTextVersion = 50, kDescriptorVersion = 16;
  const std::string engineData = EngineData(text, fontName);
  std::string data;
  AppendBigEndian(data, kVersion, 2);
  for (const double each : {1.0, 0.0, 0.0, 1.0, 8.0, 30.0}) AppendReal(data, each);  // upright, at this position
  AppendBigEndian(data, kTextVersion, 2);
  AppendBigEndian(data, kDescriptorVersion, 4);
  AppendDescriptorHead(data, "TxLr", 5);
  AppendTextItem(data, "Txt ", text);
  AppendEnumerated(data, "textGridding", "textGridding", "None");
  AppendEnumerated(data, "Ornt", "Ornt", "Hrzn");
  AppendEnumerated(data, "AntA", "Annt", "antiAliasSharp");
  AppendID(data, "EngineData");
  data += "tdta";
  AppendBigEndian(data, engineData.size(), 4);
  data += engineData;
  AppendBigEndian(data, kVersion, 2);
  AppendBigEndian(data, kDescriptorVersion, 4);
  AppendDescriptorHead(data, "warp", 5);
  AppendEnumerated(data, "warpStyle", "warpStyle", "warpNone");
  AppendRealItem(data, "warpValue", 0);
  AppendRealItem(data, "warpPerspective", 0);
  AppendRealItem(data, "warpPerspectiveOther", 0);
  AppendEnumerated(data, "warpRotate", "Ornt", "Hrzn");
  for (int side = 0; side < 4; ++side) AppendBigEndian(data, 0, 4);
  if (data.size() % 2 != 0) data.push_back('\0');
  return data;
}

}  // namespace host
