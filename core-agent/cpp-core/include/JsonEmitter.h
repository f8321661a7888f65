// Writes compact JSON text, piece by piece or from a tree. Every operation throws std::runtime_error with
// yajl_gen_error's text if the generator refuses: a key that is not text, more than one document, 128 levels, an
// infinity, malformed UTF-8. Use by one thread at a time.
#pragma once

#include <yajl/yajl_gen.h>
#include <yajl/yajl_tree.h>

#include <cstdint>
#include <memory>
#include <string>

namespace restful_mapper::Json {

// Throws an exception for the generator's status; does nothing for success.
void yajl_gen_error(yajl_gen_status status);

class Emitter {
 public:
  Emitter();
  Emitter(const Emitter&) = delete;
  Emitter& operator=(const Emitter&) = delete;

  void reset();  // starts anew

  void emit(const std::string& text);  // from the local character set; also writes a key
  void emit(const char* text) { emit(std::string(text)); }
  void emit(int value) { emit(static_cast<int64_t>(value)); }
  void emit(int64_t value);
  void emit(double value);
  void emit(bool value);
  void emit_null();
  void emit_json(const std::string& text);  // a value as JSON text; throws like Parser::load
  // Writes the value and everything below it. Writes the bytes of texts unchanged, unlike emit. Writes nothing for
  // null, and nothing for a number that fits neither an integer nor a double.
  void emit_tree(yajl_val value);
  void emit_array_open();
  void emit_array_close();
  void emit_map_open();
  void emit_map_close();

  // Returns the text so far. After the first call the result stays the same until reset, whatever is emitted.
  std::string dump();

 private:
  struct FreeGenerator {
    void operator()(yajl_gen generator) const { yajl_gen_free(generator); }
  };

  void EmitText(const char* text, size_t length);
  void EmitObject(yajl_val value);
  void EmitArray(yajl_val value);

  std::unique_ptr<yajl_gen_t, FreeGenerator> generator_;
  std::string output_;
};

}  // namespace restful_mapper::Json
