#pragma once

#include <functional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

// A record of what the panel asks of the host, for tests and bug reports. Host sources write to it; off, which it is by
// default, it costs one test of a flag. Guard the building of arguments with IsOn().
namespace zebcore::trace {

struct Call {
  std::string call; // "Class::Operation"
  nlohmann::json args;
  // What it was asked of, for whoever knows that by a name, perhaps only later; never to be followed, since it may be
  // gone by then. Null where nothing was told.
  const void* subject = nullptr;
};

bool IsOn() noexcept;
void SetOn(bool on);
void Record(const char* call, nlohmann::json args = nlohmann::json::object(), const void* subject = nullptr);
// The calls since the last Take, oldest first.
std::vector<Call> Take();

// Adds to the arguments of each call as it is recorded, for instance the rows on the list at that moment. It is asked
// on the thread that set it only, and not about calls that it causes itself. Null takes it away.
using Annotator = std::function<void(Call&)>;
void SetAnnotator(Annotator annotator);

} // namespace zebcore::trace
