#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "zebcore/UString.h"

namespace zebcore::config {

// Turns a key with its default text, "$$$/Path/Name=Default", into text in the language of the program. The catalogues
// are gettext's, one for each language, with the part before the equals sign as msgid.
class Localizer {
 public:
  static Localizer& Get();

  // The translation; without one, the default text; without an equals sign, the key itself.
  UString Localize(std::string_view keyWithDefault) const;

  // "en" is the language of the default texts. False, and nothing changes, if there is no catalogue of that language.
  bool SetLanguage(const std::string& language);
  const std::string& GetLanguage() const;
  // "en" first, then every language with a catalogue, ascending.
  std::vector<std::string> GetLanguages() const;

  // Where LANGUAGE/LC_MESSAGES/captivo.mo are looked for; empty for the folder beside the program, which is where they
  // are looked for at first. The language stays if it has a catalogue there, else it is "en".
  void SetCatalogueFolder(const std::string& folder);

 private:
  Localizer();
  ~Localizer();
  struct Impl;
  Impl* mImpl;
};

} // namespace zebcore::config
