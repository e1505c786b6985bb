#include "zebui/NumberEntry.h"

#include <charconv>
#include <cmath>
#include <string>

namespace zebui::controls {

namespace {

constexpr int kMaxBrackets = 64;

// Signs that keyboards and copied texts have for the same thing, the wide forms of eastern keyboards too.
char Plain(char16_t character) {
  switch (character) {
  case u'\u00D7':
  case u'\u2217':
    return '*';
  case u'\u00F7':
  case u'\u2215':
    return '/';
  case u'\u2212':
  case u'\u2013':
    return '-';
  case u',':
  case u'\uFF0C':
  case u'\u066B':
    return '.';
  case u'\u00A0':
  case u'\u202F':
  case u'\u2009':
  case u'\u3000':
  case u'\t':
    return ' ';
  default:
    break;
  }
  if (character >= u'\uFF01' && character <= u'\uFF5E')
    return Plain(static_cast<char16_t>(character - 0xFEE0));
  return character < 0x7F ? static_cast<char>(character) : '?';
}

// The grammar, one function for each level. A failure is kept and makes all that follows idle.
class Reader {
 public:
  explicit Reader(std::string text) : mText(std::move(text)) {}

  char Peek() {
    while (mAt < mText.size() && mText[mAt] == ' ')
      ++mAt;
    return mAt < mText.size() ? mText[mAt] : '\0';
  }
  bool Take(char wanted) {
    if (Peek() != wanted || wanted == '\0')
      return false;
    ++mAt;
    return true;
  }

  double Sum() { return SumFrom(Product()); }
  double SumFrom(double value) {
    while (!mFailed) {
      if (Take('+'))
        value += Product();
      else if (Take('-'))
        value -= Product();
      else
        break;
    }
    return value;
  }
  double Product() { return ProductFrom(Factor()); }
  double ProductFrom(double value) {
    while (!mFailed) {
      if (Take('*'))
        value *= Factor();
      else if (Take('/'))
        value /= Factor();
      else
        break;
    }
    return value;
  }

  bool EndedWell() {
    Take('%');
    return !mFailed && Peek() == '\0';
  }

 private:
  double Factor() {
    if (++mDepth > kMaxBrackets)
      return Fail();
    double value = 0.0;
    if (Take('-'))
      value = -Factor();
    else if (Take('+'))
      value = Factor();
    else if (Take('('))
      value = Bracket();
    else
      value = Number();
    --mDepth;
    return value;
  }
  double Bracket() {
    const double value = Sum();
    return Take(')') ? value : Fail();
  }
  double Number() {
    const char first = Peek();
    const bool begins = first == '.' || (first >= '0' && first <= '9');
    if (!begins)
      return Fail();
    double value = 0.0;
    const char* const begin = mText.data() + mAt;
    const auto [end, error] = std::from_chars(begin, mText.data() + mText.size(), value, std::chars_format::fixed);
    if (error != std::errc())
      return Fail();
    mAt += static_cast<std::size_t>(end - begin);
    return value;
  }
  double Fail() {
    mFailed = true;
    return 0.0;
  }

  std::string mText;
  std::size_t mAt = 0;
  int mDepth = 0;
  bool mFailed = false;
};

double Assigned(char sign, double current, double by) {
  switch (sign) {
  case '+':
    return current + by;
  case '-':
    return current - by;
  case '*':
    return current * by;
  default:
    return current / by;
  }
}

} // namespace

std::optional<double> ReadNumberEntry(std::u16string_view text, std::optional<double> current) {
  std::string plain;
  for (const char16_t character : text)
    plain += Plain(character);
  Reader reader(plain);
  const char first = reader.Peek();
  const std::size_t sign = plain.find_first_not_of(' ');
  const bool assigns = sign != std::string::npos && sign + 1 < plain.size() && plain[sign + 1] == '=' &&
                       std::string_view("+-*/").find(first) != std::string_view::npos;
  const bool goesOut = assigns || first == '+' || first == '*' || first == '/';
  double value = 0.0;
  if (goesOut && !current)
    return std::nullopt;
  if (assigns) {
    reader.Take(first);
    reader.Take('=');
    value = Assigned(first, *current, reader.Sum());
  } else if (goesOut) {
    value = reader.SumFrom(reader.ProductFrom(*current));
  } else {
    value = reader.Sum();
  }
  if (!reader.EndedWell() || !std::isfinite(value))
    return std::nullopt;
  return value;
}

} // namespace zebui::controls
