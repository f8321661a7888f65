// Pictures in a terminal, by whatever means it has.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nexctl {

struct Picture {
  uint32_t width = 0, height = 0;
  std::vector<uint8_t> pixels;  // red, green and blue of each, on white
};

enum class PictureForm {
  kNone,    // standard output is no terminal
  kBlocks,  // characters, each of two pixels
  kSixel,
  kKitty,  // the graphics protocol that several terminals share
};

// Asks the terminal, which takes up to a fifth of a second if it does not answer.
PictureForm FormOfTerminal();
// Nothing if the bytes are no PNG.
std::optional<Picture> ReadPNG(const std::string& bytes);
// The text that shows the picture, with the line's end. Empty for kNone.
std::string Draw(const Picture& picture, PictureForm form);

}  // namespace nexctl
