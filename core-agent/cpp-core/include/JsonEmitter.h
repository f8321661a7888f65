// Writes compact JSON text, piece by piece or from a tree. Every operation throws std::runtime_error with
// yajl_gen_error's words if the generator refuses: a key that is no text, more than a whole document, 128 levels, an
// infinity, malformed UTF-8. One thread at a time.
#pragma once

#include <yajl/yajl_gen.h>
#include <yajl/yajl_tree.h>

#include <cstdint>
#include <memory>
#include <string>

namespace restful_mapper::Json {

// Turns the generator's status into an exception; nothing for success.
void yajl_gen_error(yajl_gen_status status);

class Emitter {
 public:
  Emitter();
  Emitter(const Emitter&) = delete;
  Emitter& operator=(const Emitter&) = delete;

  void reset();  // begins again

  void emit(const std::string& text);  // from the local character set; also the way to write a key
  void emit(const char* text) { emit(std::string(text)); }
  void emit(int value) { emit(static_cast<int64_t>(value)); }
  void emit(int64_t value);
  void emit(double value);
  void emit(bool value);
  void emit_null();
  void emit_json(const std::string& text);  // a value given as JSON text; throws what Parser::load throws
  // The value with all below it; the bytes of texts as they are, unlike emit. Nothing for null, and nothing for a
  // number that fits neither an integer nor a double.
  void emit_tree(yajl_val value);
  void emit_array_open();
  void emit_array_close();
  void emit_map_open();
  void emit_map_close();

  // The text so far. Once it was given out it stays the same until reset, whatever was emitted since.
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
