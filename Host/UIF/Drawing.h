#pragma once

#include <cstdint>
#include <memory>

#include "zebcore/Geometry.h"
#include "zebcore/UString.h"
#include "zebui/Drawbot.h"
#include "zebui/Skin.h"

namespace UIF {

using zebcore::UString;
using zebcore::geom::PointT;
using zebcore::geom::RectT;

struct Color {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Color&, const Color&) = default;
};

using ColorID = int;
inline constexpr ColorID kColor_WindowBackground = 1;
inline constexpr ColorID kColor_ReversibleGray = 2;  // the band of a selected row
inline constexpr ColorID kColor_ReversibleBlack = 3; // text on the window background

enum class Theme { Light, Dark };

// Colours of the theme in use. Text on the window background and on the band has a contrast of at least 4.5 to 1.
class ColorManager {
 public:
  static Color GetColor(ColorID id);
  static Theme GetTheme();
  static void SetTheme(Theme theme);
};

namespace ZEBConversionUtilities {
Color ZEBColorRGBAtoKSLColor(const zebui::ui::ColorRGBA& color);
}

using FontID = int;
inline constexpr FontID kFont_Normal = 0;

class Font {
 public:
  static Font GetFont(FontID id);
  float StringWidth(const UString& text) const;
  FontID GetID() const { return mID; }

 private:
  explicit Font(FontID id) : mID(id) {}
  FontID mID;
};

enum Align : int { kAlign_Left = 0, kAlign_Center = 1, kAlign_Right = 2 };
enum VerticalAlignment : int { kVerticalAlignment_Top = 0, kVerticalAlignment_Center = 1 };
enum Truncate : int { kTruncate_None = 0, kTruncate_End = 1 };

// Where a view paints; lives for one pass.
class DC {
 public:
  struct Impl;
  explicit DC(Impl& impl);
  ~DC() = default;
  DC(const DC&) = delete;
  DC& operator=(const DC&) = delete;

  std::shared_ptr<zebui::drawbot::Drawbot> GetDrawbot();
  void FillRect(const RectT<int>& rect, const Color& color, int alpha);
  void DrawString(const Font& font, const RectT<int>& rect, const UString& text, const Color& color, Align align,
                  VerticalAlignment vertical, Truncate truncate, bool underline);
  void DrawLine(const PointT<int>& from, const PointT<int>& to, const Color& color, int width, int alpha);
  Impl& GetImpl() { return mImpl; }

 private:
  Impl& mImpl;
};

} // namespace UIF
