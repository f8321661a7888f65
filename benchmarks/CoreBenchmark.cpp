// Frequent operations of the core library: JSON against the JSON library alone, the name of a code against one map
// lookup, a log line below its level against the level check, and an uncontended lock against the system library's.
#include <yajl/yajl_gen.h>
#include <yajl/yajl_tree.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include "ErrorCodes.h"
#include "Floor.h"
#include "GLogger.h"
#include "GMutex.h"
#include "JsonParser.h"

namespace {

constexpr int kRuns = 9;
constexpr int kTimes = 20'000;

// Keeps the compiler from removing the work.
template <class T>
void Use(const T& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

std::function<void()> Repeat(const std::function<void()>& once) {
  return [once] {
    for (int i = 0; i < kTimes; ++i) once();
  };
}

const std::string kMessage =
    R"({"messageID":27,"fontID":4711,"postscriptName":"LiberationSerif-Bold","displayName":"Liberation Serif Bold",)"
    R"("workgroupIDs":[1,2,3],"setIDs":[],"isActive":true,"size":12.5,"url":"/tmp/previews/4711.png"})";

void Emit(yajl_gen generator, yajl_val value) {
  const auto text = [&](const char* bytes) {
    yajl_gen_string(generator, reinterpret_cast<const unsigned char*>(bytes), std::strlen(bytes));
  };
  if (YAJL_IS_STRING(value))
    text(value->u.string);
  else if (YAJL_IS_INTEGER(value))
    yajl_gen_integer(generator, YAJL_GET_INTEGER(value));
  else if (YAJL_IS_DOUBLE(value))
    yajl_gen_double(generator, YAJL_GET_DOUBLE(value));
  else if (YAJL_IS_TRUE(value) || YAJL_IS_FALSE(value))
    yajl_gen_bool(generator, YAJL_IS_TRUE(value));
  else if (YAJL_IS_NULL(value))
    yajl_gen_null(generator);
  else if (YAJL_IS_ARRAY(value)) {
    yajl_gen_array_open(generator);
    for (size_t i = 0; i < value->u.array.len; ++i) Emit(generator, value->u.array.values[i]);
    yajl_gen_array_close(generator);
  } else {
    yajl_gen_map_open(generator);
    for (size_t i = 0; i < value->u.object.len; ++i) {
      text(value->u.object.keys[i]);
      Emit(generator, value->u.object.values[i]);
    }
    yajl_gen_map_close(generator);
  }
}

std::string RoundTripOfTheLibrary() {
  char reason[1024];
  const yajl_val tree = yajl_tree_parse(kMessage.c_str(), reason, sizeof reason);
  const yajl_gen generator = yajl_gen_alloc(nullptr);
  yajl_gen_config(generator, yajl_gen_validate_utf8, 1);
  Emit(generator, tree);
  const unsigned char* bytes = nullptr;
  size_t length = 0;
  yajl_gen_get_buf(generator, &bytes, &length);
  std::string text(reinterpret_cast<const char*>(bytes), length);
  yajl_gen_free(generator);
  yajl_tree_free(tree);
  return text;
}

std::string RoundTrip() { return restful_mapper::Json::Parser(kMessage).root().dump(); }

void CompareJSON() {
  if (RoundTrip() != kMessage || RoundTripOfTheLibrary() != kMessage) {
    std::fprintf(stderr, "CoreBenchmark: the message does not come back as it was\n");
    std::exit(2);
  }
  benchmark::Compare("JSON round trip of 200 bytes / yajl alone", 1.6, kRuns, Repeat([] { Use(RoundTrip()); }),
                     Repeat([] { Use(RoundTripOfTheLibrary()); }));
}

void CompareCodeNames() {
  std::map<TModuleErrorCode, std::string> names;
  for (TModuleErrorCode number = 1; number <= 0x15; ++number) {
    for (TModuleErrorCode low = 0x1004; low < 0x1011; ++low) names[number << 24 | low] = "GLibXMLSerializable::kX";
  }
  const TModuleErrorCode code = 0x08001008;
  benchmark::Compare("name of a code / find in a map, copy", 2.0, kRuns,
                     Repeat([&] { Use(GetNameForErrorCode(code)); }),
                     Repeat([&] { Use(std::string(names.find(code)->second)); }));
}

void CompareLogLine() {
  GLogger* logger = GLogger::GetSharedInstance();
  logger->SetLoggingLevelForIdentifier("FileSystem", GLogger::kError);
  std::mutex mutex;
  std::map<std::string, int> levels{{"default", 2}, {"filesystem", 1}};
  const std::string identifier = "FileSystem";
  const auto floor = [&] {
    const std::lock_guard lock(mutex);
    std::string lowered = identifier;
    for (char& c : lowered) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    Use(levels.find(lowered)->second);
  };
  benchmark::Compare("log line below its level / level looked up", 5.0, kRuns,
                     Repeat([&] { logger->LogDebug(identifier, "Configuration line:\n%s", "x"); }), Repeat(floor));
}

void CompareLocks() {
  GMutex mutex;
  std::mutex plain;
  benchmark::Compare("uncontended GMutex / std::mutex", 6.0, kRuns, Repeat([&] {
                       mutex.Lock();
                       mutex.Unlock();
                     }),
                     Repeat([&] {
                       plain.lock();
                       plain.unlock();
                     }));
}

}  // namespace

int main() {
  benchmark::Begin();
  CompareJSON();
  CompareCodeNames();
  CompareLogLine();
  CompareLocks();
  return benchmark::Finish();
}
