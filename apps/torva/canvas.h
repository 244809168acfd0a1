#pragma once

#include <memory>
#include <optional>

#include "command/editor.h"
#include "draw/display_list.h"
#include "paint/canvas_picture.h"
#include "view/snap.h"
#include "window_source.h"

#include <QPoint>
#include <QTimer>
#include <QWidget>

/// Dark or light ground.
enum class Ground { dark, light };

/// Shows the drawing and takes the mouse: points, picks and windows become answers, the middle button and the wheel move the
/// view. Positions are in pixels of the desktop, which are those of the editor's view.
class Canvas final : public QWidget {
  Q_OBJECT
 public:
  Canvas(torva::command::Editor& editor, WindowSource& source, QWidget* parent = nullptr);
  ~Canvas() override;

  void setGround(Ground ground);
  void setShowsLineweights(bool shows);
  void zoomExtents();
  /// What is shown of the edit that a click would make.
  const torva::draw::DisplayList& preview() const { return m_aim.preview; }
  /// Whether all of the view is painted.
  bool isComplete() const { return m_picture && m_picture->isComplete(); }

 signals:
  /// The cursor moved; user coordinates.
  void cursorMoved(const KdGePoint3d& pointUcs);
  /// Entities were chosen or left out at the command prompt.
  void selectionChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  /// What the cursor stands for at the question at hand.
  struct Aim {
    KdGePoint3d pointUcs;
    std::optional<torva::view::Snap> snap;
    torva::dxf::RecordId entity = torva::dxf::kNoRecord;
    torva::draw::DisplayList preview;
  };

  void takeQuestion();
  void followDrawing();
  void showView();
  void advance();
  void aim();
  std::optional<torva::view::Snap> snapAt(const KdGePoint3d& cursorWcs) const;

  void press(const QPoint& at, Qt::KeyboardModifiers modifiers);
  void choose(const QPoint& at, bool takesOut);
  void finishWindow(const QPoint& corner);
  void answerPoint(const KdGePoint3d& pointUcs);

  KdGePoint3d displayAt(const QPointF& at) const;
  KdGePoint3d userAt(const QPointF& at) const;
  KdGePoint3d worldAt(const QPointF& at) const;
  QPointF pixelOf(const KdGePoint3d& pointUcs) const;
  int pickBoxPx() const;
  bool asksForEntities() const;
  bool asksForPoint() const;

  void paintOverlays(QPainter& painter);
  void paintSelection(QPainter& painter);
  void paintCursor(QPainter& painter);
  void paintSnap(QPainter& painter);
  void paintUserAxes(QPainter& painter);
  QColor ink() const;

  torva::command::Editor& m_editor;
  WindowSource& m_source;
  Ground m_ground = Ground::dark;
  bool m_showsLineweights = false;

  std::unique_ptr<torva::paint::CanvasPicture> m_picture;
  std::uint32_t m_drawingSerial = 0;  // of the drawing that m_picture shows
  QTimer m_painting, m_aiming;

  std::optional<QPoint> m_cursor;  // none while it is elsewhere
  Aim m_aim;
  std::optional<QPoint> m_panFrom;
  struct Window {
    KdGePoint3d fromUcs;
    QPoint pressed;  // where the drag began
    bool isDragged = false;
    bool takesOut = false;
  };
  std::optional<Window> m_window;
};
