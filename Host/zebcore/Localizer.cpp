#include "zebcore/Localizer.h"

#include <algorithm>
#include <filesystem>
#include <locale>
#include <mutex>
#include <optional>
#include <system_error>

#include <boost/locale.hpp>

#include "zebcore/Log.h"

namespace zebcore::config {

namespace fs = std::filesystem;

namespace {

constexpr const char* kDomain = "captivo";
constexpr const char* kLanguageOfDefaults = "en";

fs::path CatalogueIn(const fs::path& folder, const std::string& language) {
  return folder / language / "LC_MESSAGES" / (std::string(kDomain) + ".mo");
}

// Language, territory and modifier; nothing that could lead out of the folder.
bool IsLanguageName(const std::string& name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-' ||
           c == '@';
  });
}

std::vector<std::string> LanguagesIn(const fs::path& folder) {
  std::vector<std::string> languages;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    std::error_code missing;
    if (name != kLanguageOfDefaults && IsLanguageName(name) && fs::is_regular_file(CatalogueIn(folder, name), missing))
      languages.push_back(name);
  }
  std::sort(languages.begin(), languages.end());
  return languages;
}

// Beside the running program as it is installed, or as it lies in a build folder.
fs::path FindCatalogueFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error).parent_path();
  const fs::path candidates[] = {program / ".." / "share" / "locale", program / "share" / "locale", program};
  for (const fs::path& folder : candidates)
    if (!LanguagesIn(folder).empty())
      return folder;
  return candidates[0];
}

// Boost.Locale on ICU, which knows every language by itself; the machine's own locales need not be installed.
std::optional<std::locale> LoadCatalogue(const fs::path& folder, const std::string& language) {
  std::error_code error;
  if (!IsLanguageName(language) || !fs::is_regular_file(CatalogueIn(folder, language), error))
    return std::nullopt;
  try {
    boost::locale::localization_backend_manager backends = boost::locale::localization_backend_manager::global();
    backends.select("icu");
    boost::locale::generator generator(backends);
    generator.categories(boost::locale::message_facet | boost::locale::information_facet);
    generator.characters(boost::locale::char_facet);
    generator.add_messages_path(folder.string());
    generator.add_messages_domain(kDomain);
    return generator(language + ".UTF-8");
  } catch (const std::exception& exception) {
    log::Write(log::Level::Warning, "The catalogue of " + language + " cannot be read: " + exception.what());
    return std::nullopt;
  }
}

} // namespace

struct Localizer::Impl {
  mutable std::mutex mutex;
  fs::path folder = FindCatalogueFolder();
  std::string language = kLanguageOfDefaults;
  std::optional<std::locale> catalogue; // none for the language of the default texts
};

Localizer::Localizer() : mImpl(new Impl) {}
Localizer::~Localizer() {
  delete mImpl;
}

Localizer& Localizer::Get() {
  static auto* const localizer = new Localizer;
  return *localizer;
}

UString Localizer::Localize(std::string_view keyWithDefault) const {
  const std::size_t equals = keyWithDefault.find('=');
  const std::string key(keyWithDefault.substr(0, equals));
  const std::string_view byDefault =
      equals == std::string_view::npos ? keyWithDefault : keyWithDefault.substr(equals + 1);
  std::lock_guard lock(mImpl->mutex);
  if (!mImpl->catalogue || key.empty())
    return FromUTF8(byDefault);
  const std::string translation = boost::locale::gettext(key.c_str(), *mImpl->catalogue);
  return FromUTF8(translation.empty() || translation == key ? byDefault : std::string_view(translation));
}

bool Localizer::SetLanguage(const std::string& language) {
  std::lock_guard lock(mImpl->mutex);
  std::optional<std::locale> catalogue;
  if (language != kLanguageOfDefaults) {
    catalogue = LoadCatalogue(mImpl->folder, language);
    if (!catalogue)
      return false;
  }
  mImpl->catalogue = std::move(catalogue);
  mImpl->language = language;
  return true;
}

const std::string& Localizer::GetLanguage() const {
  return mImpl->language;
}

std::vector<std::string> Localizer::GetLanguages() const {
  std::lock_guard lock(mImpl->mutex);
  std::vector<std::string> languages = LanguagesIn(mImpl->folder);
  languages.insert(languages.begin(), kLanguageOfDefaults);
  return languages;
}

void Localizer::SetCatalogueFolder(const std::string& folder) {
  std::lock_guard lock(mImpl->mutex);
  mImpl->folder = folder.empty() ? FindCatalogueFolder() : fs::path(folder);
  if (mImpl->language == kLanguageOfDefaults)
    return;
  mImpl->catalogue = LoadCatalogue(mImpl->folder, mImpl->language);
  if (!mImpl->catalogue)
    mImpl->language = kLanguageOfDefaults;
}

} // namespace zebcore::config
