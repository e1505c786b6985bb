#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include "zebui/HotField.h"

using zebui::controls::DrawFittingText;

namespace {

// Black on white in a room of this width, with as much again to its right.
QImage Drawn(const QString& text, int width) {
  QImage picture(2 * width, 20, QImage::Format_RGB32);
  picture.fill(Qt::white);
  QPainter painter(&picture);
  QFont font;
  font.setPixelSize(13);
  DrawFittingText(painter, QRect(0, 0, width, 20), font, text);
  return picture;
}

int LastColumn(const QImage& picture) {
  for (int x = picture.width() - 1; x >= 0; --x)
    for (int y = 0; y < picture.height(); ++y)
      if (picture.pixel(x, y) != qRgb(255, 255, 255))
        return x;
  return -1;
}

} // namespace

TEST(FittingText, IsDrawnAsItIsWhereThereIsRoom) {
  EXPECT_LT(LastColumn(Drawn(QStringLiteral("20"), 100)), 30);
}

TEST(FittingText, IsMadeNarrowerInsteadOfBeingCutOff) {
  QFont font;
  font.setPixelSize(13);
  const QString text = QStringLiteral("100.00");
  const int room = static_cast<int>(QFontMetricsF(font).horizontalAdvance(text)) - 4;
  const QImage narrow = Drawn(text, room);
  EXPECT_LE(LastColumn(narrow), room);
  // The last figure is still there: without it the text ends earlier.
  EXPECT_GT(LastColumn(narrow), LastColumn(Drawn(QStringLiteral("100.0"), room)));
}

TEST(FittingText, EndsInDotsWhereEvenSmallTextDoesNotFit) {
  const QImage picture = Drawn(QStringLiteral("A text that no field of this width can hold"), 40);
  EXPECT_LE(LastColumn(picture), 41);
  EXPECT_GT(LastColumn(picture), 20);
}
