#include <array>
#include <limits>

#include <kdrx/cm_color.h>

namespace {

constexpr int kByBlockIndex = 0, kByLayerIndex = 256;
constexpr wchar_t kBookMark = L'$';

using Palette = std::array<std::uint32_t, 256>;

/// One of the six ramps of a color wheel in 24 steps: how strong red, green and blue are at a step, in quarters.
constexpr int quarters(int step, int channel) {
  const int place = (step + 24 - 8 * channel) % 24;  // 0 is the channel's own hue
  const int distance = place > 12 ? 24 - place : place;
  return distance <= 4 ? 4 : distance >= 8 ? 0 : 8 - distance;
}

constexpr Palette makePalette() {
  Palette palette = {0x000000, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF, 0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
  constexpr int kBrightnessPercent[] = {100, 65, 50, 30, 15};
  constexpr std::uint32_t kGrays[] = {51, 80, 105, 130, 190, 255};
  for (int index = 10; index < 250; ++index) {
    const int brightness = 255 * kBrightnessPercent[index % 10 / 2];
    const bool isPale = index % 2 == 1;
    std::uint32_t rgb = 0;
    for (int channel = 0; channel < 3; ++channel) {
      const int strength = quarters((index - 10) / 10, channel);
      const int value = isPale ? brightness * (4 + strength) / 800 : brightness * strength / 400;
      rgb = rgb << 8 | static_cast<std::uint32_t>(value);
    }
    palette[static_cast<std::size_t>(index)] = rgb;
  }
  for (std::uint32_t i = 0; i < 6; ++i) palette[250 + i] = kGrays[i] * 0x010101u;
  return palette;
}

constexpr Palette kPalette = makePalette();

int nearestIndex(std::uint32_t rgb) {
  const auto channel = [](std::uint32_t color, int shift) { return static_cast<int>(color >> shift & 0xFF); };
  int best = 1, bestDistance = std::numeric_limits<int>::max();
  for (int index = 1; index < 256; ++index) {
    int distance = 0;
    for (const int shift : {0, 8, 16}) {
      const int difference = channel(rgb, shift) - channel(kPalette[static_cast<std::size_t>(index)], shift);
      distance += difference * difference;
    }
    if (distance < bestDistance) {
      best = index;
      bestDistance = distance;
    }
  }
  return best;
}

}  // namespace

KdCmColor KdCmColor::byIndex(int index) {
  KdCmColor color;
  color.setColorIndex(index);
  return color;
}

KdCmColor KdCmColor::trueColor(std::uint32_t rgb) {
  KdCmColor color;
  color.m_color = std::uint32_t{kByColor} << 24 | (rgb & 0xFFFFFFu);
  return color;
}

int KdCmColor::colorIndex() const {
  switch (colorMethod()) {
    case kByBlock:
      return kByBlockIndex;
    case kByColor:
      return nearestIndex(m_color & 0xFFFFFFu);
    case kByIndex:
      return static_cast<int>(m_color & 0xFF);
    default:
      return kByLayerIndex;
  }
}

bool KdCmColor::setColorIndex(int index) {
  if (index < kByBlockIndex || index > kByLayerIndex) return false;
  if (index == kByLayerIndex) {
    m_color = std::uint32_t{kByLayer} << 24;
  } else if (index == kByBlockIndex) {
    m_color = std::uint32_t{kByBlock} << 24;
  } else {
    m_color = std::uint32_t{kByIndex} << 24 | static_cast<std::uint32_t>(index);
  }
  m_bookKey.clear();
  return true;
}

std::uint32_t KdCmColor::rgb() const {
  if (isTrueColor()) return m_color & 0xFFFFFFu;
  return colorMethod() == kByIndex ? kPalette[m_color & 0xFF] : 0;
}

std::wstring KdCmColor::bookName() const {
  const std::size_t mark = m_bookKey.find(kBookMark);
  return mark == std::wstring::npos ? std::wstring() : m_bookKey.substr(0, mark);
}

std::wstring KdCmColor::colorName() const {
  const std::size_t mark = m_bookKey.find(kBookMark);
  return mark == std::wstring::npos ? m_bookKey : m_bookKey.substr(mark + 1);
}

std::wstring KdCmColor::displayName() const {
  if (std::wstring name = colorName(); !name.empty()) return name;
  if (isByLayer()) return L"ByLayer";
  if (isByBlock()) return L"ByBlock";
  if (!isTrueColor()) return std::to_wstring(colorIndex());
  const auto channel = [this](int shift) { return std::to_wstring(m_color >> shift & 0xFF); };
  return channel(16) + L"," + channel(8) + L"," + channel(0);
}
