// A text that the process stores once, in four bytes wherever it is used: faces share most of their names, and a
// library has a hundred thousand of them.
//
// Texts are never freed. So use it for names and paths of fonts, not for texts that come from clients. Thread-safe.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace agent {

class SharedText {
 public:
  SharedText() = default;  // empty
  // Throws std::bad_alloc.
  SharedText(std::string_view text);
  SharedText(const std::string& text) : SharedText(std::string_view(text)) {}
  SharedText(const char* text) : SharedText(std::string_view(text)) {}
  // Nothing if no Text has these characters, so that nothing is stored for a mere question.
  static std::optional<SharedText> Find(std::string_view text);

  std::string_view View() const;  // valid for good
  operator std::string_view() const { return View(); }
  operator std::string() const { return std::string(View()); }
  bool empty() const { return number_ == 0; }
  // Equal exactly for equal texts.
  uint32_t Number() const { return number_; }

  friend bool operator==(SharedText a, SharedText b) { return a.number_ == b.number_; }
  template <class Other>
  requires std::convertible_to<const Other&, std::string_view> &&(!std::same_as<Other, SharedText>)friend bool
  operator==(SharedText a, const Other& b) {
    return a.View() == std::string_view(b);
  }
  friend std::string operator+(SharedText a, std::string_view b) { return std::string(a.View()).append(b); }
  friend std::string operator+(std::string_view a, SharedText b) { return std::string(a).append(b.View()); }

 private:
  uint32_t number_ = 0;
};

}  // namespace agent
