#include "UIF/Bitmap.h"

namespace UIF {

Bitmap Bitmap::GetBitmap(DecalID decal, const DrawingSupplier*) {
  return Bitmap(decal);
}

} // namespace UIF
