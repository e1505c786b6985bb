#pragma once

namespace zebcore::geom {

template <class T> struct PointT {
  T x{};
  T y{};

  friend bool operator==(const PointT&, const PointT&) = default;
};

// Left, top, width, height. Right and bottom are the first coordinates outside.
template <class T> struct RectT {
  T x{};
  T y{};
  T width{};
  T height{};

  T Right() const { return x + width; }
  T Bottom() const { return y + height; }
  bool Contains(const PointT<T>& p) const { return p.x >= x && p.x < Right() && p.y >= y && p.y < Bottom(); }

  friend bool operator==(const RectT&, const RectT&) = default;
};

} // namespace zebcore::geom
