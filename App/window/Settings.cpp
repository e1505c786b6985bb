#include "App/window/Settings.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <system_error>

#include "zebmediatypes/TimeDisplay.h"

namespace App::settings {

namespace {

QSettings& Store() {
  static QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("captivo"),
                         QStringLiteral("captivo"));
  return store;
}

} // namespace

std::vector<std::filesystem::path> GetRecentProjects() {
  std::vector<std::filesystem::path> recent;
  const QStringList paths = Store().value(QStringLiteral("recent")).toStringList();
  for (const QString& path : paths)
    if (QFileInfo::exists(path))
      recent.emplace_back(path.toStdString());
  return recent;
}

void AddRecentProject(const std::filesystem::path& path) {
  if (path.empty())
    return;
  std::error_code error;
  const auto absolute = std::filesystem::absolute(path, error);
  const QString text = QString::fromStdString(error ? path.string() : absolute.string());
  QStringList paths = Store().value(QStringLiteral("recent")).toStringList();
  paths.removeAll(text);
  paths.prepend(text);
  while (paths.size() > kRecentProjects)
    paths.removeLast();
  Store().setValue(QStringLiteral("recent"), paths);
}

void ClearRecentProjects() {
  Store().remove(QStringLiteral("recent"));
}

QByteArray GetGeometry() {
  return Store().value(QStringLiteral("window/geometry")).toByteArray();
}

QByteArray GetLayout() {
  return Store().value(QStringLiteral("window/layout")).toByteArray();
}

void SetWindow(const QByteArray& geometry, const QByteArray& layout) {
  Store().setValue(QStringLiteral("window/geometry"), geometry);
  Store().setValue(QStringLiteral("window/layout"), layout);
}

bool ArePanelsStacked() {
  return Store().value(QStringLiteral("window/stacked")).toBool();
}

void SetPanelsStacked(bool stacked) {
  Store().setValue(QStringLiteral("window/stacked"), stacked);
}

bool IsDark() {
  return Store().value(QStringLiteral("theme")).toString() == QLatin1String("dark");
}

void SetDark(bool dark) {
  Store().setValue(QStringLiteral("theme"), dark ? QStringLiteral("dark") : QStringLiteral("light"));
}

std::string GetLanguage() {
  return Store().value(QStringLiteral("language")).toString().toStdString();
}

void SetLanguage(const std::string& language) {
  Store().setValue(QStringLiteral("language"), QString::fromStdString(language));
}

std::string GetImportFamily() {
  return Store().value(QStringLiteral("import/family"), QStringLiteral("open")).toString().toStdString();
}

int GetImportChannel() {
  return Store().value(QStringLiteral("import/channel"), 1).toInt();
}

void SetImportFormat(const std::string& family, int channel) {
  Store().setValue(QStringLiteral("import/family"), QString::fromStdString(family));
  Store().setValue(QStringLiteral("import/channel"), channel);
}

namespace {
QString TimeDisplayKey(bool ofSources) {
  return ofSources ? QStringLiteral("timecode/source") : QStringLiteral("timecode/sequence");
}
} // namespace

int GetTimeDisplay(bool ofSources) {
  return Store().value(TimeDisplayKey(ofSources), zebmediatypes::kTimeDisplay_Invalid.GetNumber()).toInt();
}

void SetTimeDisplay(bool ofSources, int number) {
  Store().setValue(TimeDisplayKey(ofSources), number);
}

bool IsMonitorGridShown() {
  return Store().value(QStringLiteral("monitor/grid"), false).toBool();
}

void SetMonitorGridShown(bool shown) {
  Store().setValue(QStringLiteral("monitor/grid"), shown);
}

bool IsMonitorSafeAreaShown() {
  return Store().value(QStringLiteral("monitor/safeArea"), false).toBool();
}

void SetMonitorSafeAreaShown(bool shown) {
  Store().setValue(QStringLiteral("monitor/safeArea"), shown);
}

QString GetFolder() {
  return Store().value(QStringLiteral("folder"), QDir::homePath()).toString();
}

void SetFolderOf(const QString& file) {
  Store().setValue(QStringLiteral("folder"), QFileInfo(file).absolutePath());
}

} // namespace App::settings
