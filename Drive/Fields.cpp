#include "Drive/Fields.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace Drive {

namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

// An integer that fits 64 bits with a sign; nothing for anything else, fractions included.
std::optional<std::int64_t> AsInteger(const Json& value) {
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    return number <= static_cast<std::uint64_t>(kMost) ? std::optional(static_cast<std::int64_t>(number))
                                                       : std::nullopt;
  }
  return value.is_number_integer() ? std::optional(value.get<std::int64_t>()) : std::nullopt;
}

std::optional<double> AsNumber(const Json& value) {
  if (value.is_number())
    return value.get<double>();
  if (value == "inf")
    return std::numeric_limits<double>::infinity();
  if (value == "-inf")
    return -std::numeric_limits<double>::infinity();
  if (value == "nan")
    return std::numeric_limits<double>::quiet_NaN();
  return std::nullopt;
}

} // namespace

Fields::Fields(const Json& object, std::string path) : mObject(&object), mPath(std::move(path)) {}

void Fields::Refuse(const std::string& name, const std::string& why) const {
  throw RequestError(mPath + name + ": " + why);
}

bool Fields::Mentions(const char* name) const {
  return mObject->contains(name);
}

bool Fields::Has(const char* name) const {
  return Mentions(name) && !mObject->at(name).is_null();
}

const Json& Fields::Get(const char* name) const {
  if (!Has(name))
    Refuse(name, "missing");
  return mObject->at(name);
}

bool Fields::Flag(const char* name) const {
  const Json& value = Get(name);
  if (!value.is_boolean())
    Refuse(name, "must be true or false");
  return value.get<bool>();
}

bool Fields::Flag(const char* name, bool absent) const {
  return Has(name) ? Flag(name) : absent;
}

std::int64_t Fields::Integer(const char* name, std::int64_t least, std::int64_t most) const {
  const auto number = AsInteger(Get(name));
  if (!number)
    Refuse(name, "must be an integer");
  if (*number < least || *number > most)
    Refuse(name, "must be from " + std::to_string(least) + " to " + std::to_string(most));
  return *number;
}

std::int64_t Fields::Integer(const char* name, std::int64_t least, std::int64_t most, std::int64_t absent) const {
  return Has(name) ? Integer(name, least, most) : absent;
}

int Fields::Int(const char* name) const {
  return static_cast<int>(Integer(name, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

int Fields::Int(const char* name, int absent) const {
  return Has(name) ? Int(name) : absent;
}

double Fields::Number(const char* name) const {
  const auto number = AsNumber(Get(name));
  if (!number)
    Refuse(name, "must be a number, \"inf\", \"-inf\" or \"nan\"");
  return *number;
}

double Fields::Number(const char* name, double absent) const {
  return Has(name) ? Number(name) : absent;
}

std::string Fields::Text(const char* name) const {
  const Json& value = Get(name);
  if (!value.is_string())
    Refuse(name, "must be a text");
  return value.get<std::string>();
}

std::string Fields::Text(const char* name, const std::string& absent) const {
  return Has(name) ? Text(name) : absent;
}

zebmediatypes::TickTime Fields::Time(const char* name) const {
  const auto ticks = AsInteger(Get(name));
  if (!ticks)
    Refuse(name, "must be a time in ticks, an integer of 64 bits");
  return zebmediatypes::TickTime(*ticks);
}

zebmediatypes::FrameRate Fields::Rate(const char* name) const {
  const Json& value = Get(name);
  if (const auto ticks = AsInteger(value); ticks && *ticks > 0)
    return zebmediatypes::FrameRate(*ticks);
  const auto numerator = value.is_array() && value.size() == 2 ? AsInteger(value[0]) : std::nullopt;
  const auto denominator = numerator ? AsInteger(value[1]) : std::nullopt;
  if (!denominator || *numerator <= 0 || *denominator <= 0)
    Refuse(name, "must be [numerator, denominator] in frames a second, or ticks a frame, all above 0");
  return zebmediatypes::FrameRate::FromRational(*numerator, *denominator);
}

std::vector<zebmediatypes::TickTime> Fields::Times(const char* name) const {
  const Json& list = Get(name);
  if (!list.is_array())
    Refuse(name, "must be a list of times");
  std::vector<zebmediatypes::TickTime> times;
  for (const Json& value : list) {
    const auto ticks = AsInteger(value);
    if (!ticks)
      Refuse(name + ("[" + std::to_string(times.size()) + "]"), "must be a time in ticks, an integer of 64 bits");
    times.emplace_back(*ticks);
  }
  return times;
}

std::vector<std::string> Fields::Texts(const char* name) const {
  const Json& list = Get(name);
  if (!list.is_array())
    Refuse(name, "must be a list of texts");
  std::vector<std::string> texts;
  for (const Json& value : list) {
    if (!value.is_string())
      Refuse(name + ("[" + std::to_string(texts.size()) + "]"), "must be a text");
    texts.push_back(value.get<std::string>());
  }
  return texts;
}

std::pair<int, int> Fields::Pair(const char* name) const {
  const Json& list = Get(name);
  if (!list.is_array() || list.size() != 2)
    Refuse(name, "must be a list of two integers");
  int numbers[2] = {};
  for (std::size_t i = 0; i < 2; ++i) {
    const auto number = AsInteger(list[i]);
    if (!number || *number < std::numeric_limits<int>::min() || *number > std::numeric_limits<int>::max())
      Refuse(name + ("[" + std::to_string(i) + "]"), "must be an integer");
    numbers[i] = static_cast<int>(*number);
  }
  return {numbers[0], numbers[1]};
}

std::size_t Fields::Position(const char* name) const {
  const std::int64_t number = Integer(name, -1, kMost);
  return number < 0 ? std::numeric_limits<std::size_t>::max() : static_cast<std::size_t>(number);
}

std::uint8_t Fields::Modifiers() const {
  return static_cast<std::uint8_t>(Integer("modifiers", 0, 255, 0));
}

std::vector<Fields> Fields::Objects(const char* name) const {
  const Json& list = Get(name);
  if (!list.is_array())
    Refuse(name, "must be a list of objects");
  std::vector<Fields> objects;
  for (const Json& value : list) {
    const std::string place = name + ("[" + std::to_string(objects.size()) + "]");
    if (!value.is_object())
      Refuse(place, "must be an object");
    objects.emplace_back(value, mPath + place + ".");
  }
  return objects;
}

Fields Fields::Object(const char* name) const {
  const Json& value = Get(name);
  if (!value.is_object())
    Refuse(name, "must be an object");
  return Fields(value, mPath + name + ".");
}

Json FromNumber(double number) {
  if (std::isnan(number))
    return "nan";
  if (std::isinf(number))
    return number > 0 ? "inf" : "-inf";
  return number;
}

Json FromFloat(float number) {
  if (!std::isfinite(number))
    return FromNumber(number);
  char digits[64];
  const auto written = std::to_chars(digits, digits + sizeof digits, number);
  double same = number;
  std::from_chars(digits, written.ptr, same);
  return same;
}

Json FromTime(zebmediatypes::TickTime time) {
  return time.GetTicks();
}

Json FromTimes(const std::vector<zebmediatypes::TickTime>& times) {
  Json list = Json::array();
  for (const auto& time : times)
    list.push_back(time.GetTicks());
  return list;
}

Json FromOptionalTime(zebmediatypes::TickTime time) {
  return time == zebmediatypes::kTime_Min ? Json() : Json(time.GetTicks());
}

Json FromText(const zebcore::UString& text) {
  return zebcore::ToUTF8(text);
}

Json FromPosition(std::size_t position) {
  if (position == std::numeric_limits<std::size_t>::max())
    return -1;
  return position;
}

Json FromRange(const std::pair<std::size_t, std::size_t>& range) {
  return Json::array({FromPosition(range.first), FromPosition(range.second)});
}

} // namespace Drive
