#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <filesystem>
#include <string>
#include <vector>

namespace App {

// What the program remembers of the user's ways, in their configuration folder.
namespace settings {

inline constexpr int kRecentProjects = 10;

// Newest first; those that are gone are left out.
std::vector<std::filesystem::path> GetRecentProjects();
void AddRecentProject(const std::filesystem::path& path);
void ClearRecentProjects();

// Geometry and docks of the main window; empty if never stored.
QByteArray GetGeometry();
QByteArray GetLayout();
void SetWindow(const QByteArray& geometry, const QByteArray& layout);

// Whether the docks of panels are columns that scroll.
bool ArePanelsStacked();
void SetPanelsStacked(bool stacked);

bool IsDark();
void SetDark(bool dark);
// A language code; empty for that of the system.
std::string GetLanguage();
void SetLanguage(const std::string& language);

// The family and channel that captions were last imported as.
std::string GetImportFamily();
int GetImportChannel();
void SetImportFormat(const std::string& family, int channel);

// The number of the time display chosen for sources, or for sequences; that of the invalid display at first.
int GetTimeDisplay(bool ofSources);
void SetTimeDisplay(bool ofSources, int number);

// What is drawn over the monitor's picture.
bool IsMonitorGridShown();
void SetMonitorGridShown(bool shown);
bool IsMonitorSafeAreaShown();
void SetMonitorSafeAreaShown(bool shown);

// Where files were last chosen; the home folder at first.
QString GetFolder();
void SetFolderOf(const QString& file);

} // namespace settings

} // namespace App
