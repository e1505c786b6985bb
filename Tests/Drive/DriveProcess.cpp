#include "DriveProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tests {

namespace {

constexpr const char* kProgram = CAPTIVO_BINARY_DIR "/captivo-drive";
constexpr int kPatienceMilliseconds = 60000;
constexpr int kRowHeight = 75;

} // namespace

DriveProcess::DriveProcess(const std::filesystem::path& home) {
  std::signal(SIGPIPE, SIG_IGN);
  int input[2];
  int output[2];
  if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0)
    return;
  mPid = fork();
  if (mPid == 0) {
    dup2(input[0], STDIN_FILENO);
    dup2(output[1], STDOUT_FILENO);
    setenv("HOME", home.c_str(), 1);
    setenv("XDG_DATA_HOME", (home / "data").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
    execl(kProgram, kProgram, static_cast<char*>(nullptr));
    _exit(127);
  }
  close(input[0]);
  close(output[1]);
  mIn = input[1];
  mOut = output[0];
}

DriveProcess::~DriveProcess() {
  Kill();
}

bool DriveProcess::Fill() {
  pollfd ready{mOut, POLLIN, 0};
  if (poll(&ready, 1, kPatienceMilliseconds) <= 0)
    return false;
  char bytes[65536];
  const ssize_t count = read(mOut, bytes, sizeof bytes);
  if (count <= 0)
    return false;
  mPending.append(bytes, static_cast<std::size_t>(count));
  return true;
}

Json DriveProcess::AskLine(const std::string& line) {
  const std::string bytes = line + "\n";
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count = write(mIn, bytes.data() + sent, bytes.size() - sent);
    if (count < 0 && errno == EINTR)
      continue;
    if (count < 0)
      return nullptr;
    sent += static_cast<std::size_t>(count);
  }
  std::size_t end = mPending.find('\n');
  while (end == std::string::npos) {
    if (!Fill())
      return nullptr;
    end = mPending.find('\n');
  }
  const Json answer = Json::parse(mPending.substr(0, end));
  mPending.erase(0, end + 1);
  return answer;
}

void DriveProcess::Kill() {
  if (mPid > 0) {
    kill(mPid, SIGKILL);
    waitpid(mPid, nullptr, 0);
    mPid = -1;
  }
  for (int* end : {&mIn, &mOut}) {
    if (*end >= 0)
      close(*end);
    *end = -1;
  }
}

int DriveProcess::Finish() {
  close(mIn);
  mIn = -1;
  while (Fill()) {
  }
  int status = 0;
  waitpid(mPid, &status, 0);
  mPid = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void DriveTest::SetUp() {
  std::string pattern = (std::filesystem::temp_directory_path() / "captivo-drive-XXXXXX").string();
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  folder = pattern;
  Start();
}

void DriveTest::TearDown() {
  // A sanitizer has its say as the program ends.
  if (drive) {
    EXPECT_EQ(drive->Finish(), 0);
  }
  drive.reset();
  std::error_code error;
  std::filesystem::remove_all(folder, error);
}

void DriveTest::Start() {
  drive = std::make_unique<DriveProcess>(folder);
}

Json DriveTest::Do(const std::string& name, Json fields) {
  fields["do"] = name;
  const Json answer = drive->Ask(fields);
  EXPECT_TRUE(answer.is_object()) << "no answer to " << fields.dump();
  if (!answer.is_object())
    return Json::object();
  EXPECT_TRUE(answer.at("ok").get<bool>()) << fields.dump() << " -> " << answer.dump();
  EXPECT_FALSE(answer.contains("exception")) << fields.dump() << " -> " << answer.dump();
  return answer;
}

std::string DriveTest::Refused(const std::string& name, Json fields) {
  fields["do"] = name;
  const Json answer = drive->Ask(fields);
  EXPECT_TRUE(answer.is_object() && !answer.at("ok").get<bool>()) << fields.dump() << " -> " << answer.dump();
  return answer.is_object() ? answer.value("error", "") : "";
}

void DriveTest::OpenCaptions(const std::vector<Json>& captions) {
  Do("new");
  clip = Do("add_clip", {{"name", "Harbour"}, {"width", 640}, {"height", 360}, {"frame_rate", {25, 1}}}).at("clip");
  stream = Do("add_stream", {{"clip", clip}, {"format", "cea608"}, {"captions", captions}}).at("stream");
  Do("select", {{"what", "clip"}, {"clip", clip}});
  Do("open_panel");
}

std::vector<std::int64_t> DriveTest::RowTimes() {
  std::vector<std::int64_t> times;
  for (const Json& row : Rows())
    times.push_back(row.at("begin"));
  return times;
}

std::vector<std::int64_t> DriveTest::Selected() {
  return Panel().at("selected").get<std::vector<std::int64_t>>();
}

Json DriveTest::Row(std::int64_t begin) {
  for (const Json& row : Rows()) {
    if (row.at("begin") == begin)
      return row;
  }
  ADD_FAILURE() << "no row begins at " << begin;
  return Json::object();
}

void DriveTest::Click(int row, int modifiers) {
  const int first = Panel().at("first_visible").get<int>();
  Do("mouse", {{"x", 20}, {"y", (row - first) * kRowHeight + kRowHeight / 2}, {"modifiers", modifiers}});
}

std::vector<std::string> DriveTest::Calls(const std::vector<std::string>& only) {
  std::vector<std::string> names;
  const Json answer = Do("trace", {{"only", only}});
  for (const Json& call : answer.at("calls"))
    names.push_back(call.at("call"));
  return names;
}

Json Caption(double begin, double end, const std::string& text) {
  return {{"begin", Seconds(begin)}, {"end", Seconds(end)}, {"text", text}};
}

std::int64_t Seconds(double seconds) {
  return static_cast<std::int64_t>(seconds * 1000.0 + (seconds < 0 ? -0.5 : 0.5)) * (kSecond / 1000);
}

std::vector<std::int64_t> Times(std::initializer_list<double> seconds) {
  std::vector<std::int64_t> times;
  for (const double one : seconds)
    times.push_back(Seconds(one));
  return times;
}

} // namespace Tests
