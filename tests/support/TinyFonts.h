// Makes sound TrueType fonts of some 800 bytes, for libraries of any size.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "support/DebianFonts.h"
#include "support/TempFolder.h"

namespace tiny_fonts {

struct Face {
  std::string family;
  std::string style;
  int number = 0;                    // 0 to 30000; the outlines differ with it
  char16_t letters[2] = {'A', 'a'};  // that the font has, in this order

  std::string PostScriptName() const { return family + "-" + style; }
};

namespace internal {

// Big-endian numbers of two bytes.
inline std::string Shorts(std::initializer_list<int> numbers) {
  std::string bytes;
  for (const int number : numbers) {
    bytes += static_cast<char>(number >> 8 & 0xFF);
    bytes += static_cast<char>(number & 0xFF);
  }
  return bytes;
}

inline std::string Zeros(size_t count) { return std::string(count, '\0'); }

inline std::string NameTable(const Face& face) {
  const std::pair<int, std::string> names[] = {{1, face.family},
                                               {2, face.style},
                                               {4, face.family + " " + face.style},
                                               {5, "Version 1.5"},
                                               {6, face.PostScriptName()}};
  std::string records, texts;
  for (const auto& [id, text] : names) {
    records += Shorts({3, 1, 0x409, id, static_cast<int>(2 * text.size()), static_cast<int>(texts.size())});
    for (const char c : text) texts += {'\0', c};
  }
  const auto count = static_cast<int>(std::size(names));
  return Shorts({0, count, 6 + 12 * count}) + records + texts;
}

// Both letters as glyph 1.
inline std::string CharacterMap(const Face& face) {
  const int one = face.letters[0], two = face.letters[1];
  return Shorts({0, 1, 3, 1, 0, 12}) + Shorts({4, 40, 0, 6, 4, 1, 2}) + Shorts({one, two, -1, 0, one, two, -1}) +
         Shorts({1 - one, 1 - two, 1, 0, 0, 0});
}

inline std::string OS2Table(int weight) {
  return Shorts({4, 500, weight, 5}) + Zeros(24) + std::string("\2\13", 2) + Zeros(24) + "TEST" +
         Shorts({0x40, 'A', 'a', 800, -200, 0, 800, 200, 0, 1, 0, 0, 500, 700, 0, 32, 1});
}

// A triangle; glyph 0 is empty.
inline std::string Outlines(int number) {
  return Shorts({1, 0, 0, 700, number, 2, 0}) + "\1\1\1" + Shorts({0, 700, -300, 0, 0, number}) + '\0';
}

}  // namespace internal

inline std::string MakeFont(const Face& face) {
  using internal::Shorts;
  using internal::Zeros;
  const int weight = face.style == "Bold" ? 700 : 400;
  const std::pair<const char*, std::string> tables[] = {
      {"OS/2", internal::OS2Table(weight)},
      {"cmap", internal::CharacterMap(face)},
      {"glyf", internal::Outlines(face.number)},
      {"head", Shorts({1, 0, 1, 0x8000, 0, 0, 0x5F0F, 0x3CF5, 0, 1000}) + Zeros(16) +
                   Shorts({0, 0, 700, 800, 0, 8, 2}) + Zeros(4)},
      {"hhea", Shorts({1, 0, 800, -200, 0, 500}) + Zeros(22) + Shorts({1})},
      {"hmtx", Shorts({500, 0, 0})},
      {"loca", Shorts({0, 0, 15})},
      {"maxp", Shorts({1, 0, 2, 3, 1}) + Zeros(4) + Shorts({2}) + Zeros(16)},
      {"name", internal::NameTable(face)},
      {"post", Shorts({3}) + Zeros(30)}};
  const auto count = static_cast<int>(std::size(tables));
  std::string directory = Shorts({1, 0, count, 128, 3, 32}), bytes;
  const size_t start = 12 + 16 * std::size(tables);
  for (const auto& [tag, table] : tables) {
    bytes.resize((bytes.size() + 3) / 4 * 4);
    directory += tag + Zeros(12);
    debian_fonts::PutLong(directory, directory.size() - 8, static_cast<uint32_t>(start + bytes.size()));
    debian_fonts::PutLong(directory, directory.size() - 4, static_cast<uint32_t>(table.size()));
    bytes += table;
  }
  return directory + bytes;
}

// Face number `face` of a library made by FillLibrary.
inline Face FaceOf(size_t face) {
  static constexpr const char* kStyles[] = {"Regular", "Italic", "Bold", "Black"};
  return {"Tiny" + std::to_string(face / 4), kStyles[face % 4], static_cast<int>(face % 30000)};
}

// Writes a library of this number of faces, 500 files to a folder: of four families, three have a file for each of
// their four faces, and the fourth has one collection.
inline void FillLibrary(const test_support::TempFolder& folder, size_t faces) {
  constexpr size_t kFilesOfFolder = 500;
  size_t files = 0;
  const auto write = [&](const Face& face, const char* extension, const std::string& bytes) {
    folder.Write(std::to_string(files++ / kFilesOfFolder) + "/" + face.PostScriptName() + extension, bytes);
  };
  for (size_t family = 0; family < faces / 4; ++family) {
    std::vector<std::string> fonts;
    for (size_t face = 4 * family; face < 4 * family + 4; ++face) {
      fonts.push_back(MakeFont(FaceOf(face)));
      if (family % 4 != 3) write(FaceOf(face), ".ttf", fonts.back());
    }
    if (family % 4 == 3) write(FaceOf(4 * family), ".ttc", debian_fonts::MakeCollection(fonts));
  }
}

}  // namespace tiny_fonts
