#include <QApplication>
#include <QCommandLineParser>
#include <QEventLoop>
#include <QLocale>
#include <QStyleFactory>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "App/Session.h"
#include "App/session/LogFile.h"
#include "App/session/Sample.h"
#include "App/window/Icons.h"
#include "App/window/Labels.h"
#include "App/window/MainWindow.h"
#include "App/window/ProblemsWindow.h"
#include "App/window/Settings.h"
#include "HSL/Module.h"
#include "UIF/Dialogs.h"
#include "UIF/Theme.h"
#include "zebcore/Localizer.h"
#include "zebcore/Log.h"
#include "zebui/EventLoop.h"

namespace {

constexpr QSize kDefaultSize{1240, 760};
constexpr int kUnusable = 2;

struct Options {
  QString picture; // empty to open a window
  std::optional<QSize> size;
  std::optional<bool> dark;
  std::string language;
  int select = 0;
  bool readOnly = false;
  std::vector<std::filesystem::path> files;
};

std::optional<QSize> ParseSize(const QString& text) {
  const QStringList parts = text.split(u'x');
  if (parts.size() != 2 || parts[0].toInt() <= 0 || parts[1].toInt() <= 0)
    return std::nullopt;
  return QSize(parts[0].toInt(), parts[1].toInt());
}

[[noreturn]] void Refuse(const char* what) {
  std::fprintf(stderr, "captivo: %s; see captivo --help\n", what);
  std::exit(kUnusable);
}

struct CommandLine {
  CommandLine();
  QCommandLineParser parser;
  QCommandLineOption picture{QStringLiteral("picture"), QStringLiteral("Render the window into a PNG."),
                             QStringLiteral("path")};
  QCommandLineOption size{QStringLiteral("size"), QStringLiteral("Size of the window."), QStringLiteral("WxH")};
  QCommandLineOption theme{QStringLiteral("theme"), QStringLiteral("light or dark."), QStringLiteral("name")};
  QCommandLineOption language{QStringLiteral("language"), QStringLiteral("en, de or ja."), QStringLiteral("code")};
  QCommandLineOption readOnly{QStringLiteral("read-only"), QStringLiteral("Open the project for reading only.")};
  QCommandLineOption select{QStringLiteral("select"), QStringLiteral("Select the Nth clip."), QStringLiteral("N")};
};

CommandLine::CommandLine() {
  parser.setApplicationDescription(QStringLiteral(
      "Opens a project, or media and caption files as a new project; with no file, the sample project."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOptions({picture, size, theme, language, readOnly, select});
  parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("Projects, media and caption files."),
                               QStringLiteral("[file...]"));
}

Options ReadOptions(const QApplication& application) {
  CommandLine line;
  QCommandLineParser& parser = line.parser;
  parser.process(application);

  Options options;
  options.picture = parser.value(line.picture);
  if (parser.isSet(line.picture) && options.picture.isEmpty())
    Refuse("--picture needs a path");
  options.size = ParseSize(parser.value(line.size));
  if (parser.isSet(line.size) && !options.size)
    Refuse("--size is width and height, as in 1280x800");
  if (parser.isSet(line.theme)) {
    if (parser.value(line.theme) != QLatin1String("light") && parser.value(line.theme) != QLatin1String("dark"))
      Refuse("--theme is light or dark");
    options.dark = parser.value(line.theme) == QLatin1String("dark");
  }
  options.language = parser.value(line.language).toStdString();
  options.select = parser.value(line.select).toInt();
  if (parser.isSet(line.select) && options.select < 1)
    Refuse("--select is the number of a clip, from 1");
  for (const QString& file : parser.positionalArguments())
    options.files.emplace_back(file.toStdString());
  options.readOnly = parser.isSet(line.readOnly);
  if (options.readOnly && options.files.empty())
    Refuse("--read-only needs a project file");
  return options;
}

// The one asked for, else the one chosen in the program, else that of the system.
void ChooseLanguage(const std::string& asked) {
  auto& localizer = zebcore::config::Localizer::Get();
  const std::string system = QLocale::system().name().section(u'_', 0, 0).toStdString();
  for (const std::string& language : {asked, App::settings::GetLanguage(), system, std::string("en")})
    if (!language.empty() && localizer.SetLanguage(language))
      return;
}

// The panel counts on there being a project. One that stays empty leaves no file behind.
std::optional<App::Problem> OpenNew() {
  std::optional<App::Problem> problem = App::Session::Instance().NewProject();
  if (problem)
    App::Session::Instance().NewProjectInMemory();
  return problem;
}

std::optional<App::Problem> OpenSomething() {
  std::optional<App::Problem> problem = App::OpenSampleProject();
  if (!App::Session::Instance().GetProject())
    OpenNew();
  return problem;
}

// Runs the program's events until nothing is left to do that the picture waits for.
void Settle() {
  constexpr int kMilliseconds = 700;
  QEventLoop loop;
  QTimer::singleShot(kMilliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

class Program {
 public:
  explicit Program(Options options) : mOptions(std::move(options)) {}

  int Run() {
    ChooseLanguage(mOptions.language);
    HSL::ModuleLoader::LoadAll(HSL::ModuleLoader::GetModuleFolder());
    mCaptionsModule = HSL::Module::CreateModule(HSL::kCaptionsModuleID, u"captions");
    if (!mOptions.picture.isEmpty())
      SayInsteadOfAsking();

    const std::optional<App::Problem> problem = mOptions.files.empty() ? OpenSomething() : OpenNew();
    MakeWindow();
    if (problem)
      mWindow->Notice(QString::fromStdString(problem->text));
    if (!mOptions.files.empty())
      mWindow->OpenFiles(mOptions.files, mOptions.readOnly);
    // The sample begins with its captions on show.
    const int clip = mOptions.select > 0 || !mOptions.files.empty() ? mOptions.select : 1;
    if (clip > 0)
      mWindow->SelectClipByNumber(clip);
    const int code = mOptions.picture.isEmpty() ? QApplication::exec() : TakePicture();
    mWindow.reset();
    App::Session::Instance().CloseProject();
    return code;
  }

 private:
  void MakeWindow() {
    UIF::ApplyTheme(mOptions.dark.value_or(App::settings::IsDark()) ? UIF::Theme::Dark : UIF::Theme::Light);
    mWindow = std::make_unique<App::MainWindow>([this] { QTimer::singleShot(0, [this] { Rebuild(); }); });
    mWindow->resize(mOptions.size.value_or(kDefaultSize));
    mWindow->RestoreLayout(mOptions.picture.isEmpty());
    if (mOptions.size)
      mWindow->resize(*mOptions.size);
    mWindow->ShowProject();
    mWindow->show();
  }

  // What was asked for on the command line holds until something else is chosen in the window.
  void Rebuild() {
    mOptions.dark.reset();
    mOptions.size.reset();
    ChooseLanguage({});
    mWindow->StoreLayout();
    mWindow->hide();
    mWindow.reset();
    MakeWindow();
  }

  // Nobody is there to press a button.
  static void SayInsteadOfAsking() {
    UIF::SetMessageBoxHook([](const UIF::MessageBoxRecord& box) {
      std::fprintf(stderr, "%s\n", zebcore::ToUTF8(box.text).c_str());
      return box.defaultResult;
    });
    App::SetProblemsPrinted(true);
  }

  int TakePicture() {
    Settle();
    if (!mWindow->grab().save(mOptions.picture, "PNG")) {
      std::fprintf(stderr, "captivo: the picture could not be written to %s\n", qPrintable(mOptions.picture));
      return EXIT_FAILURE;
    }
    std::printf("%s\n", qPrintable(mOptions.picture));
    return EXIT_SUCCESS;
  }

  Options mOptions;
  std::unique_ptr<HSL::Module> mCaptionsModule; // null if its library is not there
  std::unique_ptr<App::MainWindow> mWindow;
};

// A picture needs no display, and nobody cares for what the toolkit says about a desktop that is not there. Known
// before the toolkit starts, which reads the rest of the command line.
void PrepareForPictures(int argc, char** argv) {
  const bool isPicture = std::any_of(argv + 1, argv + argc,
                                     [](const char* text) { return std::string_view(text).starts_with("--picture"); });
  if (!isPicture)
    return;
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
      std::fprintf(stderr, "%s\n", qPrintable(text));
  });
}

bool HasArgument(int argc, char** argv, std::initializer_list<std::string_view> wanted) {
  for (int i = 1; i < argc && std::string_view(argv[i]) != "--"; ++i)
    if (std::find(wanted.begin(), wanted.end(), argv[i]) != wanted.end())
      return true;
  return false;
}

void NameProgram() {
  QCoreApplication::setApplicationName(QStringLiteral("captivo"));
  QCoreApplication::setApplicationVersion(QStringLiteral(CAPTIVO_VERSION));
}

// Help and version take no window, and so no display.
void AnswerWithoutDisplay(int argc, char** argv) {
  if (!HasArgument(argc, argv, {"--help", "-h", "--help-all", "--version", "-v"}))
    return;
  const QCoreApplication application(argc, argv);
  NameProgram();
  CommandLine().parser.process(application);
}

// The toolkit gives up with a core dump where it finds none.
void NeedDisplay(int argc, char** argv) {
  const auto isSet = [](const char* name) {
    const char* value = std::getenv(name);
    return value && *value;
  };
  if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") && !isSet("QT_QPA_PLATFORM") &&
      !HasArgument(argc, argv, {"-platform", "--platform"}))
    Refuse("there is no display to open a window on; --picture renders it into a file");
}

} // namespace

int main(int argc, char** argv) {
  AnswerWithoutDisplay(argc, argv);
  PrepareForPictures(argc, argv);
  NeedDisplay(argc, argv);
  QApplication application(argc, argv);
  NameProgram();
  QApplication::setApplicationDisplayName(QStringLiteral("Captivo"));
  QApplication::setDesktopFileName(QStringLiteral("captivo"));
  // The window quits when it is closed; one that is made anew does not.
  QApplication::setQuitOnLastWindowClosed(false);
  const App::LogFile log(App::LogFile::GetUsualPath());
  zebui::InstallEventLoop();
  const int code = Program(ReadOptions(application)).Run();
  zebui::UninstallEventLoop();
  return code;
}
