#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <utility>
#include <vector>

// The host's boundary: what a listener or a hook throws ends here, is written to the log, and the host goes on.
namespace zebcore::boundary {

struct Report {
  std::string where; // the operation of the host that called out
  std::string type;  // demangled type of the exception
  std::string text;  // its what()
};

// Call inside a catch block.
void ReportCurrentException(const char* where);

// What was caught since the last call, oldest first; of more than so many, the last ones.
inline constexpr std::size_t kMaximumReports = 1000;
std::vector<Report> TakeReports();

// Runs the call; false if it threw.
template <class Call> bool Guard(const char* where, Call&& call) {
  try {
    std::forward<Call>(call)();
    return true;
  } catch (...) {
    ReportCurrentException(where);
    return false;
  }
}

} // namespace zebcore::boundary
