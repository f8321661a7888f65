// Searches large documents for font names with the two functions that read their bytes: the raw scan, for any document,
// and the reader of the host's documents. The floor reads the document into memory at once and searches it for the
// first byte of the names' mark; or for the whole mark, where every byte of the document is that first byte.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Floor.h"
#include "Readers/CommonFunctionality.h"
#include "photoshop/PhotoshopFontUtils.h"

namespace {

constexpr size_t kMiB = size_t{1} << 20;
constexpr int kRuns = 5;

[[noreturn]] void FailToUse(const std::string& path) { benchmark::Fail(path + ": " + std::strerror(errno)); }

// Text of a document that names one font, in ASCII.
std::string FontSetOf(const std::string& name) {
  std::string utf16;
  for (const char c : name) utf16 += std::string(1, '\0') + c;
  return "/FontSet [ << /Name (\xFE\xFF" + utf16 + ") /Script 0 >> ]";
}

// A document in the folder for temporary files, deleted with this object. `fill` writes each MiB of it. The texts are
// at equal distances, the last one at the end.
class Document {
 public:
  Document(size_t size, const std::function<void(std::string& block)>& fill, const std::vector<std::string>& texts) {
    const char* folder = std::getenv("TMPDIR");
    mPath = std::string(folder ? folder : "/tmp") + "/raw-scan-XXXXXX.psd";
    const int file = mkostemps(mPath.data(), 4, 0);
    if (file < 0) FailToUse(mPath);
    std::string block(kMiB, '\0');
    const size_t blocks = size / kMiB;
    for (size_t i = 0; i < blocks; ++i) {
      fill(block);
      for (size_t t = 0; t < texts.size(); ++t) {
        if (i == (t + 1) * blocks / texts.size() - 1) block.replace(kMiB - texts[t].size(), texts[t].size(), texts[t]);
      }
      if (write(file, block.data(), kMiB) != static_cast<ssize_t>(kMiB)) FailToUse(mPath);
    }
    close(file);
  }
  ~Document() { unlink(mPath.c_str()); }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  const std::string& Path() const { return mPath; }

 private:
  std::string mPath;
};

void FillWithNoise(std::string& block) { benchmark::FillWithNoise(block); }

volatile size_t sSink;  // receives results, so that the compiler cannot remove the work

// Reads the whole file and searches it. `search` takes the first byte and the end.
template <class Search>
void ReadAnd(const std::string& path, size_t size, const Search& search) {
  const int file = open(path.c_str(), O_RDONLY);
  const auto bytes = std::make_unique_for_overwrite<char[]>(size);
  size_t have = 0;
  while (have < size) {
    const ssize_t got = read(file, bytes.get() + have, size - have);
    if (got <= 0) FailToUse(path);
    have += static_cast<size_t>(got);
  }
  close(file);
  sSink = search(bytes.get(), bytes.get() + size);
}

size_t CountSlashes(const char* from, const char* end) {
  size_t count = 0;
  while ((from = static_cast<const char*>(std::memchr(from, '/', static_cast<size_t>(end - from))))) {
    ++count;
    ++from;
  }
  return count;
}

size_t FindFontSet(const char* from, const char* end) {
  constexpr std::string_view kPattern = "/FontSet [";
  return memmem(from, static_cast<size_t>(end - from), kPattern.data(), kPattern.size()) != nullptr;
}

void Expect(size_t expected, const std::vector<std::string>& names) {
  if (names.size() == expected) return;
  benchmark::Fail(std::to_string(names.size()) + " names found instead of " + std::to_string(expected));
}

void Scan(const Document& document, size_t expected) {
  std::vector<std::string> names;
  CommonFunctionality::GetFontNamesFromNonXMPSectionOfAdobeDocument(document.Path().c_str(), names);
  Expect(expected, names);
}

void ReadFonts(const Document& document, size_t expected) {
  std::vector<std::string> names;
  constexpr bool kIsOpening = true;
  PhotoshopFontUtils::GetDocumentFonts(document.Path(), names, kIsOpening);
  Expect(expected, names);
}

// `limit` is the greatest time, as a multiple of the floor's.
void CompareBoth(const std::string& what, const Document& document, size_t expected, double limit,
                 const std::function<void()>& floor) {
  benchmark::Compare(("scan, " + what).c_str(), limit, kRuns, [&] { Scan(document, expected); }, floor);
  benchmark::Compare(("document fonts, " + what).c_str(), limit, kRuns, [&] { ReadFonts(document, expected); }, floor);
}

void MeasureAll() {
  constexpr size_t kLarge = 512 * kMiB, kImage = 64 * kMiB;
  {
    const Document document(kLarge, FillWithNoise, {FontSetOf("First"), FontSetOf("Second"), FontSetOf("Last")});
    CompareBoth("512 MiB, 3 names", document, 3, 1.2, [&] { ReadAnd(document.Path(), kLarge, CountSlashes); });
    // The greatest memory allowed: the document's size and 64 MiB, for readers that keep it whole.
    constexpr size_t kMost = kLarge / kMiB + 64;
    benchmark::Report("peak memory, 512 MiB", benchmark::PeakOf([&] {
                        Scan(document, 3);
                        ReadFonts(document, 3);
                      }),
                      static_cast<double>(kMost), 1, "MiB");
  }
  {
    const Document document(kLarge, FillWithNoise, {});
    CompareBoth("512 MiB, no text", document, 0, 1.2, [&] { ReadAnd(document.Path(), kLarge, CountSlashes); });
  }
  {
    // The worst case for a search by the first byte.
    const Document document(kImage, [](std::string& block) { block.assign(kMiB, '/'); }, {});
    CompareBoth("64 MiB of 0x2F", document, 0, 2, [&] { ReadAnd(document.Path(), kImage, FindFontSet); });
  }
}

}  // namespace

int main() { return benchmark::Run(MeasureAll); }
