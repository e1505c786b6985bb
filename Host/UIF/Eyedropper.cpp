#include "UIF/Eyedropper.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWidget>

#include "UIF/ViewWidget.h"
#include "zebcore/Localizer.h"

namespace UIF {

namespace toolkit = zebui::toolkit;

namespace {

constexpr int kMagnified = 11; // pixels of the screen each way, odd so that one is in the middle
constexpr int kZoom = 11;
constexpr int kAway = 18; // of the magnifier from the pointer
constexpr int kLabelHeight = 20;

// Where the system lets no program see the screen, the program's own windows are what can be picked from.
QImage Picture(QScreen& screen) {
  QImage grabbed = screen.grabWindow(0).toImage();
  if (!grabbed.isNull())
    return grabbed;
  const QRect area = screen.geometry();
  QImage picture(area.size() * screen.devicePixelRatio(), QImage::Format_RGB32);
  picture.setDevicePixelRatio(screen.devicePixelRatio());
  picture.fill(Qt::black);
  QPainter painter(&picture);
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->geometry().intersects(area))
      painter.drawPixmap(window->geometry().topLeft() - area.topLeft(), window->grab());
  }
  return picture;
}

// Where windows may be put anywhere, the covers leave the active window and its focus alone.
bool CoversByPlace() {
  return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

Qt::WindowFlags WindowType() {
  return CoversByPlace() ? Qt::ToolTip | Qt::BypassWindowManagerHint : Qt::WindowFlags(Qt::Window);
}

} // namespace

class Eyedropper::Screen : public QWidget {
 public:
  Screen(Eyedropper& eyedropper, QScreen& screen)
      : QWidget(nullptr, WindowType() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), mEyedropper(eyedropper),
        mPicture(Picture(screen)) {
    setScreen(&screen);
    setGeometry(screen.geometry());
    setCursor(Qt::CrossCursor);
    setMouseTracking(true);
    setAccessibleName(toolkit::ToQt(
        zebcore::config::Localizer::Get().Localize("$$$/Vidra/UIF/ColorPicker/Picking=Pick a color from the screen")));
    mPointer = mapFromGlobal(QCursor::pos());
  }

  Color ColorAt(const QPoint& point) const {
    const QColor color = mPicture.pixelColor(PixelAt(point));
    return {static_cast<std::uint8_t>(color.red()), static_cast<std::uint8_t>(color.green()),
            static_cast<std::uint8_t>(color.blue())};
  }

 protected:
  bool event(QEvent* event) override {
    const toolkit::EventScope scope;
    // Before anything of the program takes the key for a shortcut.
    if (event->type() == QEvent::ShortcutOverride) {
      event->accept();
      return true;
    }
    return QWidget::event(event);
  }

  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.drawImage(rect(), mPicture);
    if (rect().contains(mPointer))
      PaintMagnifier(painter);
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    mPointer = event->position().toPoint();
    update();
  }
  void leaveEvent(QEvent*) override {
    mPointer = {-1, -1};
    update();
  }
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton)
      mEyedropper.Finish(ColorAt(event->position().toPoint()));
    else
      mEyedropper.Finish(std::nullopt);
  }

  void keyPressEvent(QKeyEvent* event) override {
    switch (event->key()) {
    case Qt::Key_Escape:
      return mEyedropper.Finish(std::nullopt);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      return mEyedropper.Finish(rect().contains(mPointer) ? std::optional(ColorAt(mPointer)) : std::nullopt);
    case Qt::Key_Left:
      return MovePointer({-1, 0});
    case Qt::Key_Right:
      return MovePointer({1, 0});
    case Qt::Key_Up:
      return MovePointer({0, -1});
    case Qt::Key_Down:
      return MovePointer({0, 1});
    default:
      return;
    }
  }

  void closeEvent(QCloseEvent*) override { mEyedropper.Finish(std::nullopt); }

 private:
  QPoint PixelAt(const QPoint& point) const {
    const qreal across = static_cast<qreal>(mPicture.width()) / std::max(1, width());
    const qreal down = static_cast<qreal>(mPicture.height()) / std::max(1, height());
    return {std::clamp(static_cast<int>((point.x() + 0.5) * across), 0, mPicture.width() - 1),
            std::clamp(static_cast<int>((point.y() + 0.5) * down), 0, mPicture.height() - 1)};
  }

  void MovePointer(const QPoint& step) {
    const QPoint target = mPointer + step;
    mPointer = {std::clamp(target.x(), 0, width() - 1), std::clamp(target.y(), 0, height() - 1)};
    QCursor::setPos(mapToGlobal(mPointer));
    update();
  }

  void PaintMagnifier(QPainter& painter) const {
    constexpr int kSide = kMagnified * kZoom;
    // On the side of the pointer where there is room.
    QPoint corner = mPointer + QPoint(kAway, kAway);
    if (corner.x() + kSide > width())
      corner.setX(mPointer.x() - kAway - kSide);
    if (corner.y() + kSide + kLabelHeight > height())
      corner.setY(mPointer.y() - kAway - kSide - kLabelHeight);
    const QPoint middle = PixelAt(mPointer);
    for (int y = 0; y < kMagnified; ++y) {
      for (int x = 0; x < kMagnified; ++x) {
        const QPoint pixel = middle + QPoint(x - kMagnified / 2, y - kMagnified / 2);
        const QColor color = mPicture.rect().contains(pixel) ? mPicture.pixelColor(pixel) : QColor(Qt::black);
        painter.fillRect(QRect(corner + QPoint(x, y) * kZoom, QSize(kZoom, kZoom)), color);
      }
    }
    const QRect chosen(corner + QPoint(1, 1) * (kMagnified / 2 * kZoom), QSize(kZoom, kZoom));
    painter.setPen(Qt::black);
    painter.drawRect(chosen.adjusted(-2, -2, 1, 1));
    painter.setPen(Qt::white);
    painter.drawRect(chosen.adjusted(-1, -1, 0, 0));

    const QRect label(corner.x(), corner.y() + kSide, kSide, kLabelHeight);
    painter.fillRect(label, QColor(24, 26, 30));
    painter.drawText(label, Qt::AlignCenter, mPicture.pixelColor(middle).name().toUpper());
    const QRect whole(corner, QSize(kSide, kSide + kLabelHeight));
    painter.drawRect(whole.adjusted(0, 0, -1, -1));
    painter.setPen(Qt::black);
    painter.drawRect(whole.adjusted(-1, -1, 0, 0));
  }

  Eyedropper& mEyedropper;
  QImage mPicture;
  QPoint mPointer;
};

Eyedropper::Eyedropper(Done done) : mDone(std::move(done)) {
  // All pictures first, so that no cover is on one of them.
  for (QScreen* screen : QGuiApplication::screens())
    mScreens.push_back(std::make_unique<Screen>(*this, *screen));
  for (const auto& screen : mScreens)
    CoversByPlace() ? screen->show() : screen->showFullScreen();
  if (mScreens.empty())
    return;
  const auto under =
      std::ranges::find_if(mScreens, [](const auto& screen) { return screen->geometry().contains(QCursor::pos()); });
  Screen& first = under != mScreens.end() ? **under : *mScreens.front();
  first.raise();
  first.grabKeyboard();
  QObject::connect(qApp, &QGuiApplication::applicationStateChanged, &first, [this](Qt::ApplicationState state) {
    if (state != Qt::ApplicationActive)
      Finish(std::nullopt);
  });
}

Eyedropper::~Eyedropper() {
  for (auto& screen : mScreens) {
    screen->releaseKeyboard();
    toolkit::Dispose(screen.release());
  }
}

void Eyedropper::Finish(std::optional<Color> picked) {
  // Whoever is told may bring this to its end.
  if (const Done done = std::exchange(mDone, nullptr))
    done(picked);
}

} // namespace UIF
