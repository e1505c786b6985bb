#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace Tests {

using Json = nlohmann::json;

constexpr std::int64_t kSecond = 254016000000;
constexpr std::int64_t kFrame = kSecond / 25; // of the clips made here

// A captivo-drive of its own, talked to line by line. It is killed when it does not answer within a minute.
class DriveProcess {
 public:
  explicit DriveProcess(const std::filesystem::path& home);
  ~DriveProcess();
  DriveProcess(const DriveProcess&) = delete;
  DriveProcess& operator=(const DriveProcess&) = delete;

  // The answer to a line as it stands; null when the program has ended instead.
  Json AskLine(const std::string& line);
  Json Ask(const Json& request) { return AskLine(request.dump()); }
  // As if the power went.
  void Kill();
  // After its input has ended; -1 if it did not end well.
  int Finish();

 private:
  bool Fill();

  int mPid = -1;
  int mIn = -1;
  int mOut = -1;
  std::string mPending;
};

// One program for each test, a folder of its own, and the steps that most tests begin with.
class DriveTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Restarts the program in the same folder.
  void Start();
  // Expects the request to be obeyed.
  Json Do(const std::string& name, Json fields = Json::object());
  // Expects it to be refused; the error.
  std::string Refused(const std::string& name, Json fields = Json::object());

  // A project in memory with a clip, a stream of these captions and the panel open on it.
  void OpenCaptions(const std::vector<Json>& captions);
  Json Panel() { return Do("panel"); }
  Json Rows() { return Panel().at("rows"); }
  Json Stream() { return Do("stream", {{"stream", stream}}).at("captions"); }
  std::vector<std::int64_t> RowTimes();
  std::vector<std::int64_t> Selected();
  Json Row(std::int64_t begin);
  void Click(int row, int modifiers = 0);
  std::vector<std::string> Calls(const std::vector<std::string>& only);

  std::filesystem::path folder;
  std::unique_ptr<DriveProcess> drive;
  std::string clip;
  std::string stream;
};

// From and to in seconds.
Json Caption(double begin, double end, const std::string& text);
std::int64_t Seconds(double seconds);
std::vector<std::int64_t> Times(std::initializer_list<double> seconds);

} // namespace Tests
