#include "Readers/Document/ZipDocument.h"

#include <zip.h>

#include <algorithm>

struct ZipDocument::Archive {
  struct Discard {
    void operator()(zip_t* archive) const { zip_discard(archive); }
  };
  std::unique_ptr<zip_t, Discard> zip;
};

namespace {

class EntryStream : public ByteStream {
 public:
  explicit EntryStream(zip_file_t* file) : mFile(file) {}

 private:
  struct Close {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
  };

  size_t ReadSome(char* out, size_t capacity) override {
    const zip_int64_t got = zip_fread(mFile.get(), out, capacity);
    if (got < 0) Fail("its compressed content is damaged");
    return static_cast<size_t>(std::max<zip_int64_t>(got, 0));
  }

  std::unique_ptr<zip_file_t, Close> mFile;
};

class FailedStream : public ByteStream {
 public:
  explicit FailedStream(std::string problem) { Fail(std::move(problem)); }

 private:
  size_t ReadSome(char*, size_t) override { return 0; }
};

}  // namespace

ZipDocument::ZipDocument(const std::string& path) : mArchive(std::make_unique<Archive>()) {
  int error = 0;
  mArchive->zip.reset(zip_open(path.c_str(), ZIP_RDONLY, &error));
  if (!mArchive->zip) mProblem = "its archive is damaged";
}

ZipDocument::~ZipDocument() = default;

std::vector<std::string> ZipDocument::Names() const {
  constexpr zip_int64_t kMost = 100'000;
  std::vector<std::string> names;
  const zip_int64_t count = mArchive->zip ? std::min(zip_get_num_entries(mArchive->zip.get(), 0), kMost) : 0;
  for (zip_int64_t i = 0; i < count; ++i) {
    const char* name = zip_get_name(mArchive->zip.get(), static_cast<zip_uint64_t>(i), 0);
    if (name) names.emplace_back(name);
  }
  return names;
}

std::unique_ptr<ByteStream> ZipDocument::Open(const std::string& name) const {
  zip_t* zip = mArchive->zip.get();
  const zip_int64_t index = zip ? zip_name_locate(zip, name.c_str(), 0) : -1;
  if (index < 0) return nullptr;
  zip_file_t* file = zip_fopen_index(zip, static_cast<zip_uint64_t>(index), 0);
  if (file) return std::make_unique<EntryStream>(file);
  const bool isEncrypted = zip_error_code_zip(zip_get_error(zip)) == ZIP_ER_NOPASSWD;
  return std::make_unique<FailedStream>(isEncrypted ? "it is encrypted" : "its archive is damaged");
}
