#pragma once

#include "Captions/shell/HostTypes.h"
#include "HSL/Module.h"

namespace Captivo {

// What the host makes when it loads the library.
class CaptionsModule : public HSL::Module {
 public:
  explicit CaptionsModule(const UString& name);
  ~CaptionsModule() override;
};

// The library's only export. Declares the panel's shortcut context and its commands. Null if there is no memory.
__attribute__((visibility("default"))) HSL::Module* CreateModule(const UString& name);

} // namespace Captivo
