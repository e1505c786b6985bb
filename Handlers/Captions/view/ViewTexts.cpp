#include "Captions/view/ViewTexts.h"

#include "zebcore/Localizer.h"

namespace Captivo {

UString Localize(const char* key) {
  return zebcore::config::Localizer::Get().Localize(key);
}

} // namespace Captivo
