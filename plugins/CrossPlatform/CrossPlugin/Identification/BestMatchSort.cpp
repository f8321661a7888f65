// Sorts the candidates, the best first, and traces the reason.
#include <map>
#include <utility>
#include <vector>

#include "Identification/FontMatching.h"
#include "Services/DiagnosticLog.h"
#include "host/include/TraceLines.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

// Our own merge sort, because the comparison is not a strict weak order, which the library's sorts require.
class BestMatchSort {
 public:
  explicit BestMatchSort(const Dictionary& context) : context_(context) {}

  void Sort(std::vector<Dictionary>& records, size_t begin, size_t end) {
    if (end - begin < 2) return;
    const size_t middle = begin + (end - begin) / 2;
    Sort(records, begin, middle);
    Sort(records, middle, end);
    Merge(records, begin, middle, end);
  }

  // The stage that decided between two neighbours in the result, which have always been compared.
  MatchStage StageOf(const Dictionary& first, const Dictionary& second) const {
    const auto found = stages_.find({first.Ref(), second.Ref()});
    return found == stages_.end() ? MatchStage::kNone : found->second;
  }

 private:
  void Merge(std::vector<Dictionary>& records, size_t begin, size_t middle, size_t end) {
    std::vector<Dictionary> merged;
    size_t left = begin, right = middle;
    while (left < middle && right < end) {
      MatchStage stage = MatchStage::kNone;
      const Dictionary &a = records[left], &b = records[right];
      const bool takeLeft = PickBestMatchCallBack(a, b, context_, &stage) <= 0;
      stages_[takeLeft ? std::pair(a.Ref(), b.Ref()) : std::pair(b.Ref(), a.Ref())] = stage;
      merged.push_back(records[takeLeft ? left++ : right++]);
    }
    while (left < middle) merged.push_back(records[left++]);
    while (right < end) merged.push_back(records[right++]);
    for (size_t i = 0; i < merged.size(); ++i) records[begin + i] = merged[i];
  }

  const Dictionary& context_;
  std::map<std::pair<platform::ValueRef, platform::ValueRef>, MatchStage> stages_;
};

std::string FileOf(const Dictionary& record) {
  for (const std::string_view key : {kGS_PathKey, kGS_OutlineFileNameKey}) {
    const String file = record.GetString(key);
    if (!file.IsEmpty()) return file.Text();
  }
  return "font " + record.GetString(kGS_DatabaseIDKey).Text();
}

}  // namespace

void SortByBestMatch(Array candidates, const Dictionary& context) {
  std::vector<Dictionary> records;
  for (size_t i = 0; i < candidates.Count(); ++i) records.emplace_back(candidates.At(i));
  if (records.size() < 2) return;
  BestMatchSort sort(context);
  sort.Sort(records, 0, records.size());
  for (size_t i = 0; i < records.size(); ++i) candidates.Set(i, records[i]);
  const String inDocument = context.GetString(kGS_PostScriptNameKey);
  const String name = inDocument ? inDocument : records[0].GetString(kGS_PostScriptNameKey);
  TracePreferred(records[0], records[1], name.CString(), DescribeMatchStage(sort.StageOf(records[0], records[1])));
}

void TracePreferred(const Dictionary& chosen, const Dictionary& other, const char* documentName, const char* words) {
  OutputIndentedAndFormattedString(0, trace_lines::kPreferred, FileOf(chosen).c_str(), FileOf(other).c_str(),
                                   documentName, words);
}

void TraceMatched(const Dictionary& chosen, const char* documentName, const char* words) {
  OutputIndentedAndFormattedString(0, trace_lines::kMatched, documentName, FileOf(chosen).c_str(), words);
}

}  // namespace GlyphsureSupport
