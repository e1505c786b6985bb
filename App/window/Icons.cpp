#include "App/window/Icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

namespace App {

namespace {

// The colour that the drawings use where that of the text is meant.
constexpr const char* kInk = "#010203";
constexpr int kSizes[] = {16, 20, 24, 32, 48};

QPixmap Draw(const QByteArray& drawing, int size) {
  QSvgRenderer renderer(drawing);
  QPixmap picture(size, size);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  renderer.render(&painter);
  return picture;
}

QByteArray Load(const QString& name) {
  QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray Inked(const QByteArray& drawing, const QColor& ink) {
  return QByteArray(drawing).replace(kInk, ink.name().toLatin1());
}

} // namespace

QIcon Symbol(const QString& name, const QColor& color) {
  const QByteArray drawing = Load(name);
  const QByteArray normal = Inked(drawing, color);
  const QByteArray selected = Inked(drawing, QGuiApplication::palette().color(QPalette::HighlightedText));
  const QByteArray disabled =
      Inked(drawing, QGuiApplication::palette().color(QPalette::Disabled, QPalette::WindowText));
  QIcon icon;
  for (const int size : kSizes) {
    icon.addPixmap(Draw(normal, size), QIcon::Normal);
    icon.addPixmap(Draw(selected, size), QIcon::Selected);
    icon.addPixmap(Draw(disabled, size), QIcon::Disabled);
  }
  return icon;
}

QIcon Symbol(const QString& name) {
  return Symbol(name, QGuiApplication::palette().color(QPalette::WindowText));
}

QIcon ProgramIcon() {
  const QByteArray drawing = Load(QStringLiteral("captivo"));
  QIcon icon;
  for (const int size : {16, 32, 48, 64, 128, 256})
    icon.addPixmap(Draw(drawing, size));
  return icon;
}

QColor WarningColor() {
  const bool dark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
  return dark ? QColor(0xff, 0xb3, 0x47) : QColor(0xa3, 0x45, 0x00);
}

} // namespace App
