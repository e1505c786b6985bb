#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "zebcore/UString.h"
#include "zebmediatypes/FrameRate.h"
#include "zebmediatypes/TickTime.h"

namespace Drive {

using Json = nlohmann::json;

// A request that cannot be obeyed; the text names the field and says what is wrong with it.
class RequestError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The fields of a request, or of an object inside one, read with checks: each reader throws RequestError for a field
// that is missing or is not what it has to be. A field that is null counts as missing.
class Fields {
 public:
  // The path is what comes before the name of a field in an error, for instance "captions[2].".
  explicit Fields(const Json& object, std::string path = {});

  bool Has(const char* name) const;
  // Present, though it may be null.
  bool Mentions(const char* name) const;
  const Json& Get(const char* name) const;

  bool Flag(const char* name) const;
  bool Flag(const char* name, bool absent) const;
  std::int64_t Integer(const char* name, std::int64_t least, std::int64_t most) const;
  std::int64_t Integer(const char* name, std::int64_t least, std::int64_t most, std::int64_t absent) const;
  int Int(const char* name) const;
  int Int(const char* name, int absent) const;
  // "inf", "-inf" and "nan" stand for the numbers that JSON has not.
  double Number(const char* name) const;
  double Number(const char* name, double absent) const;
  std::string Text(const char* name) const;
  std::string Text(const char* name, const std::string& absent) const;
  zebmediatypes::TickTime Time(const char* name) const;
  // Ticks a frame, or [numerator, denominator] in frames a second.
  zebmediatypes::FrameRate Rate(const char* name) const;
  std::vector<zebmediatypes::TickTime> Times(const char* name) const;
  std::vector<std::string> Texts(const char* name) const;
  std::pair<int, int> Pair(const char* name) const;
  // All ones of a position is -1.
  std::size_t Position(const char* name) const;
  std::uint8_t Modifiers() const;

  // The objects of a list, each with its own path.
  std::vector<Fields> Objects(const char* name) const;
  Fields Object(const char* name) const;

  [[noreturn]] void Refuse(const std::string& name, const std::string& why) const;
  const Json& GetJson() const { return *mObject; }

 private:
  const Json* mObject;
  std::string mPath;
};

// A number as JSON can say it.
Json FromNumber(double number);
// The shortest decimal that is this float again, so that 0.2 comes out as 0.2.
Json FromFloat(float number);
Json FromTime(zebmediatypes::TickTime time);
Json FromTimes(const std::vector<zebmediatypes::TickTime>& times);
// Absent for kTime_Min, the list's answer for no time.
Json FromOptionalTime(zebmediatypes::TickTime time);
Json FromText(const zebcore::UString& text);
Json FromPosition(std::size_t position);
Json FromRange(const std::pair<std::size_t, std::size_t>& range);
template <class Rect> Json FromRect(const Rect& rect) {
  return Json::array({rect.x, rect.y, rect.width, rect.height});
}

} // namespace Drive
