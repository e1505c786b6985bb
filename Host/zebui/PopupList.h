// The list that a popup opens, for zebui's own sources.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <QAbstractListModel>
#include <QFrame>
#include <QListView>

#include "zebui/ControlWidget.h"

namespace zebui::controls {

// The items as they are; the view asks for those it shows only.
class PopupItems : public QAbstractListModel {
 public:
  PopupItems(std::vector<UString> items, std::int64_t value, bool marksValue, QObject* parent)
      : QAbstractListModel(parent), mItems(std::move(items)), mValue(value), mMarksValue(marksValue) {}
  bool MarksValue() const { return mMarksValue; }
  bool IsValue(int row) const { return row == mValue; }

  int rowCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  std::vector<UString> mItems; // its own: the popup may go while the list still closes
  std::int64_t mValue;
  bool mMarksValue;
};

// A window of its own under the popup, or over it where there is no room below; gone when it closes.
class PopupList : public QFrame {
 public:
  struct Content {
    const std::vector<UString>& items;
    std::int64_t value;
    bool marksValue;
    int widestItem; // pixels
  };
  struct Owner {
    std::function<void(std::int64_t)> chosen;
    std::function<void()> closed;
  };
  PopupList(const Content& content, QWidget* under, Owner owner);
  void Open();
  QListView* GetView() const { return mView; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void Place(int widestItem, int count);
  void ChooseCurrent();
  bool FilterKey(const QKeyEvent& key);
  bool FilterMouse(QMouseEvent& mouse);

  QWidget* mUnder;
  QListView* mView;
  Owner mOwner;
  int mWidestItem;
  bool mMouseCame = false; // the pointer was in the list since it opened
};

} // namespace zebui::controls
