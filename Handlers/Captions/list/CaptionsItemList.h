#pragma once

#include <vector>

#include "Captions/list/CaptionsItem.h"
#include "Captions/list/CaptionsRowMap.h"
#include "Captions/shell/HostTypes.h"

namespace zebcaptioning {
class CaptionFormatInfo;
}

namespace Captivo {

class CaptionsPane;
class CaptionsTextEdit;

// The rows that the pane shows, ascending by begin time, and the selection over them. A row is known from outside by
// its time; an index is only its position. Two captions with one begin time make one row, and the later one wins.
//
// Look-ups with a time that names no row answer false, kTime_Min or null, and changes with one change nothing. All
// look-ups are logarithmic.
//
// Between operations every selected row is a row of the list, and GetSelectedTimes is what is selected, ascending.
class CaptionsItemList {
 public:
  explicit CaptionsItemList(CaptionsPane* pane);
  virtual ~CaptionsItemList();
  CaptionsItemList(const CaptionsItemList&) = delete;
  CaptionsItemList& operator=(const CaptionsItemList&) = delete;

  // The format and the region in which captions are made and their formats are read.
  void SetStreamSettings(StreamFormat format, int columns, int rows);

  // Rows. out is assigned on true only.
  std::size_t GetRowCount() const { return mItems.size(); }
  bool FindItem(const TickTime& time, boost::shared_ptr<CaptionsItem>& out) const;
  bool GetRowAtIndex(int index, boost::shared_ptr<CaptionsItem>& out) const;
  const TickTime& GetTimeAtIndex(int index) const;
  const TickTime& GetFirstTime() const;
  const TickTime& GetLastTime() const;
  // The row at the time, and after untouched; or, with no row there, the rows just before and just after it.
  void FindItemsAround(const TickTime& time, boost::shared_ptr<CaptionsItem>& at,
                       boost::shared_ptr<CaptionsItem>& after) const;

  // Selection.
  bool IsSelected(const TickTime& time) const { return mSelected.find(time) != mSelected.end(); }
  const std::vector<TickTime>& GetSelectedTimes() const { return mSelectedTimes; }
  std::size_t GetSelectedCount() const { return mSelected.size(); }
  // -1 without a selection.
  int GetFirstSelectedIndex() const;
  // Of the only selected row; null with none or several.
  void GetSelectedTextEdit(boost::intrusive_ptr<CaptionsTextEdit>& out) const;
  void GetSelectedCaption(boost::intrusive_ptr<Caption>& out) const;
  bool HasFocusInText() const;
  bool IsSelectedRowBeingEdited() const;
  // Rows up from the first selected one (negative), or down from the last; stops at the ends of the list.
  const TickTime& GetTimeByOffset(int offset) const;
  // The row that takes over once the selected rows are gone: the nearest unselected one above the selection, else one
  // below it. kTime_Min if there is none and, deliberately, if the only one is the last row of the list.
  void GetNextSelectableTime(TickTime& next) const;

  // True if what is selected is another: selecting the only selected row again is no change.
  bool SelectSingle(const TickTime& time);
  // The last selected row cannot be toggled off.
  bool ToggleSelection(const TickTime& time);
  // From the row last selected alone to this one; a plain selection if that row is no longer selected.
  bool ExtendSelection(const TickTime& time);
  void SelectAll();
  void ClearSelection();
  // Selects those of the times that are rows, or else what was selected first before. False if a time was missing, or
  // there was none.
  bool RestoreSelection(const std::vector<TickTime>& times);

  // The part of the text that formats are read from and applied to: of the only selected row, in stored units.
  void ResetTextSelection() { mTextSelection = kTextRange_Whole; }
  void SetTextSelection(const TextRange& range) { mTextSelection = range; }
  // Brings it to its normal form: nothing with no row selected, the whole text with several.
  const TextRange& NormalizeTextSelection();
  // Takes up the caret range of the text control that has the focus; true if it is another.
  bool UpdateTextSelection();
  // Gives the only selected row its focus and caret back.
  void RestoreTextSelection(const TextRange& range);
  void SetStoredTextOfSelection(const UString& text);
  // Merges the formats of the selected captions; with none, info stays as it is.
  void GatherSelectionFormat(boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo>& info) const;

  // Rows come and go.
  void Clear();
  // A row for the caption, in place of any row at its begin time.
  void AddRow(const boost::intrusive_ptr<Caption>& caption);
  // Reads the row of the caption's begin time again, or adds one; true if it was added.
  bool AddOrUpdateCaption(const boost::intrusive_ptr<Caption>& caption);
  // The only selected row hands the selection to a neighbour.
  bool RemoveRowAt(const TickTime& time);
  // Appends their times to removed.
  void RemoveSelectedRows(std::vector<TickTime>& removed);
  // A new, selected caption right after the last selected row, or else after the last row, cut to the gap that is
  // there. False, and no change, if there is no gap.
  bool InsertCaptionAfterSelection(const TickTime& duration);
  // Moves a row in time. A caption may not begin inside another one: false, and the row's controls show the old times
  // again. It ends where the next one begins at the latest: the duration is then shortened. reordered: the row has
  // changed places among its neighbours.
  bool MoveRow(const TickTime& oldBegin, const TickTime& newBegin, TickTime& duration, bool& reordered);
  // After the stream moved its captions in a range of time, the selection follows them.
  void AdjustRows(const TickTime& rangeBegin, const TickTime& rangeEnd, const TickTime& delta);
  void RefreshTimeDisplays();

 private:
  friend class CaptionsInspector;

  bool ReKeyRow(const TickTime& oldBegin, const TickTime& newBegin, const TickTime& duration, bool& reordered);
  CaptionsItem* GetOnlySelectedItem() const;
  CaptionsTextEdit* GetOnlySelectedTextEdit() const;
  void FileRow(const TickTime& time, const boost::shared_ptr<CaptionsItem>& item);
  TickTime GetTimeBefore(CaptionsRowMap::const_iterator row) const;
  TickTime GetNeighbourTime(CaptionsRowMap::const_iterator row) const;
  void EmptySelection();
  void RebuildSelectedTimes();

  CaptionsPane* mPane;
  StreamFormat mStreamFormat = zebcaptioning::kStreamFormat_608_CC1;
  int mColumns = 0;
  int mRows = 0;
  CaptionsRowMap mItems;
  TickTime mAnchorTime = kTime_Min;
  CaptionsRowMap mSelected;
  std::vector<TickTime> mSelectedTimes;
  TextRange mTextSelection = kTextRange_Empty;
};

} // namespace Captivo
