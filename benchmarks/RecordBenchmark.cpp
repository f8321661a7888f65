// Many font records: the memory of a record, and the time of merging, lookups and the font data cache with ten times or
// a hundred times as many names.
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "Bridge/FontDataPreviouslyGottenFromDatabase.h"
#include "Floor.h"
#include "Identification/FontKeys.h"
#include "Identification/FontMerging.h"
#include "Identification/FontRecords.h"

using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

constexpr int kRuns = 5;
size_t allocations = 0;

// As a scan finds names in a document: each name many times.
std::vector<std::string> RawNames(size_t count, size_t distinct) {
  std::vector<std::string> names;
  for (size_t i = 0; i < count; ++i) names.push_back("Family" + std::to_string(i * 7919 % distinct) + "-Bold");
  return names;
}

std::function<void()> Merging(const std::vector<std::string>& names) {
  return [&names] {
    const Array fonts = Array::Create();
    MergeFontsIntoFontsArray(CreateFontArrayFromVectorOfPostscriptNames(names), fonts);
  };
}

std::function<void()> Adding(const std::vector<std::string>& names) {
  return [&names] {
    const Array fonts = Array::Create();
    FontNameIndex index(fonts);
    for (const std::string& name : names) AddFontToArray(String::FromUTF8(name), fonts, false, &index);
  };
}

void FillCache(uint32_t count) {
  FontDataPreviouslyGottenFromDatabase::DeleteAll();
  for (uint32_t id = 1; id <= count; ++id) {
    FontOrSetInfoRec record;
    record.fields.nDatabaseID = id;
    record.activationState = kStateActive;
    record.fontInfo = CreateGlyphsureDictionary(String::FromUTF8("Font" + std::to_string(id)));
    record.fontInfo.Set(kGS_ActivationStateKey, "2");
    FontDataPreviouslyGottenFromDatabase::Add(id, record);
  }
}

// A thousand lookups, half of them for present names.
double LookUpInCache(uint32_t count) {
  FillCache(count);
  return benchmark::Measure([count] {
    for (uint32_t i = 0; i < 1000; ++i) {
      Dictionary record;
      uint32_t id = 0;
      FontDataPreviouslyGottenFromDatabase::CreateCopyOfGlyphsureDataForActiveFont(
          "Font" + std::to_string(i * 2 * count / 1000), record, id);
    }
  });
}

// Returns the number of allocations for a record with these keys, set one after the other.
template <class Keys>
size_t AllocationsOf(const Keys& keys) {
  const size_t before = allocations;
  Dictionary record = Dictionary::Create();
  for (const std::string_view key : keys) {
    if (key.data() != nullptr) record.Set(key, "value");
  }
  return allocations - before;
}

void ReportAllocations() {
  constexpr std::string_view kBare[] = {kGS_PostScriptNameKey};
  constexpr std::string_view kSlug[] = {
      kGS_PostScriptNameKey,  kGS_KindKey,           kGS_FoundryKey,         kGS_VersionKey,         kGS_ChecksumKey,
      kGS_KerningChecksumKey, kGS_Glyphsure_1_2_Key, kGS_OutlineFileSizeKey, kGS_OutlineFileNameKey, kGS_FamilyKey};
  benchmark::Report("allocations of a bare record to its keys", AllocationsOf(kBare), std::size(kBare), 3, "");
  benchmark::Report("allocations of a slug record to its keys", AllocationsOf(kSlug), std::size(kSlug), 1.5, "");
  benchmark::Report("allocations of a full record to its keys", AllocationsOf(kAllGlyphsureCFKeys),
                    std::size(kAllGlyphsureCFKeys) - 1, 1.5, "");
}

}  // namespace

void* operator new(size_t size) {
  ++allocations;
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

int main() {
  benchmark::Begin();
  ReportAllocations();
  const std::vector<std::string> few = RawNames(20000, 1000), many = RawNames(20000, 10000);
  benchmark::Compare("merge 20,000 names, 10,000 distinct to 1,000", 20, kRuns, Merging(many), Merging(few));
  benchmark::Compare("add 20,000 names, 10,000 distinct to 1,000", 20, kRuns, Adding(many), Adding(few));
  const std::vector<std::string> twice = RawNames(40000, 20000);
  benchmark::Compare("merge twice as many distinct names", 4, kRuns, Merging(twice), Merging(many));
  double best = LookUpInCache(20000), floor = LookUpInCache(200);
  for (int i = 1; i < kRuns; ++i) {
    best = std::min(best, LookUpInCache(20000));
    floor = std::min(floor, LookUpInCache(200));
  }
  benchmark::Report("look-up in a cache of 20,000 fonts to 200", best * 1000, floor * 1000, 10, "ms");
  return benchmark::Finish();
}
