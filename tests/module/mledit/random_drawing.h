#pragma once

#include <algorithm>
#include <limits>
#include <numbers>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "base/current.h"
#include "db/same_vertices.h"
#include "draw/drawer.h"
#include "entry/module_entry.h"
#include "module/mledit/drawing.h"
#include "module/mledit/ink.h"
#include "module/mledit/random_mline.h"
#include "runtime/folders.h"
#include "runtime/runtime.h"

#include <kdrx/db_dictionary.h>
#include <kdrx/db_mline_style.h>
#include <kdrx/db_tables.h>

/// A drawing of random multilines in which `-MLEDIT` is the module's own.
class RandomDrawing : public Drawing {
 public:
  explicit RandomDrawing(const Frame& frame) : m_frame(frame) {
    kdrxEntryPoint(1, nullptr);
    const auto& [origin, x, y, z, elevation] = frame.plane;
    const auto set = [&](const wchar_t* name, const auto& v) {
      editor().variables().setInternally(name, KdGePoint3d{v.x, v.y, v.z});
    };
    set(L"UCSORG", origin);
    set(L"UCSXDIR", x);
    set(L"UCSYDIR", y);
    editor().variables().setInternally(L"ELEVATION", elevation);
    // A pick tolerance of a sixth of the least distance between elements.
    editor().view().set({0, 0, 0}, 0.03 * frame.size);
  }

  const Frame& frame() const { return m_frame; }

  /// Adds a multiline with a style of its own, made by the host.
  torva::dxf::Handle add(const RandomMline& sketch) {
    auto* mline = new KdDbMline;
    mline->setStyle(addStyle(sketch));
    mline->setScale(sketch.scale);
    mline->setJustification(sketch.justification);
    mline->setNormal(m_frame.plane.z);
    for (const KdGePoint3d& p : sketch.path) mline->appendSeg(m_frame.plane.toWorld(p));
    mline->setClosedMline(sketch.isClosed);
    KdDbObjectId id;
    open<KdDbBlockTableRecord>(editor().database().modelSpaceId(), [&](auto& space) { space.appendEntity(mline, id); });
    mline->close();
    return mline->handle();
  }

  static std::string pick(torva::dxf::Handle handle, const KdGePoint3d& point) {
    return Drawing::pick(handle, point.x, point.y);
  }

  /// Runs a tool with answers to its prompts and ends it.
  void mledit(const std::string& tool, const std::string& answers) {
    run("-MLEDIT " + tool + "\n" + answers + "^C\n");
    RC_ASSERT(faults() == "");
    RC_ASSERT(openCount() == 0u);
  }

  /// What is drawn of a multiline, measured on the lines of its sketch, of which none may stray.
  Ink inkOf(torva::dxf::Handle handle, const RandomMline& sketch) {
    const torva::db::Database& database = editor().database();
    torva::draw::DisplayList list;
    torva::draw::Drawer(database).draw(database.file().find(handle), list);
    Ink ink{m_frame.tolerance(), {}};
    for (const torva::draw::Primitive& primitive : list.primitives) {
      const auto& polyline = std::get<torva::draw::Polyline>(primitive.shape);
      const auto& points = polyline.points;
      const int element = static_cast<int>(list.appearances[primitive.appearance].rgb) - 1;
      for (std::size_t i = 0; i + (polyline.isClosed ? 0 : 1) < points.size(); ++i) {
        addPiece(ink, sketch, element, m_frame.plane.toUser(points[i]),
                 m_frame.plane.toUser(points[(i + 1) % points.size()]));
      }
    }
    return ink;
  }

  /// What a multiline holds now.
  torva::db::MlineData mline(torva::dxf::Handle handle) { return mlineOf(editor().database(), handle); }

  /// Whether a multiline is the same in another drawing that is read from what this one is saved as.
  bool readsBackEqual(torva::dxf::Handle handle) {
    torva::db::Database& database = editor().database();
    database.flush();
    std::vector<torva::dxf::Finding> findings;
    const auto refuse = torva::dxf::DamagePolicy::refuse;
    const auto again = torva::db::Database::fromBytes(database.file().toBytes(), "reopened", refuse, findings);
    RC_ASSERT(again.has_value());
    const torva::db::MlineData here = mline(handle), there = mlineOf(**again, handle);
    const auto content = [](const torva::db::MlineData& of) {
      return std::tie(of.vertices, of.isClosed, of.suppressesStartCaps, of.suppressesEndCaps);
    };
    return content(here) == content(there);
  }

  /// The bytes of all records, in order.
  std::vector<std::string> records() {
    torva::db::Database& database = editor().database();
    database.flush();
    std::vector<std::string> all;
    for (torva::dxf::RecordId id = 0; id < database.file().recordCount(); ++id) all.emplace_back(database.file().bytes(id));
    return all;
  }

  /// Handles of the records whose bytes are not those of then; 0 for the header.
  std::set<torva::dxf::Handle> changedSince(const std::vector<std::string>& then) {
    const std::vector<std::string> now = records();
    RC_ASSERT(now.size() == then.size());
    std::set<torva::dxf::Handle> changed;
    for (std::size_t i = 0; i < now.size(); ++i) {
      if (now[i] != then[i]) changed.insert(editor().database().file().handle(static_cast<torva::dxf::RecordId>(i)));
    }
    return changed;
  }

 private:
  static torva::db::MlineData mlineOf(const torva::db::Database& database, torva::dxf::Handle handle) {
    return database.mline(database.file().find(handle));
  }

  template <class Object, class Use>
  static void open(KdDbObjectId id, const Use& use) {
    Object* object = nullptr;
    RC_ASSERT(kddbOpenObject(object, id, KdOpenMode::forWrite) == KdStatus::ok);
    use(*object);
    object->close();
  }

  // Each element has a color of its own, by which it is known again when it is drawn.
  KdDbObjectId addStyle(const RandomMline& sketch) {
    auto* style = new KdDbMlineStyle;
    style->initMlineStyle();
    style->setStartAngle(sketch.startAngleDeg * std::numbers::pi / 180);
    style->setEndAngle(sketch.endAngleDeg * std::numbers::pi / 180);
    for (int e = 0; e < sketch.elements(); ++e) {
      int index = 0;
      style->addElement(index, sketch.offsets[static_cast<std::size_t>(e)],
                        KdCmColor::trueColor(static_cast<std::uint32_t>(e) + 1), {});
    }
    const torva::db::Database& database = editor().database();
    constexpr std::wstring_view kStyles[] = {L"ACAD_MLINESTYLE"};
    const std::wstring name = L"RANDOM" + std::to_wstring(++m_styles);
    style->setName(name);
    KdDbObjectId id;
    open<KdDbDictionary>(database.idOf(database.findInDictionary(kStyles)),
                         [&](auto& styles) { styles.setAt(name, style, id); });
    style->close();
    return id;
  }

  // A drawn piece belongs to the segment that it is nearest to.
  void addPiece(Ink& ink, const RandomMline& sketch, int element, const KdGePoint3d& from, const KdGePoint3d& to) const {
    int nearest = 0;
    double least = std::numeric_limits<double>::infinity();
    for (int s = 0; s < sketch.segments(); ++s) {
      const double distance = distanceFrom(sketch, element, s, from) + distanceFrom(sketch, element, s, to);
      if (distance < least) nearest = s, least = distance;
    }
    for (const KdGePoint3d& p : {from, to}) {
      const PlaneLine line = sketch.line(element, nearest);
      RC_ASSERT(std::abs(leftOf(line.direction).dotProduct(p - line.point)) <= ink.tolerance);
      RC_ASSERT(std::abs(p.z - line.point.z) <= ink.tolerance);
    }
    const double a = sketch.along(element, nearest, from), b = sketch.along(element, nearest, to);
    ink.add(element, nearest, std::min(a, b), std::max(a, b));
  }

  static double distanceFrom(const RandomMline& sketch, int element, int segment, const KdGePoint3d& p) {
    const double along = std::clamp(sketch.along(element, segment, p), 0.0, sketch.length(element, segment));
    return (p - sketch.pointOf({element, segment, along})).length();
  }

  const Frame m_frame;
  torva::runtime::Runtime m_runtime{commands(), torva::runtime::Folders::of(TORVA_BINARY_DIR "/bin")};
  torva::Current<torva::runtime::Runtime> m_current{m_runtime};
  int m_styles = 0;
};

/// A multiline in a drawing, and what is to be drawn of it.
struct Wall {
  Wall(RandomDrawing& drawing, const RandomMline& made)
      : sketch(made), handle(drawing.add(made)), ink(wholeInk(made, drawing.frame().tolerance())) {}

  std::string pick(const Spot& spot) const { return RandomDrawing::pick(handle, sketch.pointOf(spot)); }

  RandomMline sketch;
  torva::dxf::Handle handle;
  Ink ink;
};

/// Two multilines with segments that cross, each at a share of its length; in the middle unless told otherwise. The first
/// one's closing segment does not count.
struct CrossingPair {
  explicit CrossingPair(RandomDrawing& drawing)
      : CrossingPair{drawing, *mlines(drawing.frame()), *mlines(drawing.frame())} {}
  CrossingPair(RandomDrawing& drawing, const RandomMline& a, const RandomMline& b, double shareA = 0.5, double shareB = 0.5)
      : firstSegment(*between(0, a.vertices() - 2)),
        secondSegment(*between(0, b.segments() - 1)),
        first(drawing, a),
        second(drawing, movedAcross(b, secondSegment, shareB, a, firstSegment, shareA, *angles())),
        onFirst(*spots(a, drawing.frame(), rc::gen::just(firstSegment))),
        onSecond(*spots(second.sketch, drawing.frame(), rc::gen::just(secondSegment))) {}

  static rc::Gen<double> angles() {
    return rc::gen::map(rc::gen::oneOf(rc::gen::just(90), between(25, 155), between(205, 335)),
                        [](int degrees) { return degrees * std::numbers::pi / 180; });
  }

  std::string picks() const { return first.pick(onFirst) + second.pick(onSecond); }

  /// Where an element of the first crosses one of the second.
  KdGePoint3d crossingOf(int onFirstOne, int onSecondOne) const {
    return crossing(first.sketch.line(onFirstOne, firstSegment), second.sketch.line(onSecondOne, secondSegment));
  }

  /// Opens an element of one between two elements of the other.
  void openFirst(int element, int from, int to) {
    open(first, firstSegment, element, crossingOf(element, from), crossingOf(element, to));
  }
  void openSecond(int element, int from, int to) {
    open(second, secondSegment, element, crossingOf(from, element), crossingOf(to, element));
  }

  const int firstSegment, secondSegment;
  Wall first, second;
  const Spot onFirst, onSecond;

 private:
  static void open(Wall& wall, int segment, int element, const KdGePoint3d& from, const KdGePoint3d& to) {
    const auto spotAt = [&](const KdGePoint3d& p) { return Spot{element, segment, wall.sketch.along(element, segment, p)}; };
    wall.ink.remove(wall.sketch, spotAt(from), spotAt(to));
  }
};
