// The additions of Node. Allocates with malloc, because yajl_tree_free calls free.
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "JsonNode.h"

namespace restful_mapper::Json {

namespace {

struct FreeTree {
  void operator()(yajl_val value) const { yajl_tree_free(value); }
};
using OwnedValue = std::unique_ptr<yajl_val_s, FreeTree>;

OwnedValue NewValue(yajl_type type) {
  OwnedValue value(static_cast<yajl_val>(std::calloc(1, sizeof(yajl_val_s))));
  if (value) value->type = type;
  return value;
}

OwnedValue NewString(const std::string& text) {
  OwnedValue value = NewValue(yajl_t_string);
  if (!value) return value;
  value->u.string = strdup(text.c_str());
  if (!value->u.string) value.reset();
  return value;
}

OwnedValue NewNumber(long long integer, double real, unsigned int flags, const char* text) {
  OwnedValue value = NewValue(yajl_t_number);
  if (!value) return value;
  value->u.number = {integer, real, strdup(text), flags};
  if (!value->u.number.r) value.reset();
  return value;
}

// Sets both bits, as the parser does for an integer.
OwnedValue NewInteger(int64_t integer) {
  char text[32];
  std::snprintf(text, sizeof text, "%lld", static_cast<long long>(integer));
  return NewNumber(integer, static_cast<double>(integer), YAJL_NUMBER_INT_VALID | YAJL_NUMBER_DOUBLE_VALID, text);
}

// Sets the double bit only, so that 5.0 is not written as an integer.
OwnedValue NewDouble(double real) {
  char text[32];
  std::snprintf(text, sizeof text, "%.17g", real);
  return NewNumber(0, real, YAJL_NUMBER_DOUBLE_VALID, text);
}

OwnedValue NewBool(bool value) { return NewValue(value ? yajl_t_true : yajl_t_false); }

// Grows in steps, so that a list of many thousand fonts takes no quadratic time. Only malloc knows the room that is
// left: the tree has no place for it, and the parser's own arrays have none.
template <class T>
bool GrowByOne(T*& items, size_t count) {
  const size_t needed = (count + 1) * sizeof(T);  // NOLINT(bugprone-sizeof-expression): array of pointers
  if (items && malloc_usable_size(items) >= needed) return true;
  void* grown = std::realloc(items, needed + needed / 2);
  if (grown) items = static_cast<T*>(grown);
  return grown != nullptr;
}

bool AppendToObject(yajl_val owner, const std::string& key, OwnedValue value, Node& out) {
  auto& object = owner->u.object;
  if (!value || !GrowByOne(object.keys, object.len) || !GrowByOne(object.values, object.len)) return false;
  const char* ownKey = strdup(key.c_str());
  if (!ownKey) return false;
  object.keys[object.len] = ownKey;
  object.values[object.len] = value.get();
  ++object.len;
  out = Node(key, value.release());
  return true;
}

bool AppendToArray(yajl_val owner, OwnedValue value, Node& out) {
  auto& array = owner->u.array;
  if (!value || !GrowByOne(array.values, array.len)) return false;
  array.values[array.len] = value.get();
  ++array.len;
  out = Node("", value.release());
  return true;
}

}  // namespace

#define ADD_OPERATIONS(Operation, Parameter, argument, make)                          \
  bool Node::Operation(const std::string& key, Parameter argument, Node& out) const { \
    Require(is_map(), "OBJECT");                                                      \
    return AppendToObject(value_, key, make(argument), out);                          \
  }                                                                                   \
  bool Node::Operation(Parameter argument, Node& out) const {                         \
    Require(is_array(), "ARRAY");                                                     \
    return AppendToArray(value_, make(argument), out);                                \
  }
ADD_OPERATIONS(add_string, const std::string&, value, NewString)
ADD_OPERATIONS(add_int, int, value, NewInteger)
ADD_OPERATIONS(add_int64, int64_t, value, NewInteger)
ADD_OPERATIONS(add_double, double, value, NewDouble)
ADD_OPERATIONS(add_bool, bool, value, NewBool)
#undef ADD_OPERATIONS

#define ADD_OPERATIONS(Operation, type)                           \
  bool Node::Operation(const std::string& key, Node& out) const { \
    Require(is_map(), "OBJECT");                                  \
    return AppendToObject(value_, key, NewValue(type), out);      \
  }                                                               \
  bool Node::Operation(Node& out) const {                         \
    Require(is_array(), "ARRAY");                                 \
    return AppendToArray(value_, NewValue(type), out);            \
  }
ADD_OPERATIONS(add_array, yajl_t_array)
ADD_OPERATIONS(add_map, yajl_t_object)
#undef ADD_OPERATIONS

}  // namespace restful_mapper::Json
