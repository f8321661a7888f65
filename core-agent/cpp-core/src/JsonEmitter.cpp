#include "JsonEmitter.h"

#include <cstring>
#include <new>
#include <stdexcept>

#include "JsonParser.h"
#include "XCore/ECFExtensions/TextConversion.h"

namespace restful_mapper::Json {

void yajl_gen_error(yajl_gen_status status) {
  switch (status) {
    case yajl_gen_status_ok: return;
    case yajl_gen_keys_must_be_strings: throw std::runtime_error("A non-string JSON key was passed");
    case yajl_max_depth_exceeded: throw std::runtime_error("YAJL's maximum generation depth was exceeded");
    case yajl_gen_in_error_state:
      throw std::runtime_error("A JSON generator function was called while in an error state");
    case yajl_gen_generation_complete: throw std::runtime_error("A complete JSON document has been generated");
    case yajl_gen_invalid_number:
      throw std::runtime_error("An invalid floating point value was passed to the JSON generator (infinity or NaN)");
    case yajl_gen_no_buf:
      throw std::runtime_error("A print callback was passed in, so there is no internal buffer to get from");
    case yajl_gen_invalid_string: throw std::runtime_error("An invalid UTF-8 string was passed to the JSON generator");
  }
}

Emitter::Emitter() { reset(); }

void Emitter::reset() {
  output_.clear();
  generator_.reset(yajl_gen_alloc(nullptr));
  if (!generator_) throw std::bad_alloc();
  yajl_gen_config(generator_.get(), yajl_gen_validate_utf8, 1);
}

void Emitter::EmitText(const char* text, size_t length) {
  yajl_gen_error(yajl_gen_string(generator_.get(), reinterpret_cast<const unsigned char*>(text), length));
}

void Emitter::emit(const std::string& text) {
  const std::string utf8 = local_to_utf8(text);
  EmitText(utf8.data(), utf8.size());
}

void Emitter::emit(int64_t value) { yajl_gen_error(yajl_gen_integer(generator_.get(), value)); }
void Emitter::emit(double value) { yajl_gen_error(yajl_gen_double(generator_.get(), value)); }
void Emitter::emit(bool value) { yajl_gen_error(yajl_gen_bool(generator_.get(), value)); }
void Emitter::emit_null() { yajl_gen_error(yajl_gen_null(generator_.get())); }
void Emitter::emit_array_open() { yajl_gen_error(yajl_gen_array_open(generator_.get())); }
void Emitter::emit_array_close() { yajl_gen_error(yajl_gen_array_close(generator_.get())); }
void Emitter::emit_map_open() { yajl_gen_error(yajl_gen_map_open(generator_.get())); }
void Emitter::emit_map_close() { yajl_gen_error(yajl_gen_map_close(generator_.get())); }

void Emitter::emit_json(const std::string& text) {
  const Parser parser(text);
  emit_tree(parser.root().value());
}

// The generator limits the depth, so the recursion cannot overflow the stack.
void Emitter::emit_tree(yajl_val value) {
  if (!value) return;
  switch (value->type) {
    case yajl_t_string: EmitText(value->u.string, std::strlen(value->u.string)); break;
    case yajl_t_number:
      if (YAJL_IS_INTEGER(value))
        emit(static_cast<int64_t>(YAJL_GET_INTEGER(value)));
      else if (YAJL_IS_DOUBLE(value))
        emit(YAJL_GET_DOUBLE(value));
      break;
    case yajl_t_object: EmitObject(value); break;
    case yajl_t_array: EmitArray(value); break;
    case yajl_t_true: emit(true); break;
    case yajl_t_false: emit(false); break;
    case yajl_t_null: emit_null(); break;
    case yajl_t_any: break;  // not the type of any value
  }
}

void Emitter::EmitObject(yajl_val value) {
  const auto& object = value->u.object;
  emit_map_open();
  for (size_t i = 0; i < object.len; ++i) {
    EmitText(object.keys[i], std::strlen(object.keys[i]));
    emit_tree(object.values[i]);
  }
  emit_map_close();
}

void Emitter::EmitArray(yajl_val value) {
  const auto& array = value->u.array;
  emit_array_open();
  for (size_t i = 0; i < array.len; ++i) emit_tree(array.values[i]);
  emit_array_close();
}

std::string Emitter::dump() {
  if (!output_.empty()) return output_;
  const unsigned char* text = nullptr;
  size_t length = 0;
  yajl_gen_error(yajl_gen_get_buf(generator_.get(), &text, &length));
  output_.assign(reinterpret_cast<const char*>(text), length);
  return output_;
}

}  // namespace restful_mapper::Json
