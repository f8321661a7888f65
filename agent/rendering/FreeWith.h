// The deleter of a unique_ptr to an object of a C library: FreeWith<FcPatternDestroy>.
#pragma once

namespace agent {

template <auto free>
struct FreeWith {
  template <class T>
  void operator()(T* object) const {
    free(object);
  }
};

}  // namespace agent
