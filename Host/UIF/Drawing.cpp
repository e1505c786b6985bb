#include "UIF/Drawing.h"

#include <array>
#include <cmath>
#include <vector>

#include <QApplication>

#include "UIF/ViewWidget.h"
#include "zebcore/Trace.h"

namespace UIF {

namespace toolkit = zebui::toolkit;

namespace {

constexpr float kWidthOfUnknownCharacter = 7.0F;

struct Palette {
  Color background;
  Color band;
  Color text;
  zebui::ui::ColorRGBA divider;
};

constexpr Palette kLight{{246, 247, 249}, {207, 224, 247}, {26, 30, 36}, {0.83F, 0.85F, 0.88F, 1.0F}};
constexpr Palette kDark{{31, 34, 40}, {46, 64, 92}, {230, 233, 238}, {0.24F, 0.26F, 0.30F, 1.0F}};

Theme sTheme = Theme::Light;

const Palette& GetPalette() {
  return sTheme == Theme::Dark ? kDark : kLight;
}

// A painter's surface. It outlives the pass in vain: without its painter it draws nothing.
class PainterDrawbot : public zebui::drawbot::Drawbot {
 public:
  explicit PainterDrawbot(QPainter& painter) : mPainter(&painter) {}
  ~PainterDrawbot() override = default;

  void SetAntiAliasing(int mode) override {
    if (zebcore::trace::IsOn())
      zebcore::trace::Record("Drawbot::SetAntiAliasing", {{"mode", mode}});
    if (mPainter)
      mPainter->setRenderHint(QPainter::Antialiasing, mode == 1);
  }
  void SaveState() override {
    if (!mPainter)
      return;
    mPainter->save();
    ++mSaved;
  }
  void RestoreState() override {
    if (!mPainter || mSaved == 0)
      return;
    mPainter->restore();
    --mSaved;
  }
  void Clip(const RectT<float>& rect) override {
    if (mPainter)
      mPainter->setClipRect(QRectF(rect.x, rect.y, rect.width, rect.height), Qt::IntersectClip);
  }
  void EndPass() {
    while (mSaved > 0)
      RestoreState();
    mPainter = nullptr;
  }

 private:
  QPainter* mPainter;
  int mSaved = 0;
};

nlohmann::json TraceColor(const Color& color) {
  return {color.red, color.green, color.blue};
}

} // namespace

Color ColorManager::GetColor(ColorID id) {
  switch (id) {
  case kColor_WindowBackground:
    return GetPalette().background;
  case kColor_ReversibleGray:
    return GetPalette().band;
  default:
    return GetPalette().text;
  }
}

Theme ColorManager::GetTheme() {
  return sTheme;
}

void ColorManager::SetTheme(Theme theme) {
  sTheme = theme;
  toolkit::SetDividerColor(GetPalette().divider);
}

Color ZEBConversionUtilities::ZEBColorRGBAtoKSLColor(const zebui::ui::ColorRGBA& color) {
  const auto toByte = [](float part) {
    return static_cast<std::uint8_t>(std::lround(std::min(1.0F, std::max(0.0F, part)) * 255.0F));
  };
  return {toByte(color.red), toByte(color.green), toByte(color.blue)};
}

Font Font::GetFont(FontID id) {
  return Font(id);
}

float Font::StringWidth(const UString& text) const {
  if (!toolkit::HasApplication())
    return kWidthOfUnknownCharacter * static_cast<float>(text.size());
  return static_cast<float>(QFontMetricsF(QApplication::font()).horizontalAdvance(toolkit::ToQt(text)));
}

DC::Impl::Impl(QPainter& target) : painter(target), drawbot(std::make_shared<PainterDrawbot>(target)) {}

DC::Impl::~Impl() {
  static_cast<PainterDrawbot&>(*drawbot).EndPass();
}

DC::DC(Impl& impl) : mImpl(impl) {}

std::shared_ptr<zebui::drawbot::Drawbot> DC::GetDrawbot() {
  return mImpl.drawbot;
}

void DC::FillRect(const RectT<int>& rect, const Color& color, int alpha) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("DC::FillRect", {{"rect", TraceRect(rect)}, {"color", TraceColor(color)}, {"alpha", alpha}});
  mImpl.painter.fillRect(ToQt(rect), ToQt(color, alpha));
}

void DC::DrawString(const Font& font, const RectT<int>& rect, const UString& text, const Color& color, Align align,
                    VerticalAlignment vertical, Truncate truncate, bool underline) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("DC::DrawString", {{"text", zebcore::ToUTF8(text)},
                                              {"font", font.GetID()},
                                              {"rect", TraceRect(rect)},
                                              {"color", TraceColor(color)},
                                              {"align", static_cast<int>(align)},
                                              {"vertical", static_cast<int>(vertical)},
                                              {"truncate", static_cast<int>(truncate)},
                                              {"underline", underline}});
  QPainter& painter = mImpl.painter;
  painter.save();
  QFont qtFont = QApplication::font();
  qtFont.setUnderline(underline);
  painter.setFont(qtFont);
  painter.setPen(ToQt(color));
  QString shown = toolkit::ToQt(text);
  if (truncate == kTruncate_End)
    shown = QFontMetrics(qtFont).elidedText(shown, Qt::ElideRight, rect.width);
  constexpr std::array<Qt::Alignment, 3> kHorizontal{Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
  const Qt::Alignment alignment = kHorizontal.at(static_cast<std::size_t>(align)) |
                                  (vertical == kVerticalAlignment_Center ? Qt::AlignVCenter : Qt::AlignTop);
  painter.drawText(ToQt(rect), static_cast<int>(alignment) | Qt::TextSingleLine, shown);
  painter.restore();
}

void DC::DrawLine(const PointT<int>& from, const PointT<int>& to, const Color& color, int width, int alpha) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("DC::DrawLine", {{"from", {from.x, from.y}},
                                            {"to", {to.x, to.y}},
                                            {"color", TraceColor(color)},
                                            {"width", width},
                                            {"alpha", alpha}});
  QPainter& painter = mImpl.painter;
  painter.save();
  // Lines along the pixels stay sharp.
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(QPen(ToQt(color, alpha), width));
  painter.drawLine(from.x, from.y, to.x, to.y);
  painter.restore();
}

} // namespace UIF
