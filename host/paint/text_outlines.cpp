#include "paint/text_outlines.h"

#include <QFontMetricsF>

namespace torva::paint {
namespace {

constexpr int kFontPixels = 100;
constexpr std::size_t kMostTexts = 4096;

}  // namespace

const TextOutlines::Outline& TextOutlines::of(const std::wstring& text) {
  if (const auto known = m_outlines.find(text); known != m_outlines.end()) return known->second;
  if (m_outlines.size() == kMostTexts) m_outlines.clear();
  findFont();
  const QString letters = QString::fromStdWString(text);
  Outline& outline = m_outlines[text];
  outline.path.addText(0, 0, m_font, letters);
  outline.advance = QFontMetricsF(m_font).horizontalAdvance(letters);
  return outline;
}

double TextOutlines::capHeight() {
  findFont();
  return m_capHeight;
}

void TextOutlines::findFont() {
  if (m_capHeight > 0) return;
  m_font = QFont(QStringLiteral("sans-serif"));
  m_font.setPixelSize(kFontPixels);
  m_capHeight = QFontMetricsF(m_font).capHeight();
}

}  // namespace torva::paint
