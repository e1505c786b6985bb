#pragma once

#include <optional>
#include <string>

#include "BE/Project.h"
#include "Captions/contracts/CaptioningColor.h"

// How captions come into a project and how they leave it, as a person set it for that project.
namespace BE {

// What becomes of a line that is longer than it may be.
enum class LongLines {
  Keep,
  Wrap,   // broken at blanks, into as many lines as it takes; line ends of the file stay
  Reflow, // all lines of the caption are joined and broken anew, of even length
};

// What becomes of a caption with more lines than it may have.
enum class LongCaptions {
  Keep,
  Split, // into captions one after the other, which share its time by the length of their text
};

// What becomes of a caption that is still on show when the next one begins.
enum class Overlaps {
  Keep,
  EndEarlier, // the earlier one ends where the next one begins
  BeginLater, // the next one begins where the earlier one ends
  Merge,      // both texts, one above the other, for as long as both are on show
};

// For captions that bring no style of their own; each field alone.
struct ImportStyle {
  std::string family; // UTF-8; empty for the stream's own
  float size = 0.0F;  // points; 0 for the stream's own
  bool bold = false;
  bool italic = false;
  // None for the stream's own.
  std::optional<zebcaptioning::CaptioningColor> textColor;
  std::optional<zebcaptioning::CaptioningColor> backgroundColor;
  friend bool operator==(const ImportStyle&, const ImportStyle&) = default;
};

struct CaptionsImportSettings {
  ImportStyle style;
  // For captions that bring no position: 0 left, 1 centre, 2 right, and a cell of the three by three grid, 0 to 8 by
  // rows.
  int alignment = 1;
  int anchor = 7;
  // For files that count frames and do not say at which rate; invalid for that of the clip.
  FrameRate frameRate;
  bool dropFrame = false;
  // Added to every time; may be negative.
  TickTime offset;
  LongLines longLines = LongLines::Keep;
  int lineLength = 0; // characters, 1 to 200; 0 for what the stream's grid holds
  LongCaptions longCaptions = LongCaptions::Keep;
  int lineCount = 2; // lines of one caption, 1 to 15
  // On show for at least that long, as far as the next caption leaves room; zero for as the file has it.
  TickTime minimumDuration;
  Overlaps overlaps = Overlaps::Keep;
  friend bool operator==(const CaptionsImportSettings&, const CaptionsImportSettings&) = default;
};

enum class SidecarFormat { SubRip, WebVTT };
enum class TextEncoding { UTF8, UTF8WithMark, UTF16, Windows1252 };
enum class ExportedStreams {
  OnShow, // the one that the captions panel shows
  One,
  All, // a file for each
};

struct CaptionsExportSettings {
  SidecarFormat format = SidecarFormat::SubRip;
  TextEncoding encoding = TextEncoding::UTF8;
  // Times are put on its frames; invalid to write them as they are, and to count the start timecode as the clip does.
  FrameRate frameRate;
  bool dropFrame = false;
  // The time that the clip's first frame has in the file; none for zero.
  std::optional<TickTime> startTimecode;
  std::string language; // BCP 47, "en", "pt-BR"; empty for none
  ExportedStreams streams = ExportedStreams::OnShow;
  StreamFormat stream = zebcaptioning::kStreamFormat_None; // of One
  friend bool operator==(const CaptionsExportSettings&, const CaptionsExportSettings&) = default;
};

// Under which they are kept among the project's settings, as JSON documents.
inline constexpr const char* kSetting_CaptionsImport = "captions.import";
inline constexpr const char* kSetting_CaptionsExport = "captions.export";

// What the project holds; the default of each field that it does not hold, or holds in a way that makes no sense.
CaptionsImportSettings GetCaptionsImportSettings(const Project& project);
CaptionsExportSettings GetCaptionsExportSettings(const Project& project);
// Kept at once, also in a read-only project as long as it is open; no step of the history.
void SetCaptionsImportSettings(Project& project, const CaptionsImportSettings& settings);
void SetCaptionsExportSettings(Project& project, const CaptionsExportSettings& settings);

// A language tag as the field of a caption file takes it: letters and digits in groups of up to eight with hyphens
// between.
bool IsLanguageTag(const std::string& text);

} // namespace BE
