#include "nexctl/Picture.h"

#include <png.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "platform/Base64.h"

namespace nexctl {

namespace {

// The terminal passes on each key at once, and shows none, while this exists.
class RawTerminal {
 public:
  RawTerminal() : isRaw_(tcgetattr(STDIN_FILENO, &before_) == 0) {
    termios raw = before_;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    if (isRaw_) tcsetattr(STDIN_FILENO, TCSANOW, &raw);
  }
  ~RawTerminal() {
    if (isRaw_) tcsetattr(STDIN_FILENO, TCSANOW, &before_);
  }
  RawTerminal(const RawTerminal&) = delete;
  RawTerminal& operator=(const RawTerminal&) = delete;

 private:
  termios before_{};
  const bool isRaw_;
};

// What the terminal says about itself: "ESC [ ? 62 ; 4 ; 22 c".
std::string AttributesOfTerminal() {
  constexpr std::string_view kQuestion = "\033[c";
  constexpr int kPatience = 200;  // milliseconds
  const RawTerminal raw;
  if (write(STDOUT_FILENO, kQuestion.data(), kQuestion.size()) != static_cast<ssize_t>(kQuestion.size())) return "";
  std::string answer;
  pollfd polled{STDIN_FILENO, POLLIN, 0};
  while (poll(&polled, 1, kPatience) == 1) {
    char byte = 0;
    if (read(STDIN_FILENO, &byte, 1) != 1) break;
    answer += byte;
    if (byte == 'c') break;
  }
  return answer;
}

bool HasSixel(const std::string& attributes) {
  return attributes.find(";4;") != std::string::npos || attributes.find(";4c") != std::string::npos;
}

bool HasKittyGraphics() {
  const char* program = std::getenv("TERM_PROGRAM");
  const char* type = std::getenv("TERM");
  const std::string_view name = program ? program : "", terminal = type ? type : "";
  return std::getenv("KITTY_WINDOW_ID") || terminal.find("kitty") != std::string_view::npos || name == "WezTerm" ||
         name == "ghostty";
}

std::string DrawKitty(const Picture& picture) {
  constexpr size_t kChunk = 4096;
  const std::string_view bytes(reinterpret_cast<const char*>(picture.pixels.data()), picture.pixels.size());
  const std::string text = platform::EncodeBase64(bytes);
  std::string out;
  for (size_t at = 0; at < text.size(); at += kChunk) {
    out += "\033_G";
    if (at == 0) {
      out += "a=T,q=2,f=24,s=" + std::to_string(picture.width) + ",v=" + std::to_string(picture.height) + ",";
    }
    out += std::string("m=") + (at + kChunk < text.size() ? "1" : "0") + ";" + text.substr(at, kChunk) + "\033\\";
  }
  return out + "\n";
}

// A cube of 216 colours.
constexpr uint32_t kSteps = 6, kColours = kSteps * kSteps * kSteps;
uint32_t ColourAt(const Picture& picture, uint32_t x, uint32_t y) {
  uint32_t index = 0;
  for (size_t i = 0; i < 3; ++i) {
    index = index * kSteps + (picture.pixels[3 * (size_t{y} * picture.width + x) + i] * (kSteps - 1) + 127) / 255;
  }
  return index;
}

// One colour of a band of six rows. Each character is a column of six pixels.
std::string BandOf(const Picture& picture, uint32_t top, uint32_t colour) {
  std::string band;
  bool isUsed = false;
  for (uint32_t x = 0; x < picture.width; ++x) {
    char bits = 0;
    for (uint32_t y = top; y < std::min(top + 6, picture.height); ++y) {
      if (ColourAt(picture, x, y) == colour) bits = static_cast<char>(bits | 1 << (y - top));
    }
    isUsed = isUsed || bits != 0;
    band += static_cast<char>('?' + bits);
  }
  return isUsed ? "#" + std::to_string(colour) + band + "$" : "";
}

std::string DrawSixel(const Picture& picture) {
  std::string out = "\033Pq";
  std::array<bool, kColours> used{};
  for (uint32_t y = 0; y < picture.height; ++y) {
    for (uint32_t x = 0; x < picture.width; ++x) used.at(ColourAt(picture, x, y)) = true;
  }
  const auto percent = [](uint32_t step) { return std::to_string(step * 100 / (kSteps - 1)); };
  for (uint32_t colour = 0; colour < used.size(); ++colour) {
    if (!used.at(colour)) continue;
    out += "#" + std::to_string(colour) + ";2;" + percent(colour / (kSteps * kSteps)) + ";" +
           percent(colour / kSteps % kSteps) + ";" + percent(colour % kSteps);
  }
  for (uint32_t top = 0; top < picture.height; top += 6) {
    for (uint32_t colour = 0; colour < used.size(); ++colour) {
      if (used.at(colour)) out += BandOf(picture, top, colour);
    }
    out += "-";
  }
  return out + "\033\\\n";
}

bool IsDark(const Picture& picture, uint32_t x, uint32_t y) {
  if (y >= picture.height) return false;
  const uint8_t* pixel = picture.pixels.data() + 3 * (size_t{y} * picture.width + x);
  return pixel[0] + pixel[1] + pixel[2] < 3 * 144;
}

std::string DrawBlocks(const Picture& picture) {
  std::string out;
  for (uint32_t y = 0; y < picture.height; y += 2) {
    std::string line;
    size_t end = 0;  // without blanks
    for (uint32_t x = 0; x < picture.width; ++x) {
      const bool upper = IsDark(picture, x, y), lower = IsDark(picture, x, y + 1);
      line += upper && lower ? "\u2588" : upper ? "\u2580" : lower ? "\u2584" : " ";
      if (upper || lower) end = line.size();
    }
    if (end > 0) out += line.substr(0, end) + "\n";
  }
  return out;
}

}  // namespace

PictureForm FormOfTerminal() {
  if (isatty(STDOUT_FILENO) == 0) return PictureForm::kNone;
  if (HasKittyGraphics()) return PictureForm::kKitty;
  // A terminal without a type, or a simple one, would show the question.
  const char* type = std::getenv("TERM");
  const bool understands = type && *type != '\0' && std::string_view(type) != "dumb" && isatty(STDIN_FILENO) != 0;
  return understands && HasSixel(AttributesOfTerminal()) ? PictureForm::kSixel : PictureForm::kBlocks;
}

std::optional<Picture> ReadPNG(const std::string& bytes) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_memory(&image, bytes.data(), bytes.size())) return std::nullopt;
  image.format = PNG_FORMAT_RGB;
  Picture picture{image.width, image.height, std::vector<uint8_t>(PNG_IMAGE_SIZE(image))};
  const png_color white{255, 255, 255};
  if (!png_image_finish_read(&image, &white, picture.pixels.data(), 0, nullptr)) return std::nullopt;
  return picture;
}

std::string Draw(const Picture& picture, PictureForm form) {
  switch (form) {
    case PictureForm::kNone: return "";
    case PictureForm::kBlocks: return DrawBlocks(picture);
    case PictureForm::kSixel: return DrawSixel(picture);
    case PictureForm::kKitty: return DrawKitty(picture);
  }
  return "";
}

}  // namespace nexctl
