#include "zebcore/Boundary.h"

#include <deque>
#include <mutex>
#include <typeinfo>

#include <boost/core/demangle.hpp>
#include <cxxabi.h>

#include "zebcore/Log.h"

namespace zebcore::boundary {

namespace {

struct Reports {
  std::mutex mutex;
  std::deque<Report> kept;
};

Reports& TheReports() {
  static auto* const reports = new Reports;
  return *reports;
}

std::string TextOfCurrentException() {
  try {
    throw;
  } catch (const std::exception& exception) {
    return exception.what();
  } catch (const std::string& text) {
    return text;
  } catch (const char* text) {
    return text ? text : "";
  } catch (...) {
    return {};
  }
}

} // namespace

void ReportCurrentException(const char* where) {
  Report report;
  report.where = where;
  if (const std::type_info* type = abi::__cxa_current_exception_type())
    report.type = boost::core::demangle(type->name());
  report.text = TextOfCurrentException();
  log::Write(log::Level::Error, report.where + ": " + report.type + ": " + report.text);

  Reports& reports = TheReports();
  std::lock_guard lock(reports.mutex);
  if (reports.kept.size() == kMaximumReports)
    reports.kept.pop_front();
  reports.kept.push_back(std::move(report));
}

std::vector<Report> TakeReports() {
  Reports& reports = TheReports();
  std::lock_guard lock(reports.mutex);
  std::vector<Report> taken(std::make_move_iterator(reports.kept.begin()), std::make_move_iterator(reports.kept.end()));
  reports.kept.clear();
  return taken;
}

} // namespace zebcore::boundary
