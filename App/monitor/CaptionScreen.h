#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "Captions/contracts/Caption.h"
#include "zebcaptioning/CaptionRegions.h"
#include "zebcaptioning/FormatFacts.h"

// What a decoder of closed captions has in its memory when it shows them: rows of cells, one character in each.
namespace App::monitor {

struct ScreenCell {
  bool isBoxed = false;
  // The character reaches down over the cell below, which holds no text of its own.
  bool isDouble = false;
  zebcore::UString text;          // one character with its marks; empty for a space
  zebcaptioning::SharedSpan look; // null where nothing is shown
};

class CaptionScreen {
 public:
  CaptionScreen() = default;
  CaptionScreen(zebcaptioning::StreamFormat format, int columns, int rows);

  zebcaptioning::FormatFamily GetFamily() const { return mFacts->family; }
  int GetRows() const { return mRows; }
  int GetColumns() const { return mColumns; }
  // The first row that captions may use.
  int GetTop() const { return mFacts->topPosition; }
  // column from -1 to GetColumns(): boxes reach a cell beyond the text on either side.
  bool Holds(int row, int column) const { return row >= 0 && row < mRows && column >= -1 && column <= mColumns; }
  const ScreenCell& At(int row, int column) const { return mCells[IndexOf(row, column)]; }
  ScreenCell& At(int row, int column) { return mCells[IndexOf(row, column)]; }
  // How many characters had no room on the screen.
  std::size_t CountLost() const { return mLost; }
  void LoseCharacter() { ++mLost; }

 private:
  std::size_t IndexOf(int row, int column) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(mColumns + 2) +
           static_cast<std::size_t>(column + 1);
  }

  const zebcaptioning::FormatFacts* mFacts = &zebcaptioning::GetFormatFacts(zebcaptioning::FormatFamily::None);
  int mColumns = 0;
  int mRows = 0;
  std::size_t mLost = 0;
  std::vector<ScreenCell> mCells;
};

// A caption on show, and what stands above it when it rolls up.
struct CaptionOnShow {
  zebcaptioning::CaptionStatePtr state;
  std::vector<zebcaptioning::CaptionStatePtr> rolledUp; // the oldest first
  // Its x and y count from the area's corner, and its anchor is a cell of the area.
  std::optional<zebcaptioning::CaptionRegions::Region> region;
};

// How many rows a display type rolls up; 0 for one that does not.
int CountRollUpRows(zebcaptioning::CaptionType type);

// The captions on the screen of a decoder, a later one over an earlier. Each stands in its cell (anchors 0 to 8), else
// at x and y, and is moved in where it reaches beyond the screen. columns and rows as the stream gives them, 0 for the
// format's own. Without cells for open captions and for a format that is none.
CaptionScreen LayOutScreen(const std::vector<CaptionOnShow>& captions, zebcaptioning::StreamFormat format, int columns,
                           int rows);

} // namespace App::monitor
