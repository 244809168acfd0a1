#include "draw/texts.h"

#include <cmath>
#include <cwctype>
#include <optional>

#include "draw/record_values.h"

namespace torva::draw {
namespace {

enum class HorizontalAlign { left = 0, center = 1, right = 2, aligned = 3, middle = 4, fit = 5 };
enum class VerticalAlign { baseline = 0, bottom = 1, middle = 2, top = 3 };
enum GenerationFlag { backward = 2, upsideDown = 4 };

/// Where along and above the base line the given point of a text lies, in shares of its width and height.
struct Anchor {
  double along = 0, above = 0;
};

Anchor anchorOf(HorizontalAlign horizontal, VerticalAlign vertical) {
  if (horizontal == HorizontalAlign::middle) return {0.5, 0.5};
  Anchor anchor;
  if (horizontal == HorizontalAlign::center) anchor.along = 0.5;
  if (horizontal == HorizontalAlign::right) anchor.along = 1;
  if (vertical == VerticalAlign::bottom) anchor.above = -kTextDescent;
  if (vertical == VerticalAlign::middle) anchor.above = 0.5;
  if (vertical == VerticalAlign::top) anchor.above = 1;
  return anchor;
}

/// What a text keeps when it is fitted between two points.
enum class Kept { height, proportion };

TextFrame frameBetween(const KdGePoint3d& from, const KdGePoint3d& to, double width, const TextFrame& frame, Kept kept) {
  const double length = from.distanceTo(to);
  if (width <= 0 || length <= 0) return frame;
  TextFrame fitted = frame;
  fitted.xAxis = (to - from) * (1 / width);
  const KdGeVector3d up = KdGeVector3d{-fitted.xAxis.y, fitted.xAxis.x, 0} * (1 / fitted.xAxis.length());
  fitted.yAxis = up * (kept == Kept::height ? frame.yAxis.length() : fitted.xAxis.length());
  return fitted;
}

/// Reads the content of an MTEXT sign by sign.
class ContentReader {
 public:
  explicit ContentReader(std::wstring_view content) : m_rest(content) {}

  std::vector<std::wstring> read() {
    while (!m_rest.empty()) {
      const wchar_t letter = take();
      if (letter == L'\\') {
        readCode();
      } else if (letter == L'\n') {
        newLine();
      } else if (letter == L'^' && !m_rest.empty()) {
        readCaret();
      } else if (letter != L'{' && letter != L'}') {
        m_line += letter;
      }
    }
    newLine();
    return std::move(m_lines);
  }

 private:
  wchar_t take() {
    const wchar_t letter = m_rest.front();
    m_rest.remove_prefix(1);
    return letter;
  }

  void newLine() { m_lines.push_back(withoutPercentCodes(std::exchange(m_line, {}))); }

  void readCaret() {
    const wchar_t letter = take();
    if (letter == L'J') return newLine();
    m_line += letter == L' ' ? L'^' : L' ';  // control characters show as a blank
  }

  void readCode() {
    if (m_rest.empty()) return;
    const wchar_t code = take();
    switch (code) {
      case L'P':
      case L'X':
      case L'N':
        return newLine();
      case L'~':
        m_line += L' ';
        return;
      case L'L':
      case L'l':
      case L'O':
      case L'o':
      case L'K':
      case L'k':
        return;
      case L'S':
        return readStack();
      case L'A':
      case L'C':
      case L'c':
      case L'F':
      case L'f':
      case L'H':
      case L'p':
      case L'Q':
      case L'T':
      case L'W':
        takeArgument();
        return;
      default:
        m_line += code;
        return;
    }
  }

  std::wstring_view takeArgument() {
    const std::size_t end = m_rest.find(L';');
    const std::wstring_view argument = m_rest.substr(0, end);
    m_rest.remove_prefix(end == std::wstring_view::npos ? m_rest.size() : end + 1);
    return argument;
  }

  void readStack() {
    for (const wchar_t letter : takeArgument()) m_line += letter == L'^' || letter == L'#' ? L'/' : letter;
  }

  std::wstring_view m_rest;
  std::wstring m_line;
  std::vector<std::wstring> m_lines;
};

std::vector<std::wstring> wrapped(const std::wstring& line, double mostWidth) {
  if (mostWidth <= 0 || nominalTextWidth(line) <= mostWidth) return {line};
  std::vector<std::wstring> lines(1);
  double width = 0;
  for (std::size_t begin = 0; begin < line.size();) {
    const std::size_t blank = line.find(L' ', begin);
    const std::size_t end = blank == std::wstring::npos ? line.size() : blank + 1;
    const std::wstring word = line.substr(begin, end - begin);
    const double wordWidth = nominalTextWidth(word);
    if (!lines.back().empty() && width + wordWidth > mostWidth) {
      lines.emplace_back();
      width = 0;
    }
    lines.back() += word;
    width += wordWidth;
    begin = end;
  }
  return lines;
}

std::wstring contentOf(const dxf::DrawingFile& file, dxf::RecordId record) {
  std::wstring content;
  for (const dxf::Group& group : file.groups(record)) {
    if (group.code == 1001 || group.code == 101) break;
    if (group.code == 1 || group.code == 3) content += file.text(group);
  }
  return content;
}

/// The sign for %%nnn; nothing when there are not three digits.
std::optional<wchar_t> numberedSign(std::wstring_view digits) {
  if (digits.size() < 3) return {};
  int number = 0;
  for (const wchar_t digit : digits.substr(0, 3)) {
    if (digit < L'0' || digit > L'9') return {};
    number = number * 10 + (digit - L'0');
  }
  return static_cast<wchar_t>(number);
}

}  // namespace

bool isSqueezed(const RecordValues& values) {
  const auto horizontal = static_cast<HorizontalAlign>(values.integer(72));
  return (horizontal == HorizontalAlign::aligned || horizontal == HorizontalAlign::fit) && values.has(11);
}

TextFrame textFrame(const RecordValues& values, dxf::RecordType type, double width) {
  const double height = values.real(40), angle = radians(values.real(50)), slant = std::tan(radians(values.real(51)));
  const KdGeVector3d along{std::cos(angle), std::sin(angle), 0}, up{-along.y, along.x, 0};
  const int generation = values.integer(71);
  TextFrame frame{values.point(10), {}, {}};
  frame.xAxis = along * (height * values.real(41, 1) * (generation & backward ? -1 : 1));
  frame.yAxis = (up + along * slant) * (height * (generation & upsideDown ? -1 : 1));
  const auto horizontal = static_cast<HorizontalAlign>(values.integer(72));
  const auto vertical = static_cast<VerticalAlign>(values.integer(type == dxf::RecordType::text ? 73 : 74));
  if (isSqueezed(values)) {
    const auto kept = horizontal == HorizontalAlign::fit ? Kept::height : Kept::proportion;
    return frameBetween(values.point(10), values.point(11), width, frame, kept);
  }
  const bool isAligned = horizontal != HorizontalAlign::left || vertical != VerticalAlign::baseline;
  if (isAligned && values.has(11)) frame.origin = values.point(11);
  const Anchor anchor = anchorOf(horizontal, vertical);
  frame.origin = frame.origin + frame.xAxis * (-anchor.along * width) + frame.yAxis * -anchor.above;
  return frame;
}

void drawText(const dxf::DrawingFile& file, dxf::RecordId record, Sketch& sketch, std::uint32_t appearance) {
  const RecordValues values(file.groups(record));
  const bool isDefinition = file.type(record) == dxf::RecordType::attdef;
  std::wstring text = withoutPercentCodes(textOf(file, record, isDefinition ? 2 : 1));
  const TextFrame frame = textFrame(values, file.type(record), nominalTextWidth(text));
  sketch.text({std::move(text), frame.origin, frame.xAxis, frame.yAxis}, appearance);
}

void drawMultilineText(const dxf::DrawingFile& file, dxf::RecordId record, const KdGeVector3d& normal, Sketch& sketch,
                       std::uint32_t appearance) {
  const RecordValues values(file.groups(record));
  const double height = values.real(40), width = values.real(41);
  if (!(height > 0)) return;
  const geom::Transform plane = geom::Transform::fromExtrusion(normal);
  const double angle = radians(values.real(50));
  KdGeVector3d along = plane(KdGeVector3d{std::cos(angle), std::sin(angle), 0});
  if (values.has(11) && !values.vector(11).isZeroLength()) along = values.vector(11).normal();
  const KdGeVector3d up = plane.z.crossProduct(along);
  std::vector<std::wstring> lines;
  for (const std::wstring& line : plainLines(contentOf(file, record))) {
    for (std::wstring& part : wrapped(line, width / height)) lines.push_back(std::move(part));
  }
  // Attachment points count row by row from the top left: 1 to 9.
  const int attachment = values.integer(71, 1) - 1;
  const double alongShare = 0.5 * (attachment % 3), downShare = 0.5 * (attachment / 3);
  const double step = height * kMultilineSpacing * values.real(44, 1);
  const double blockHeight = height + step * static_cast<double>(lines.size() - 1);
  const KdGePoint3d top = values.point(10) + up * (blockHeight * downShare - height);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double shift = -alongShare * nominalTextWidth(lines[i]) * height;
    const KdGePoint3d origin = top + along * shift + up * (-step * static_cast<double>(i));
    sketch.text({std::move(lines[i]), origin, along * height, up * height}, appearance);
  }
}

std::wstring withoutPercentCodes(std::wstring_view text) {
  constexpr wchar_t kDegree = 0xB0, kDiameter = 0x2300, kPlusMinus = 0xB1;
  std::wstring result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isCode = text.substr(i, 2) == L"%%" && i + 2 < text.size();
    if (!isCode) {
      result += text[i];
      continue;
    }
    if (const auto sign = numberedSign(text.substr(i + 2))) {
      result += *sign;
      i += 4;
      continue;
    }
    switch (std::towlower(static_cast<std::wint_t>(text[i + 2]))) {
      case L'd':
        result += kDegree;
        break;
      case L'c':
        result += kDiameter;
        break;
      case L'p':
        result += kPlusMinus;
        break;
      case L'%':
        result += L'%';
        break;
      default:
        break;
    }
    i += 2;
  }
  return result;
}

std::vector<std::wstring> plainLines(std::wstring_view content) {
  return ContentReader(content).read();
}

}  // namespace torva::draw
