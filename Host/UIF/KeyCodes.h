#pragma once

namespace UIF {

// A toolkit's key as views receive it: special keys as negative virtual key codes, others as their code.
short ToViewKeyCode(int toolkitKey);
// The inverse; 0 for a code that no key has.
int FromViewKeyCode(short code);

} // namespace UIF
