#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include <boost/smart_ptr/intrusive_ptr.hpp>

namespace zebcore::utility {

namespace detail {
struct InternedText;
void intrusive_ptr_add_ref(const InternedText* text) noexcept;
void intrusive_ptr_release(const InternedText* text) noexcept;
} // namespace detail

// An interned 8-bit string: copies share one text, equality compares one pointer. Default-constructed it is the null
// string, which equals no text, not even the empty one. An unused text is given back, so that the stations of
// short-lived objects cost nothing afterwards. Safe to copy between threads.
class ImmutableString {
 public:
  ImmutableString() noexcept;
  ImmutableString(const char* text);
  explicit ImmutableString(std::string_view text);
  ImmutableString(const ImmutableString&) noexcept;
  ImmutableString(ImmutableString&&) noexcept;
  ImmutableString& operator=(const ImmutableString&) noexcept;
  ImmutableString& operator=(ImmutableString&&) noexcept;
  ~ImmutableString();

  bool IsNull() const noexcept;
  // The empty text for the null string.
  const std::string& Text() const noexcept;
  std::size_t Hash() const noexcept;

  friend bool operator==(const ImmutableString& a, const ImmutableString& b) noexcept { return a.mText == b.mText; }
  friend bool operator!=(const ImmutableString& a, const ImmutableString& b) noexcept { return !(a == b); }
  // By text; the null string comes first.
  friend bool operator<(const ImmutableString& a, const ImmutableString& b) noexcept;

 private:
  boost::intrusive_ptr<const detail::InternedText> mText;
};

} // namespace zebcore::utility

template <> struct std::hash<zebcore::utility::ImmutableString> {
  std::size_t operator()(const zebcore::utility::ImmutableString& text) const noexcept { return text.Hash(); }
};
