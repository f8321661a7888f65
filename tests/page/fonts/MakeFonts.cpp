// make_fonts FOLDER COUNT - writes so many tiny fonts into a new folder.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "support/TinyFonts.h"

int main(int count, char** arguments) {
  if (count != 3) return 2;
  const std::filesystem::path folder = arguments[1];
  std::filesystem::create_directory(folder);
  const size_t fonts = std::strtoul(arguments[2], nullptr, 10);
  for (size_t i = 0; i < fonts; ++i) {
    const tiny_fonts::Face face = tiny_fonts::FaceOf(i);
    std::ofstream file(folder / (face.PostScriptName() + ".ttf"), std::ios::binary);
    if (!(file << tiny_fonts::MakeFont(face)).flush()) return 1;
  }
  return 0;
}
