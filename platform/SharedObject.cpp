#include "platform/SharedObject.h"

#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/Descriptor.h"

namespace platform {

namespace {

using FileHeader = ElfW(Ehdr);
using ProgramHeader = ElfW(Phdr);
using SectionHeader = ElfW(Shdr);

constexpr uint64_t kBeyondAnyFile = std::numeric_limits<uint64_t>::max();
constexpr unsigned char kNativeClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;

uint64_t End(uint64_t offset, uint64_t size) { return offset > kBeyondAnyFile - size ? kBeyondAnyFile : offset + size; }

bool IsNativeObject(const FileHeader& header) {
  return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 && header.e_ident[EI_CLASS] == kNativeClass &&
         header.e_phentsize == sizeof(ProgramHeader) &&
         (header.e_shnum == 0 || header.e_shentsize == sizeof(SectionHeader));
}

template <class Record>
bool ReadAt(int file, uint64_t offset, Record& record) {
  return pread(file, &record, sizeof record, static_cast<off_t>(offset)) == static_cast<ssize_t>(sizeof record);
}

// The file size that the headers require.
uint64_t NeededSize(int file, const FileHeader& header) {
  uint64_t needed = std::max(End(header.e_phoff, uint64_t{header.e_phnum} * sizeof(ProgramHeader)),
                             End(header.e_shoff, uint64_t{header.e_shnum} * sizeof(SectionHeader)));
  for (unsigned i = 0; i < header.e_phnum; ++i) {
    ProgramHeader segment;
    if (!ReadAt(file, End(header.e_phoff, i * sizeof segment), segment)) break;  // truncated
    needed = std::max(needed, End(segment.p_offset, segment.p_filesz));
  }
  for (unsigned i = 0; i < header.e_shnum; ++i) {
    SectionHeader section;
    if (!ReadAt(file, End(header.e_shoff, i * sizeof section), section)) break;
    if (section.sh_type != SHT_NOBITS) needed = std::max(needed, End(section.sh_offset, section.sh_size));
  }
  return needed;
}

}  // namespace

std::string ProblemOfSharedObject(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat info;
  FileHeader header;
  if (!file || fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode) || !ReadAt(file.Get(), 0, header) ||
      !IsNativeObject(header)) {
    return "";  // the linker reports what is wrong
  }
  const auto size = static_cast<uint64_t>(info.st_size);
  const uint64_t needed = NeededSize(file.Get(), header);
  if (needed <= size) return "";
  return path + ": the file is incomplete: " + std::to_string(size) + " of at least " + std::to_string(needed) +
         " bytes";
}

}  // namespace platform
