// Keys that the readers add to font records: what a document says about its own copy of a font, and how it names a font
// of which it knows no PostScript name.
#pragma once

#include <string_view>

inline constexpr std::string_view kDocumentFont_EmbeddedKey = "Embedded";    // "1" or "0"
inline constexpr std::string_view kDocumentFont_SubsetTagKey = "SubsetTag";  // six letters
inline constexpr std::string_view kDocumentFont_TypeKey = "FontType";        // as a PDF names it

// How a font looks, for those that are not embedded (FontLook.h).
inline constexpr std::string_view kDocumentFont_DesignKey = "DocumentDesign";              // a word of FontDesign.h
inline constexpr std::string_view kDocumentFont_MonospacedKey = "DocumentMonospaced";      // "1" or "0"
inline constexpr std::string_view kDocumentFont_SlantedKey = "DocumentSlanted";            // "1" or "0"
inline constexpr std::string_view kDocumentFont_BoldnessKey = "DocumentBoldness";          // a decimal number
inline constexpr std::string_view kDocumentFont_LetterWidthsKey = "DocumentLetterWidths";  // decimal numbers

// Set together, in records without a PostScript name. Values as in FontStyle.h, as decimal numbers.
inline constexpr std::string_view kDocumentFont_FamilyKey = "DocumentFamily";
inline constexpr std::string_view kDocumentFont_WeightKey = "DocumentWeight";
inline constexpr std::string_view kDocumentFont_ItalicKey = "DocumentItalic";    // "1" or "0"
inline constexpr std::string_view kDocumentFont_StretchKey = "DocumentStretch";  // percent
