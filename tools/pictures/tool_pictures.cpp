// Makes the pictures of the tool picker: tool_pictures FOLDER. Each tool edits sample multilines, and what is then drawn is
// the picture; so a picture shows what its tool does. Run by the build. The texts of the module lie beside the program.

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "db/database.h"
#include "entry/module_entry.h"
#include "paint/painter.h"
#include "runtime/host.h"

#include <kdrx/db_database.h>
#include <kdrx/db_dictionary.h>
#include <kdrx/db_mline.h>
#include <kdrx/db_mline_style.h>

#include <QImage>
#include <QPainter>

using namespace torva;

namespace {

/// Edge of a picture in pixels of a plain screen, which are drawing units; 0,0 is in the middle.
constexpr int kSize = 64;
constexpr int kScales[] = {1, 2};
constexpr int kLineHundredthsMm = 80;  // 3 pixels
// Of middle lightness, so that they are clear of a light and of a dark button.
constexpr std::uint32_t kFirstRgb = 0x2F80DE, kSecondRgb = 0xE67E17;
const QColor kFormerColor(140, 140, 140), kVertexColor(0xD6, 0x33, 0x4C), kFrameColor(0x2F, 0x80, 0xDE);
constexpr double kElementOffsets[] = {9, 0, -9};

/// What is shown beside the edited multilines.
enum class Beside {
  nothing,
  formerBelow,  ///< Faintly what was there: the tool took something away.
  addition,     ///< What the tool added, in the second color.
  vertices,
};

struct Scene {
  const char* name;
  const char* drawing;  ///< Script that draws the samples.
  const char* edit;     ///< Script that runs the tool on them.
  Beside beside = Beside::nothing;
};

#define KDRX_FIRST(points) "MLINE ST FIRST J Z S 1 " points " \"\"\n"
#define KDRX_SECOND(points) "MLINE ST SECOND J Z S 1 " points " \"\"\n"
constexpr const char* kCross = KDRX_FIRST("-27,0 27,0") KDRX_SECOND("0,-27 0,27");
constexpr const char* kTee = KDRX_FIRST("0,-27 0,27") KDRX_SECOND("-27,11 27,11");
constexpr const char* kCorner = KDRX_FIRST("-27,12 27,12") KDRX_SECOND("12,-27 12,27");
constexpr const char* kStraight = KDRX_FIRST("-27,0 27,0");
constexpr const char* kRoof = KDRX_FIRST("-20,-14 0,5 20,-14");
constexpr const char* kGap = KDRX_FIRST("-27,0 27,0") "-MLEDIT CA -10,-9 10,-9 \"\"\n";

constexpr Scene kScenes[] = {
    {"CLOSE_CROSS", kCross, "-MLEDIT CC -20,-9 9,20 \"\""},
    {"OPEN_CROSS", kCross, "-MLEDIT OC -20,-9 9,20 \"\""},
    {"MERGED_CROSS", kCross, "-MLEDIT MC -20,-9 9,20 \"\""},
    {"CLOSE_TREE", kTee, "-MLEDIT CT 9,-20 -20,2 \"\""},
    {"OPEN_TREE", kTee, "-MLEDIT OT 9,-20 -20,2 \"\""},
    {"MERGED_TREE", kTee, "-MLEDIT MT 9,-20 -20,2 \"\""},
    {"CORNER_JOINT", kCorner, "-MLEDIT CJ -20,3 21,-20 \"\"", Beside::formerBelow},
    {"ADD_VERTEX", kStraight, "-MLEDIT AV 0,-9 \"\"", Beside::vertices},
    {"DELETE_VERTEX", kRoof, "-MLEDIT DV 0,5 \"\"", Beside::formerBelow},
    {"CUT_SINGLE", kStraight, "-MLEDIT CS -10,9 10,9 \"\"", Beside::formerBelow},
    {"CUT_ALL", kStraight, "-MLEDIT CA -10,-9 10,-9 \"\"", Beside::formerBelow},
    {"WELD_ALL", kGap, "-MLEDIT WA -20,-9 20,-9 \"\"", Beside::addition},
};

template <class Object>
bool edit(KdDbObjectId id, KdOpenMode mode, const std::function<void(Object&)>& use) {
  Object* object = nullptr;
  if (kddbOpenObject(object, id, mode) != KdStatus::ok) return false;
  use(*object);
  object->close();
  return true;
}

/// One sample drawing and the command line that edits it.
class Sample {
 public:
  Sample();
  /// False after a fault, which is printed.
  bool run(const std::string& script);
  draw::DisplayList seen();
  std::vector<KdGePoint3d> vertices();
  const view::View& view() { return m_host->editor().view(); }

 private:
  bool addStyle(const std::wstring& name, std::uint32_t rgb);
  bool m_isWell = true;
  std::unique_ptr<runtime::Host> m_host;
};

Sample::Sample() {
  runtime::HostOptions options;
  options.profileUse = runtime::ProfileUse::none;
  options.viewportWidthPx = options.viewportHeightPx = kSize;
  options.print = [](std::wstring_view) {};
  m_host = std::move(*runtime::Host::create(options));
  m_host->editor().view().set({0, 0, 0}, kSize);
  m_isWell = kdrxEntryPoint(1, nullptr) == 0 && addStyle(L"FIRST", kFirstRgb) && addStyle(L"SECOND", kSecondRgb);
}

bool Sample::addStyle(const std::wstring& name, std::uint32_t rgb) {
  constexpr std::wstring_view kStyles[] = {L"ACAD_MLINESTYLE"};
  const db::Database& database = m_host->editor().database();
  const KdDbObjectId styles = database.idOf(database.findInDictionary(kStyles));
  return edit<KdDbDictionary>(styles, KdOpenMode::forWrite, [&](KdDbDictionary& dictionary) {
    auto* style = new KdDbMlineStyle;
    style->initMlineStyle();
    style->setName(name);
    int index = 0;
    for (const double offset : kElementOffsets) style->addElement(index, offset, KdCmColor::trueColor(rgb), {});
    KdDbObjectId id;
    m_isWell &= dictionary.setAt(name, style, id) == KdStatus::ok;
    style->close();
  });
}

bool Sample::run(const std::string& script) {
  if (!m_isWell) return false;
  const auto source = command::ScriptSource::fromText(script, script);
  return m_host->editor().run(*source, command::OnFault::stop) == command::Fault::none;
}

draw::DisplayList Sample::seen() {
  draw::DisplayList list;
  command::Editor& editor = m_host->editor();
  editor.database().forEachModelSpaceEntity([&](dxf::RecordId entity) { editor.picker().drawer().draw(entity, list); });
  for (draw::Appearance& appearance : list.appearances) appearance.lineweightHundredthsMm = kLineHundredthsMm;
  return list;
}

std::vector<KdGePoint3d> Sample::vertices() {
  std::vector<KdGePoint3d> points;
  const db::Database& database = m_host->editor().database();
  database.forEachModelSpaceEntity([&](dxf::RecordId entity) {
    edit<KdDbMline>(database.idOf(entity), KdOpenMode::forRead, [&](KdDbMline& mline) {
      for (int i = 0; i < mline.numVertices(); ++i) points.push_back(mline.vertexAt(i));
    });
  });
  return points;
}

draw::DisplayList inColor(draw::DisplayList list, const QColor& color) {
  for (draw::Appearance& appearance : list.appearances) appearance.rgb = color.rgb() & 0xFFFFFFu;
  return list;
}

/// What a picture is painted of, the same at every size.
struct Content {
  draw::DisplayList former, edited;
  std::vector<KdGePoint3d> vertices;
  Beside beside;
};

void paintVertices(QPainter& painter, const std::vector<KdGePoint3d>& vertices) {
  constexpr double kHalfSide = 3.5;
  painter.setPen(Qt::NoPen);
  painter.setBrush(kVertexColor);
  for (const KdGePoint3d& p : vertices) {
    painter.drawRect(QRectF(kSize / 2.0 + p.x - kHalfSide, kSize / 2.0 - p.y - kHalfSide, 2 * kHalfSide, 2 * kHalfSide));
  }
}

void paintContent(QPainter& painter, const view::View& view, const Content& content) {
  paint::TextOutlines outlines;
  const auto paintLines = [&](const draw::DisplayList& list) {
    paint::Painter(painter, view, outlines, {}, QRectF(0, 0, kSize, kSize)).paint(list);
  };
  if (content.beside == Beside::formerBelow) {
    constexpr double kFaint = 0.65;
    painter.setOpacity(kFaint);
    paintLines(inColor(content.former, kFormerColor));
    painter.setOpacity(1);
  }
  const bool showsAddition = content.beside == Beside::addition;
  paintLines(showsAddition ? inColor(content.edited, QColor(kSecondRgb)) : content.edited);
  if (showsAddition) {
    // Taken out first, so that no rim of the color below stays around what was there.
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    paintLines(content.former);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    paintLines(content.former);
  }
  if (content.beside == Beside::vertices) paintVertices(painter, content.vertices);
}

enum class State { up, down, focus };
constexpr struct {
  State state;
  const char* name;
} kStates[] = {{State::up, "UP"}, {State::down, "DOWN"}, {State::focus, "FOCUS"}};

/// Held down, the picture moves by a pixel; with the focus it has a frame.
QImage picture(const view::View& view, const Content& content, State state, int scale) {
  QImage image(kSize * scale, kSize * scale, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(scale, scale);
  if (state == State::focus) {
    painter.setPen(QPen(kFrameColor, 1));
    painter.drawRoundedRect(QRectF(0.5, 0.5, kSize - 1, kSize - 1), 4, 4);
  }
  if (state == State::down) painter.translate(1, 1);
  paintContent(painter, view, content);
  return image;
}

bool fault(const char* name, const char* what) {
  std::fprintf(stderr, "tool_pictures: %s: %s\n", name, what);
  return false;
}

bool isSame(const draw::DisplayList& a, const draw::DisplayList& b, const view::View& view) {
  return picture(view, {{}, a, {}, Beside::nothing}, State::up, 1) ==
         picture(view, {{}, b, {}, Beside::nothing}, State::up, 1);
}

bool makePictures(const Scene& scene, const std::string& folder) {
  Sample sample;
  if (!sample.run(scene.drawing)) return fault(scene.name, "the samples could not be drawn");
  Content content{sample.seen(), {}, {}, scene.beside};
  const std::size_t formerVertices = sample.vertices().size();
  if (!sample.run(scene.edit)) return fault(scene.name, "the tool failed");
  content.edited = sample.seen();
  content.vertices = sample.vertices();
  // A new vertex on a straight run changes no line.
  const bool isEdited = content.vertices.size() != formerVertices || !isSame(content.former, content.edited, sample.view());
  if (!isEdited) return fault(scene.name, "the tool changed nothing");
  for (const auto& [state, stateName] : kStates) {
    for (const int scale : kScales) {
      const std::string file = folder + "/IDB_" + scene.name + '_' + stateName + (scale == 1 ? "" : "@2x") + ".png";
      if (!picture(sample.view(), content, state, scale).save(QString::fromStdString(file), "PNG")) {
        return fault(file.c_str(), "cannot be written");
      }
    }
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  for (const Scene& scene : kScenes) {
    if (!makePictures(scene, argv[1])) return 1;
  }
  return 0;
}
