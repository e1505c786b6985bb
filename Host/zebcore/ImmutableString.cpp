#include "zebcore/ImmutableString.h"

#include <atomic>
#include <mutex>

#include <boost/flyweight.hpp>
#include <boost/flyweight/holder_tag.hpp>
#include <boost/flyweight/key_value.hpp>

namespace zebcore::utility {

namespace detail {

namespace {
struct Keeper;
} // namespace

// The one entry of the pool for a text. As long as a string leads here it keeps itself in the pool.
struct InternedText {
  explicit InternedText(const std::string& value) : text(value), hash(std::hash<std::string>()(value)) {}
  ~InternedText();
  InternedText(const InternedText&) = delete;
  InternedText& operator=(const InternedText&) = delete;

  const std::string text;
  const std::size_t hash;
  mutable std::atomic<std::size_t> references{0};
  mutable Keeper* keeper = nullptr;
};

namespace {

struct TextOf {
  const std::string& operator()(const InternedText& entry) const { return entry.text; }
};

// The pool outlives every static object, as constants of modules hold texts until they are unloaded.
template <class Pool> struct Immortal {
  static Pool& get() {
    static Pool* const pool = new Pool;
    return *pool;
  }
};
struct ImmortalHolder : boost::flyweights::holder_marker {
  template <class Pool> struct apply { using type = Immortal<Pool>; };
};

using Pooled = boost::flyweight<boost::flyweights::key_value<std::string, InternedText, TextOf>, ImmortalHolder>;

struct Keeper {
  explicit Keeper(const Pooled& pooled) : entry(pooled) {}
  Pooled entry;
};

// Held while an entry gains its first reference or loses its last one, and at no other time.
std::mutex& EdgeMutex() {
  static auto* const mutex = new std::mutex;
  return *mutex;
}

boost::intrusive_ptr<const InternedText> Intern(std::string_view text) {
  const Pooled pooled{std::string(text)};
  const InternedText& entry = pooled.get();
  std::lock_guard lock(EdgeMutex());
  if (entry.references.fetch_add(1, std::memory_order_relaxed) == 0)
    entry.keeper = new Keeper(pooled);
  return {&entry, false};
}

} // namespace

InternedText::~InternedText() = default;

void intrusive_ptr_add_ref(const InternedText* text) noexcept {
  text->references.fetch_add(1, std::memory_order_relaxed);
}

void intrusive_ptr_release(const InternedText* text) noexcept {
  std::size_t count = text->references.load(std::memory_order_relaxed);
  while (count > 1)
    if (text->references.compare_exchange_weak(count, count - 1, std::memory_order_acq_rel))
      return;
  Keeper* last = nullptr;
  {
    std::lock_guard lock(EdgeMutex());
    if (text->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
      last = std::exchange(text->keeper, nullptr);
  }
  delete last; // takes the entry out of the pool, unless someone is interning the same text at this moment
}

} // namespace detail

ImmutableString::ImmutableString() noexcept = default;
ImmutableString::ImmutableString(const char* text) {
  if (text)
    mText = detail::Intern(text);
}
ImmutableString::ImmutableString(std::string_view text) : mText(detail::Intern(text)) {}
ImmutableString::ImmutableString(const ImmutableString&) noexcept = default;
ImmutableString::ImmutableString(ImmutableString&&) noexcept = default;
ImmutableString& ImmutableString::operator=(const ImmutableString&) noexcept = default;
ImmutableString& ImmutableString::operator=(ImmutableString&&) noexcept = default;
ImmutableString::~ImmutableString() = default;

bool ImmutableString::IsNull() const noexcept {
  return !mText;
}

const std::string& ImmutableString::Text() const noexcept {
  static const auto* const empty = new std::string;
  return mText ? mText->text : *empty;
}

std::size_t ImmutableString::Hash() const noexcept {
  return mText ? mText->hash : 0;
}

bool operator<(const ImmutableString& a, const ImmutableString& b) noexcept {
  if (a.mText == b.mText)
    return false;
  if (!a.mText || !b.mText)
    return !a.mText;
  return a.mText->text < b.mText->text;
}

} // namespace zebcore::utility
