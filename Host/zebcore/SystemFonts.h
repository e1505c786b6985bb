#pragma once

namespace zebcore {

// The operating system's font operations, answered by the machine's font configuration. A handle if exactly this family
// is installed, else null; the other arguments do not matter.
void* CreateFontW(int height, int width, int escapement, int orientation, int weight, unsigned italic,
                  unsigned underline, unsigned strikeOut, unsigned charSet, unsigned outputPrecision,
                  unsigned clipPrecision, unsigned quality, unsigned pitchAndFamily, const wchar_t* family);
bool DeleteObject(void* handle);

// In place of the machine's fonts: answers whether a family is installed. Null restores the machine's.
using FontProbe = bool (*)(const wchar_t* family);
void SetFontProbe(FontProbe probe);

} // namespace zebcore
