#include "agent/unpacking/FontUnpacker.h"

#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <bit>
#include <memory>
#include <new>

#include "agent/unpacking/UnpackMessages.h"

namespace agent {

namespace {

constexpr size_t kHeaderSize = 12, kEntrySize = 16;
constexpr size_t kAdjustmentAt = 8;  // the checksum of the whole file, in the table "head"
constexpr FT_ULong kHead = FT_MAKE_TAG('h', 'e', 'a', 'd');

struct FreeFace {
  void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using Face = std::unique_ptr<FT_FaceRec_, FreeFace>;

struct Table {
  FT_ULong tag = 0;
  std::string bytes;
};

void Put(std::string& out, uint32_t value, size_t size) {
  for (size_t i = size; i-- > 0;) out += static_cast<char>(value >> (8 * i));
}

// The sum of the file's words, the last one filled up with zeros.
uint32_t SumOf(std::string_view bytes) {
  uint32_t sum = 0;
  for (size_t i = 0; i < bytes.size(); ++i) sum += uint32_t{static_cast<uint8_t>(bytes[i])} << (24 - 8 * (i % 4));
  return sum;
}

std::vector<Table> TablesOf(FT_Face face, size_t& total) {
  FT_ULong count = 0, length = 0;
  if (FT_Sfnt_Table_Info(face, 0, nullptr, &count) != 0) throw UnpackError("has no tables");
  std::vector<Table> tables;
  for (FT_UInt i = 0; i < count; ++i) {
    Table table;
    // An empty table has no information.
    if (FT_Sfnt_Table_Info(face, i, &table.tag, &length) != 0) continue;
    total += length;
    if (total > kLargestFont) throw UnpackError("is too large");
    table.bytes.resize(length);
    if (FT_Load_Sfnt_Table(face, table.tag, 0, reinterpret_cast<FT_Byte*>(table.bytes.data()), &length) != 0) {
      throw UnpackError("a table can't be read");
    }
    if (table.tag == kHead && length >= kAdjustmentAt + 4) table.bytes.replace(kAdjustmentAt, 4, 4, '\0');
    tables.push_back(std::move(table));
  }
  if (tables.empty()) throw UnpackError("has no tables");
  std::ranges::sort(tables, {}, &Table::tag);
  return tables;
}

// The tables are in the order of their tags.
std::string FileOf(const std::vector<Table>& tables, bool isPostScript) {
  const auto count = static_cast<uint32_t>(tables.size());
  const uint32_t power = std::bit_floor(count);
  std::string file;
  Put(file, isPostScript ? FT_MAKE_TAG('O', 'T', 'T', 'O') : 0x00010000, 4);
  Put(file, count, 2);
  Put(file, power * kEntrySize, 2);
  Put(file, static_cast<uint32_t>(std::countr_zero(power)), 2);
  Put(file, (count - power) * kEntrySize, 2);
  std::string bodies;
  size_t head = 0;
  for (const Table& table : tables) {
    const size_t at = kHeaderSize + count * kEntrySize + bodies.size();
    if (table.tag == kHead && table.bytes.size() >= kAdjustmentAt + 4) head = at;
    Put(file, static_cast<uint32_t>(table.tag), 4);
    Put(file, SumOf(table.bytes), 4);
    Put(file, static_cast<uint32_t>(at), 4);
    Put(file, static_cast<uint32_t>(table.bytes.size()), 4);
    bodies += table.bytes;
    bodies.resize((bodies.size() + 3) / 4 * 4);
  }
  file += bodies;
  if (head != 0) {
    std::string adjustment;
    Put(adjustment, 0xB1B0AFBA - SumOf(file), 4);
    file.replace(head + kAdjustmentAt, 4, adjustment);
  }
  return file;
}

}  // namespace

FontUnpacker::FontUnpacker() {
  if (FT_Init_FreeType(&library_) != 0) throw std::bad_alloc();
}
FontUnpacker::~FontUnpacker() { FT_Done_FreeType(library_); }

std::vector<std::string> FontUnpacker::Unpack(std::string_view bytes) const {
  if (!bytes.starts_with("wOFF") && !bytes.starts_with("wOF2")) throw UnpackError("is no packed font file");
  std::vector<std::string> files;
  size_t total = 0;
  FT_Long count = 1;
  for (FT_Long i = 0; i < count; ++i) {
    FT_Face opened = nullptr;
    const auto* data = reinterpret_cast<const FT_Byte*>(bytes.data());
    const FT_Error error = FT_New_Memory_Face(library_, data, static_cast<FT_Long>(bytes.size()), i, &opened);
    const Face face(error == 0 ? opened : nullptr);
    if (!face) throw UnpackError("FreeType can't open it: error " + std::to_string(error));
    count = face->num_faces;
    if (count > kMostFontsInAFile) throw UnpackError("contains too many fonts");
    FT_ULong length = 0;
    const bool isPostScript = FT_Load_Sfnt_Table(face.get(), FT_MAKE_TAG('C', 'F', 'F', ' '), 0, nullptr, &length) == 0;
    files.push_back(FileOf(TablesOf(face.get(), total), isPostScript));
  }
  return files;
}

}  // namespace agent
