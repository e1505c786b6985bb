#pragma once

namespace zebmediatypes {

// Width of a pixel over its height.
struct PixelAspectRatio {
  int numerator = 1;
  int denominator = 1;

  double ToDouble() const { return denominator == 0 ? 1.0 : static_cast<double>(numerator) / denominator; }
  friend bool operator==(const PixelAspectRatio&, const PixelAspectRatio&) = default;
};

inline constexpr PixelAspectRatio kPixelAspectRatio_Square{1, 1};

enum class PixelFormat { Invalid, BGRA_4444_8u };
inline constexpr PixelFormat kPixelFormat_Invalid = PixelFormat::Invalid;
// Blue, green, red, alpha, 8 bits each, rows from the top.
inline constexpr PixelFormat kPixelFormat_BGRA_4444_8u = PixelFormat::BGRA_4444_8u;

struct ColorSpace {
  int number = 0;
  friend bool operator==(const ColorSpace&, const ColorSpace&) = default;
};
struct ColorSpaceConversionParameters {
  ColorSpace source;
  ColorSpace target;
};

} // namespace zebmediatypes
