// Switches of the host, and what the panel has registered with it.

#include <cmath>
#include <set>

#include "BE/Preferences.h"
#include "Captions/contracts/TextSpanAttributes.h"
#include "Drive/Driver.h"
#include "TD/TitlerFontList.h"
#include "UIF/ShortcutManager.h"
#include "UIF/Workspace.h"
#include "zebappsupport/Feature.h"
#include "zebcaptioning/GenericFonts.h"
#include "zebcore/DebugDatabase.h"
#include "zebcore/Localizer.h"
#include "zebcore/SystemFonts.h"

namespace Drive {

namespace {

// The field that carries what a switch is set to goes by either name.
const char* SwitchField(const Fields& fields) {
  return fields.Mentions("on") ? "on" : "value";
}

Json SetFeature(Driver&, const Fields& fields) {
  const std::string name = fields.Text("name");
  zebappsupport::feature::SetFeatureEnabled(name.c_str(), fields.Flag(SwitchField(fields), false));
  return Json::object();
}

Json SetDebugValue(Driver&, const Fields& fields) {
  auto& database = zebcore::debug::DebugDatabase::Instance();
  const std::string name = fields.Text("name");
  const char* field = SwitchField(fields);
  if (!fields.Has(field))
    database.RemoveValue(name);
  else if (fields.Get(field).is_string())
    database.SetValue(name, fields.Text(field));
  else if (fields.Get(field).is_object() || fields.Get(field).is_array())
    fields.Refuse(field, "must be a text, a number, true, false or null");
  else
    database.SetValue(name, fields.Get(field).dump());
  return Json::object();
}

// A preference may be called by its key or by the name of the host's constant for it.
std::string PreferenceKey(std::string name) {
  static const std::map<std::string, const char*> keys = {
      {"kPrefsStillImagesDefaultFramerate", BE::kPrefsStillImagesDefaultFramerate},
      {"kPrefsStillImagesDefaultIsDropFrame", BE::kPrefsStillImagesDefaultIsDropFrame},
  };
  if (name.rfind("BE::", 0) == 0)
    name.erase(0, 4);
  const auto found = keys.find(name);
  return found == keys.end() ? name : found->second;
}

Json SetPreference(Driver&, const Fields& fields) {
  const auto store = BE::GetBackend()->GetPreferences();
  if (!store)
    throw RequestError("the host has no preferences");
  const std::string key = PreferenceKey(fields.Text("name"));
  const char* field = SwitchField(fields);
  if (!fields.Has(field)) {
    store->Remove(key.c_str());
  } else if (fields.Get(field).is_boolean()) {
    store->Write(key.c_str(), BE::SerializeableValue<bool>(BE::kSerializeableType_Bool, fields.Flag(field)));
  } else if (fields.Get(field).is_array() || key == BE::kPrefsStillImagesDefaultFramerate) {
    // What is stored is stored, be it no rate at all.
    const bool isRational = fields.Get(field).is_array();
    const auto rate = isRational ? fields.Rate(field) : zebmediatypes::FrameRate(fields.Time(field).GetTicks());
    store->Write(key.c_str(), BE::SerializeableValue<zebmediatypes::FrameRate>(BE::kSerializeableType_Int64, rate));
  } else {
    store->Write(key.c_str(),
                 BE::SerializeableValue<std::int64_t>(BE::kSerializeableType_Int64, fields.Time(field).GetTicks()));
  }
  return Json::object();
}

Json SetLanguage(Driver&, const Fields& fields) {
  auto& localizer = zebcore::config::Localizer::Get();
  const char* field = fields.Mentions("name") ? "name" : SwitchField(fields);
  const std::string language = fields.Text(field, "en");
  if (!localizer.SetLanguage(language))
    fields.Refuse(field, "there is no catalogue of the language " + language);
  return {{"language", localizer.GetLanguage()}, {"languages", localizer.GetLanguages()}};
}

// The families that stand in for the machine's. The probe is a plain function, so they stand outside of any object.
std::set<std::wstring>& InstalledFamilies() {
  static std::set<std::wstring> families;
  return families;
}

bool IsInstalled(const wchar_t* family) {
  return InstalledFamilies().contains(family);
}

TD::FontFamilyDescription ReadFamily(const Fields& fields) {
  TD::FontFamilyDescription family;
  family.name = zebcore::FromUTF8(fields.Text("name"));
  if (!fields.Has("faces"))
    return family;
  for (const Fields& face : fields.Objects("faces")) {
    TD::CaptionFontRecord record;
    const std::string style = face.Text("style");
    record.styleName = zebcore::FromUTF8(style);
    record.fullName = zebcore::FromUTF8(face.Text("full_name", fields.Text("name") + " " + style));
    record.isBold = face.Flag("bold", record.isBold);
    record.boldSelectable = face.Flag("bold_selectable", record.boldSelectable);
    record.isItalic = face.Flag("italic", record.isItalic);
    record.italicSelectable = face.Flag("italic_selectable", record.italicSelectable);
    family.faces.push_back(std::move(record));
  }
  return family;
}

Json TellFamilies() {
  Json list = Json::array();
  for (const auto& [key, family] : TD::GetTitlerFontList()) {
    Json faces = Json::array();
    for (const TD::CaptionFontRecord* face : *family.faces)
      faces.push_back({{"style", FromText(face->styleName)},
                       {"full_name", FromText(face->fullName)},
                       {"bold", face->isBold},
                       {"bold_selectable", face->boldSelectable},
                       {"italic", face->isItalic},
                       {"italic_selectable", face->italicSelectable}});
    list.push_back({{"name", FromText(family.name)}, {"faces", std::move(faces)}});
  }
  return list;
}

Json SetFonts(Driver&, const Fields& fields) {
  if (fields.Mentions("generic")) {
    std::map<zebcore::UString, zebcore::UString> names;
    if (fields.Has("generic")) {
      const Fields generic = fields.Object("generic");
      for (const auto& [name, family] : generic.GetJson().items())
        names[zebcore::FromUTF8(name)] = zebcore::FromUTF8(generic.Text(name.c_str()));
    }
    zebcaptioning::SetGenericUIFontNames(std::move(names));
  }
  if (fields.Has("families")) {
    std::set<std::wstring> names;
    std::vector<TD::FontFamilyDescription> families;
    for (const Fields& family : fields.Objects("families")) {
      families.push_back(ReadFamily(family));
      names.insert(std::wstring(families.back().name.begin(), families.back().name.end()));
    }
    InstalledFamilies().swap(names);
    zebcore::SetFontProbe(&IsInstalled);
    TD::SetTitlerFontListAsGiven(std::move(families));
  } else if (fields.Mentions("families")) {
    zebcore::SetFontProbe(nullptr);
    TD::SetTitlerFontList({});
  }
  using zebcaptioning::TextSpanAttributes;
  return {{"families", TellFamilies()},
          {"styles",
           {{"regular", FromText(TextSpanAttributes::kFontStyleString_Regular)},
            {"italic", FromText(TextSpanAttributes::kFontStyleString_Italic)},
            {"bold", FromText(TextSpanAttributes::kFontStyleString_Bold)},
            {"bold_italic", FromText(TextSpanAttributes::kFontStyleString_BoldItalic)}}}};
}

Json MakeOrTakeHandler(Driver& driver, const Fields& fields) {
  const std::string what = fields.Text("what", "");
  if (!what.empty() && what != "create" && what != "destroy")
    fields.Refuse("what", "must be create or destroy");
  const bool create = what == "create" || fields.Flag("create", false);
  const bool destroy = what == "destroy" || fields.Flag("destroy", false);
  if (create == destroy)
    fields.Refuse("create", "one of create and destroy must be true");
  if (destroy) {
    driver.DestroyHandler();
    return {{"created", false}};
  }
  return {{"created", driver.CreateHandler()}};
}

Json TellRegistry(Driver&, const Fields&) {
  Json classes = Json::array();
  for (const auto& one : UIF::GetWindowClasses())
    classes.push_back({{"type_id", FromText(one.typeID)}, {"handler_id", FromText(one.handlerID)}, {"type", one.type}});
  Json menu = Json::array();
  for (const auto& one : UIF::GetWindowMenu())
    menu.push_back({{"type_id", FromText(one.typeID)},
                    {"window_id", FromText(one.windowID)},
                    {"title", FromText(one.title)},
                    {"context_id", FromText(one.contextID)}});
  const auto* shortcuts = UIF::ShortcutManager::Instance();
  Json wings = Json::array();
  for (const auto& one : shortcuts->GetWindowMenuIDs())
    wings.push_back({{"context", one.context}, {"label", FromText(one.label)}, {"menu", one.menu}});
  Json contexts = Json::array();
  for (const auto& context : shortcuts->GetContexts()) {
    Json commands = Json::array();
    for (const auto& command : context->GetCommands())
      commands.push_back({{"name", command.name},
                          {"number", command.number},
                          {"kind", command.kind},
                          {"decal", command.decal},
                          {"text", command.text.IsNull() ? Json() : Json(command.text.Text())},
                          {"flag", command.flag},
                          {"keys", shortcuts->GetKeys(command.name)}});
    contexts.push_back({{"id", context->GetID()}, {"name", FromText(context->GetName())}, {"commands", commands}});
  }
  return {{"window_classes", std::move(classes)},
          {"window_menu", std::move(menu)},
          {"wing_menus", std::move(wings)},
          {"contexts", std::move(contexts)}};
}

Json QuitDrive(Driver& driver, const Fields&) {
  driver.Quit();
  return Json::object();
}

} // namespace

void AddHostRequests(RequestTable& table) {
  table["feature"] = {&SetFeature, false};
  table["debug"] = {&SetDebugValue, false};
  table["preference"] = {&SetPreference, false};
  table["language"] = {&SetLanguage, false};
  table["fonts"] = {&SetFonts, false};
  table["handler"] = {&MakeOrTakeHandler, false};
  table["registry"] = {&TellRegistry};
  table["quit"] = {&QuitDrive, false};
}

} // namespace Drive
