#include "canvas.h"

#include <chrono>
#include <cmath>

#include "answers.h"
#include "command/selection.h"
#include "command/variable_access.h"
#include "paint/overlay.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

using torva::command::Choice;
using torva::command::Question;
using torva::command::variableOr;
using torva::draw::DisplayList;
using torva::paint::OverlayLook;
using torva::view::Snap;

namespace {

using namespace std::chrono_literals;

constexpr QRgb kDark = 0xFF20252B, kLight = 0xFFFFFFFF;
/// What one slice of painting takes, so that the cursor stays alive.
constexpr auto kSlice = 8ms;
constexpr double kZoomStep = 1.25, kWheelStep = 120;
constexpr int kDragPx = 4;
/// More selected entities are not drawn one by one over the picture.
constexpr std::size_t kMostMarked = 2000;
constexpr int kAxisPx = 36, kSnapPx = 7;

bool isPointKind(Question::Kind kind) {
  return kind == Question::Kind::point || kind == Question::Kind::corner || kind == Question::Kind::distance;
}

}  // namespace

Canvas::Canvas(torva::command::Editor& editor, WindowSource& source, QWidget* parent)
    : QWidget(parent), m_editor(editor), m_source(source) {
  setObjectName("canvas");
  setMouseTracking(true);
  setFocusPolicy(Qt::ClickFocus);
  setCursor(Qt::BlankCursor);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(200, 150);
  m_painting.setSingleShot(true);
  m_aiming.setSingleShot(true);
  connect(&m_painting, &QTimer::timeout, this, &Canvas::advance);
  connect(&m_aiming, &QTimer::timeout, this, &Canvas::aim);
  connect(&m_source, &WindowSource::asked, this, &Canvas::takeQuestion);
  connect(&m_source, &WindowSource::answered, this, [this] {
    m_aim.preview = {};
    m_window.reset();
  });
}

Canvas::~Canvas() = default;

void Canvas::setGround(Ground ground) {
  m_ground = ground;
  showView();
}

void Canvas::setShowsLineweights(bool shows) {
  m_showsLineweights = shows;
  showView();
}

void Canvas::zoomExtents() {
  if (m_editor.showExtents()) showView();
}

void Canvas::takeQuestion() {
  followDrawing();
  showView();
  m_aiming.start(0);
}

/// Another drawing gets another picture.
void Canvas::followDrawing() {
  const std::uint32_t serial = m_editor.database().serial();
  if (m_picture && serial == m_drawingSerial) return;
  m_picture = std::make_unique<torva::paint::CanvasPicture>(m_editor.picker());
  m_drawingSerial = serial;
}

void Canvas::showView() {
  if (!m_picture || m_drawingSerial != m_editor.database().serial()) return;
  const double ratio = devicePixelRatioF();
  torva::view::View shown = m_editor.view();
  shown.resize(static_cast<int>(std::lround(width() * ratio)), static_cast<int>(std::lround(height() * ratio)));
  m_picture->setLook({m_ground == Ground::dark ? kDark : kLight, m_showsLineweights, ratio});
  m_picture->show(shown);
  m_painting.start(0);
  update();
}

void Canvas::advance() {
  // A command that works may be changing the drawing.
  if (!m_source.question() || m_drawingSerial != m_editor.database().serial()) return;
  if (!m_picture->advance(kSlice)) m_painting.start(0);
  update();
}

// What the cursor is on.

KdGePoint3d Canvas::displayAt(const QPointF& at) const {
  const torva::view::View& view = m_editor.view();
  const double unitsPerPixel = view.height() / view.heightPx();
  const KdGePoint3d middle = view.centerDcs();
  return {middle.x + (at.x() - view.widthPx() / 2.0) * unitsPerPixel,
          middle.y - (at.y() - view.heightPx() / 2.0) * unitsPerPixel, 0};
}

/// The point of the user plane that lies under a pixel.
KdGePoint3d Canvas::userAt(const QPointF& at) const {
  const KdGePoint3d display = displayAt(at);
  const torva::view::View& view = m_editor.view();
  const KdGePoint3d near = m_editor.toUser(view.toWorld(display));
  const KdGeVector3d ray = m_editor.toUser(view.toWorld({display.x, display.y, 1})) - near;
  const double elevation = m_editor.userPlane().elevation;
  constexpr double kEdgeOn = 1e-6;
  if (std::abs(ray.z) < kEdgeOn) return near;
  return near + ray * ((elevation - near.z) / ray.z);
}

QPointF Canvas::pixelOf(const KdGePoint3d& pointUcs) const {
  const torva::view::View& view = m_editor.view();
  const KdGePoint3d display = view.toDisplay(m_editor.toWorld(pointUcs));
  const double pixelsPerUnit = view.heightPx() / view.height();
  return {(display.x - view.centerDcs().x) * pixelsPerUnit + view.widthPx() / 2.0,
          view.heightPx() / 2.0 - (display.y - view.centerDcs().y) * pixelsPerUnit};
}

int Canvas::pickBoxPx() const {
  return variableOr(m_editor.variables(), L"PICKBOX", 3);
}

KdGePoint3d Canvas::worldAt(const QPointF& at) const {
  return m_editor.toWorld(userAt(at));
}

bool Canvas::asksForEntities() const {
  const Question* question = m_source.question();
  if (!question) return false;
  return question->kind == Question::Kind::command || question->kind == Question::Kind::entity ||
         question->kind == Question::Kind::selection;
}

bool Canvas::asksForPoint() const {
  return m_source.question() && isPointKind(m_source.question()->kind);
}

std::optional<Snap> Canvas::snapAt(const KdGePoint3d& cursorWcs) const {
  const Question& question = *m_source.question();
  if (question.kind == Question::Kind::corner) return {};
  const auto& variables = m_editor.variables();
  torva::view::SnapRequest request{cursorWcs, double(variableOr(variables, L"APERTURE", 10)),
                                   variableOr(variables, L"OSMODE", 0)};
  if (question.base) request.baseWcs = m_editor.toWorld(*question.base);
  return torva::view::findSnap(m_editor.picker(), m_editor.view(), request);
}

void Canvas::aim() {
  m_aim = {};
  const Question* question = m_source.question();
  if (!question || !m_cursor || m_panFrom) return update();
  m_aim.pointUcs = userAt(*m_cursor);
  if (asksForEntities() && !m_window) m_aim.entity = m_editor.entityAt(worldAt(*m_cursor));
  if (asksForPoint()) {
    m_aim.snap = snapAt(m_editor.toWorld(m_aim.pointUcs));
    if (m_aim.snap) {
      m_aim.pointUcs = m_editor.toUser(m_aim.snap->pointWcs);
    } else if (question->base && question->kind != Question::Kind::corner &&
               variableOr(m_editor.variables(), L"ORTHOMODE", 0) != 0) {
      m_aim.pointUcs = torva::command::orthoPoint(*question->base, m_aim.pointUcs);
    }
  }
  if (question->preview) m_aim.preview = question->preview({m_aim.pointUcs, m_aim.entity});
  emit cursorMoved(m_aim.pointUcs);
  update();
}

// The mouse.

void Canvas::resizeEvent(QResizeEvent*) {
  m_editor.setViewport(std::max(width(), 1), std::max(height(), 1));
  showView();
}

void Canvas::mousePressEvent(QMouseEvent* event) {
  m_cursor = event->pos();
  if (event->button() == Qt::MiddleButton) m_panFrom = event->pos();
  if (event->button() == Qt::RightButton && m_source.question()) m_source.answer(L"");
  if (event->button() == Qt::LeftButton) press(event->pos(), event->modifiers());
}

void Canvas::press(const QPoint& at, Qt::KeyboardModifiers modifiers) {
  const Question* question = m_source.question();
  if (!question) return;
  m_aiming.stop();
  aim();
  if (isPointKind(question->kind)) return answerPoint(m_aim.pointUcs);
  if (question->kind == Question::Kind::entity) return answerPoint(userAt(at));
  if (m_window) return finishWindow(at);
  if (asksForEntities()) choose(at, modifiers & Qt::ShiftModifier);
}

/// Takes the entity at a place into the selection or out of it; where there is none, a window begins.
void Canvas::choose(const QPoint& at, bool takesOut) {
  if (m_aim.entity == torva::dxf::kNoRecord) {
    m_window = Window{userAt(at), at, false, takesOut};
    return update();
  }
  if (!m_source.isAtCommandPrompt()) {
    const std::wstring point = answerText(userAt(at));
    return m_source.answer(takesOut ? L"R " + point + L" A" : point);
  }
  torva::command::pickFirst(m_editor, {m_aim.entity}, takesOut ? Choice::remove : Choice::add);
  emit selectionChanged();
  update();
}

/// From the left a window takes what lies in it as a whole, from the right what it touches.
void Canvas::finishWindow(const QPoint& corner) {
  const Window window = *m_window;
  m_window.reset();
  const bool isCrossing = corner.x() < pixelOf(window.fromUcs).x();
  if (!m_source.isAtCommandPrompt()) {
    const std::wstring answer =
        (isCrossing ? L"C " : L"W ") + answerText(window.fromUcs) + L" " + answerText(userAt(corner));
    return m_source.answer(window.takesOut ? L"R " + answer + L" A" : answer);
  }
  const auto rule = isCrossing ? torva::view::WindowRule::part : torva::view::WindowRule::whole;
  torva::command::pickFirstIn(m_editor, m_editor.toWorld(window.fromUcs), worldAt(corner), rule,
                              window.takesOut ? Choice::remove : Choice::add);
  emit selectionChanged();
  update();
}

void Canvas::answerPoint(const KdGePoint3d& pointUcs) {
  m_source.answer(answerText(pointUcs));
}

void Canvas::mouseMoveEvent(QMouseEvent* event) {
  m_cursor = event->pos();
  if (m_panFrom) {
    const KdGePoint3d from = displayAt(*m_panFrom), to = displayAt(event->pos());
    torva::view::View& view = m_editor.view();
    view.set(view.centerDcs() + (from - to), view.height());
    m_panFrom = event->pos();
    return showView();
  }
  if (m_window && (event->buttons() & Qt::LeftButton)) {
    m_window->isDragged |= (event->pos() - m_window->pressed).manhattanLength() > kDragPx;
  }
  m_aiming.start(0);
  update();
}

void Canvas::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) m_panFrom.reset();
  if (event->button() == Qt::LeftButton && m_window && m_window->isDragged) finishWindow(event->pos());
}

void Canvas::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) return zoomExtents();
  mousePressEvent(event);
}

void Canvas::wheelEvent(QWheelEvent* event) {
  const double steps = event->angleDelta().y() / kWheelStep;
  torva::view::View& view = m_editor.view();
  const KdGePoint3d fixed = displayAt(event->position());
  const double factor = std::pow(kZoomStep, -steps), height = view.height() * factor;
  if (!std::isfinite(height) || height <= 0) return;
  view.set(fixed + (view.centerDcs() - fixed) * factor, height);
  showView();
  m_aiming.start(0);
}

void Canvas::leaveEvent(QEvent*) {
  m_cursor.reset();
  m_aiming.start(0);
}

// The picture.

QColor Canvas::ink() const {
  return m_ground == Ground::dark ? Qt::white : Qt::black;
}

void Canvas::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (m_picture && !m_picture->image().isNull()) {
    painter.drawImage(rect(), m_picture->image());
  } else {
    painter.fillRect(rect(), QColor::fromRgb(m_ground == Ground::dark ? kDark : kLight));
  }
  // Nothing of the drawing may be read while a command works on it.
  if (m_source.question() && m_drawingSerial == m_editor.database().serial()) paintOverlays(painter);
}

void Canvas::paintOverlays(QPainter& painter) {
  paintUserAxes(painter);
  paintSelection(painter);
  paintOverlay(painter, m_aim.preview, m_editor.view(), OverlayLook::ghost);
  if (m_cursor) paintCursor(painter);
}

void Canvas::paintSelection(QPainter& painter) {
  const auto& drawer = m_editor.picker().drawer();
  DisplayList selected;
  std::size_t count = 0;
  for (const torva::dxf::RecordId entity : m_editor.pickedFirst()) {
    if (++count > kMostMarked) break;
    drawer.drawShapes(entity, selected);
  }
  paintOverlay(painter, selected, m_editor.view(), OverlayLook::selection);
  if (m_aim.entity == torva::dxf::kNoRecord) return;
  DisplayList hovered;
  drawer.drawShapes(m_aim.entity, hovered);
  paintOverlay(painter, hovered, m_editor.view(), OverlayLook::highlight);
}

void Canvas::paintCursor(QPainter& painter) {
  const Question& question = *m_source.question();
  painter.setRenderHint(QPainter::Antialiasing, false);
  const QPointF aimed = pixelOf(m_aim.pointUcs);
  if (question.base && question.kind != Question::Kind::corner) {
    painter.setPen(QPen(ink(), 0, Qt::DashLine));
    painter.drawLine(pixelOf(*question.base), aimed);
  }
  const bool isCorner = question.kind == Question::Kind::corner && question.base;
  if (m_window || isCorner) {
    const QPointF from = pixelOf(isCorner ? *question.base : m_window->fromUcs);
    const bool isCrossing = aimed.x() < from.x();
    QColor tint = isCrossing ? QColor(0x40, 0xA0, 0x40) : QColor(0x40, 0x70, 0xD0);
    painter.setPen(QPen(tint, 0, isCrossing ? Qt::DashLine : Qt::SolidLine));
    tint.setAlpha(40);
    painter.setBrush(tint);
    painter.drawRect(QRectF(from, QPointF(*m_cursor)).normalized());
    painter.setBrush(Qt::NoBrush);
  }
  painter.setPen(QPen(ink(), 0));
  const QPoint at = m_aim.snap ? aimed.toPoint() : *m_cursor;
  const int box = asksForEntities() ? pickBoxPx() : 0;
  painter.drawLine(0, at.y(), at.x() - box, at.y());
  painter.drawLine(at.x() + box, at.y(), width(), at.y());
  painter.drawLine(at.x(), 0, at.x(), at.y() - box);
  painter.drawLine(at.x(), at.y() + box, at.x(), height());
  if (box > 0) painter.drawRect(at.x() - box, at.y() - box, 2 * box, 2 * box);
  paintSnap(painter);
}

/// A marker for each kind: what is snapped to is seen before it is clicked.
void Canvas::paintSnap(QPainter& painter) {
  if (!m_aim.snap) return;
  const QPointF p = pixelOf(m_aim.pointUcs);
  const double r = kSnapPx;
  painter.setPen(QPen(QColor(0xF0, 0xA0, 0x20), 2));
  using Kind = torva::view::SnapKind;
  switch (m_aim.snap->kind) {
    case Kind::end:
      return painter.drawRect(QRectF(p.x() - r, p.y() - r, 2 * r, 2 * r));
    case Kind::middle:
      return painter.drawPolygon(
          QPolygonF(QVector<QPointF>{{p.x() - r, p.y() + r}, {p.x() + r, p.y() + r}, {p.x(), p.y() - r}}));
    case Kind::centre:
      return painter.drawEllipse(p, r, r);
    case Kind::intersection:
      painter.drawLine(QLineF(p.x() - r, p.y() - r, p.x() + r, p.y() + r));
      return painter.drawLine(QLineF(p.x() - r, p.y() + r, p.x() + r, p.y() - r));
    case Kind::perpendicular:
      painter.drawPolyline(
          QPolygonF(QVector<QPointF>{{p.x() - r, p.y() - r}, {p.x() - r, p.y() + r}, {p.x() + r, p.y() + r}}));
      return painter.drawPolyline(QPolygonF(QVector<QPointF>{{p.x() - r, p.y()}, {p.x(), p.y()}, {p.x(), p.y() + r}}));
    case Kind::nearest:
      painter.drawLine(QLineF(p.x() - r, p.y() - r, p.x() + r, p.y() - r));
      painter.drawLine(QLineF(p.x() - r, p.y() + r, p.x() + r, p.y() + r));
      painter.drawLine(QLineF(p.x() - r, p.y() - r, p.x() + r, p.y() + r));
      return painter.drawLine(QLineF(p.x() + r, p.y() - r, p.x() - r, p.y() + r));
  }
}

/// The axes of the user coordinate system, in the corner.
void Canvas::paintUserAxes(QPainter& painter) {
  const QPointF corner(20, height() - 20.0);
  const KdGePoint3d origin = userAt(corner);
  const double reach = kAxisPx * m_editor.view().unitsPerPixel(1.0);
  painter.setRenderHint(QPainter::Antialiasing);
  const auto axis = [&](const KdGeVector3d& along, const QColor& color, const QString& name) {
    const QPointF tip = corner + (pixelOf(origin + along * reach) - pixelOf(origin));
    painter.setPen(QPen(color, 2));
    painter.drawLine(corner, tip);
    painter.drawText(QRectF(tip.x() - 8, tip.y() - 8, 16, 16).translated((tip - corner) / 4), Qt::AlignCenter, name);
  };
  axis({1, 0, 0}, QColor(0xD0, 0x50, 0x50), "X");
  axis({0, 1, 0}, QColor(0x50, 0xB0, 0x50), "Y");
}
