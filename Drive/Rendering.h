#pragma once

#include <cstdint>
#include <vector>

#include "zebcore/ImmutableString.h"
#include "zebmediatypes/TickTime.h"

// How the panel's requests for pictures are answered: by the host's renderer, or as a script says.
namespace Drive::Rendering {

enum class Mode {
  Real,   // by decoding, as in the program
  AtOnce, // each request is complete when it returns; a clip without media yields a plain picture
  Hold,   // requests wait until they are completed by name
};

// From now on renderers are the driver's.
void Install();
// The host's own again.
void Uninstall();

Mode GetMode();
// Requests that are held stay held.
void SetMode(Mode mode);

// Of the renderer that the panel made last; null without one.
zebcore::utility::ImmutableString GetStation();

struct Held {
  std::uint32_t request;
  zebmediatypes::TickTime time;
};
// Oldest first.
std::vector<Held> GetHeld();
// Posts the completion of a request with a picture. An id that nobody asked for is completed as well, at the renderer
// that the panel made last; false if there is none.
bool Complete(std::uint32_t request, zebmediatypes::TickTime time);
// Waits until nothing is being decoded any more.
void WaitForDecoding();

} // namespace Drive::Rendering
