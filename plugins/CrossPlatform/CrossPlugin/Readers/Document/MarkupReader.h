// Reads XML as a sequence of elements and text, with libxml2, in constant memory; only comments in a row add up.
// Entities of other files are never loaded, entities that grow the text and elements nested too deep end the document.
// Not thread-safe.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Readers/Document/ByteStream.h"

class MarkupReader {
 public:
  enum class Event { kStart, kEnd, kText, kDone };

  // The stream must outlive the reader.
  explicit MarkupReader(ByteStream& stream);
  ~MarkupReader();
  MarkupReader(const MarkupReader&) = delete;
  MarkupReader& operator=(const MarkupReader&) = delete;

  // Moves to the next event. Every kStart has its kEnd, unless the document is damaged: then kDone comes early, and
  // Problem says why.
  Event Next();
  // Of an element, without the prefix. Valid until the next call of Next.
  std::string_view Name() const;
  // The value of an attribute of the element that starts, by its name without the prefix; empty if there is none.
  // `prefix` chooses among attributes that differ in the prefix only. Reading attributes does not move the reader.
  std::string Attribute(const char* name, const char* prefix = nullptr) const;
  // Calls take(name without prefix, value) for each attribute of the element that starts.
  template <class Take>
  void ForEachAttribute(Take take) const {
    for (bool is = MoveToAttribute(true); is; is = MoveToAttribute(false)) take(Name(), Value());
    LeaveAttributes();
  }
  // The characters of a kText event.
  std::string_view Text() const { return Value(); }
  // One line for a person; empty if all is well so far.
  const std::string& Problem() const { return mProblem; }

 private:
  struct Parser;
  bool MoveToAttribute(bool isFirst) const;
  void LeaveAttributes() const;
  std::string_view Value() const;

  ByteStream& mStream;
  std::unique_ptr<Parser> mParser;
  bool mIsEndPending = false;  // of an element without content
  std::string mProblem;
};

// Text that is not only white space.
bool HasCharacters(std::string_view text);
