#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include <poll.h>
#include <unistd.h>

#include <QApplication>

#include "Drive/Driver.h"
#include "UIF/Theme.h"
#include "zebcore/Clock.h"

namespace {

constexpr const char* kUsage = "Usage: captivo-drive [--show] [--dark]\n\n"
                               "Reads requests as JSON objects, one a line, from standard input and answers each by\n"
                               "one on standard output. --show opens the panel's window on the display; --dark\n"
                               "dresses it in the dark theme.\n";
constexpr int kBreathMilliseconds = 15;

// Lines of standard input. While none has come yet, the window goes on living.
class Lines {
 public:
  explicit Lines(bool breathe) : mBreathe(breathe) {}

  bool Next(std::string& line) {
    for (;;) {
      const std::size_t end = mPending.find('\n', mSearched);
      if (end != std::string::npos) {
        line.assign(mPending, 0, end);
        mPending.erase(0, end + 1);
        mSearched = 0;
        return true;
      }
      mSearched = mPending.size();
      if (!Fill()) {
        line.swap(mPending);
        mPending.clear();
        mSearched = 0;
        return !line.empty();
      }
    }
  }

 private:
  bool Fill() {
    for (;;) {
      pollfd input{STDIN_FILENO, POLLIN, 0};
      const int ready = poll(&input, 1, mBreathe ? kBreathMilliseconds : -1);
      if (ready == 0 || (ready < 0 && errno == EINTR)) {
        if (mBreathe)
          QApplication::processEvents();
        continue;
      }
      char bytes[65536];
      const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
      if (count < 0 && errno == EINTR)
        continue;
      if (count <= 0)
        return false;
      mPending.append(bytes, static_cast<std::size_t>(count));
      return true;
    }
  }

  bool mBreathe;
  std::string mPending;
  std::size_t mSearched = 0;
};

// The toolkit gives up with a core dump where it finds none.
bool HasDisplay() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    const char* const value = std::getenv(name);
    if (value && *value)
      return true;
  }
  return false;
}

} // namespace

int main(int argc, char* argv[]) {
  bool show = false;
  UIF::Theme theme = UIF::Theme::Light;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--show") == 0) {
      show = true;
    } else if (std::strcmp(argv[i], "--dark") == 0) {
      theme = UIF::Theme::Dark;
    } else {
      std::fputs(kUsage, std::strcmp(argv[i], "--help") == 0 ? stdout : stderr);
      return std::strcmp(argv[i], "--help") == 0 ? 0 : 2;
    }
  }
  if (!show) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
  } else if (!HasDisplay()) {
    std::fputs("captivo-drive: there is no display to show the panel on; it runs without one if --show is left out\n",
               stderr);
    return 2;
  }
  QApplication application(argc, argv);
  QApplication::setApplicationName("captivo-drive");
  QApplication::setQuitOnLastWindowClosed(false);
  // Its pictures show what the desktop program shows.
  UIF::ApplyTheme(theme);
  zebcore::Clock::Instance().UseManual();

  Drive::Driver driver;
  Lines lines(show);
  std::string line;
  while (!driver.HasQuit() && lines.Next(line)) {
    if (line.find_first_not_of(" \t\r\n") == std::string::npos)
      continue;
    std::cout << driver.Answer(line) << '\n' << std::flush;
  }
  return 0;
}
