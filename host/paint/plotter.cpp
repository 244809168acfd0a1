#include "command/plotter.h"

#include <algorithm>
#include <memory>
#include <variant>

#include "base/export.h"
#include "paint/page.h"
#include "paint/painter.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace torva::paint {
namespace {

constexpr int kDotsPerInch = 96;

bool hasText(const draw::DisplayList& list) {
  return std::any_of(list.primitives.begin(), list.primitives.end(),
                     [](const draw::Primitive& primitive) { return std::holds_alternative<draw::Text>(primitive.shape); });
}

/// False when the device cannot be painted on.
bool paintOn(QPaintDevice& device, const draw::DisplayList& list, const view::View& view) {
  QPainter painter;
  if (!painter.begin(&device)) return false;
  paintPage(painter, list, view);
  return painter.end();
}

bool paintSvg(QBuffer& out, const draw::DisplayList& list, const view::View& view) {
  QSvgGenerator svg;
  svg.setOutputDevice(&out);
  svg.setResolution(kDotsPerInch);
  svg.setSize({view.widthPx(), view.heightPx()});
  svg.setViewBox(QRect(0, 0, view.widthPx(), view.heightPx()));
  return paintOn(svg, list, view);
}

bool paintPng(QBuffer& out, const draw::DisplayList& list, const view::View& view) {
  QImage image(view.widthPx(), view.heightPx(), QImage::Format_RGB32);
  return !image.isNull() && paintOn(image, list, view) && image.save(&out, "PNG");
}

bool paintPdf(QBuffer& out, const draw::DisplayList& list, const view::View& view) {
  constexpr double kPointsPerInch = 72;
  QPdfWriter pdf(&out);
  pdf.setResolution(kDotsPerInch);
  const QSizeF points = QSizeF(view.widthPx(), view.heightPx()) * (kPointsPerInch / kDotsPerInch);
  pdf.setPageSize(QPageSize(points, QPageSize::Point, {}, QPageSize::ExactMatch));
  pdf.setPageMargins({});
  return paintOn(pdf, list, view);
}

class QtPlotter final : public command::Plotter {
 public:
  Result<std::string> plot(const draw::DisplayList& list, const view::View& view, command::PlotFormat format) override {
    if (format == command::PlotFormat::pdf || hasText(list)) ensureApplication();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!paintAs(format, buffer, list, view)) {
      return fail(ErrorCode::invalidValue, "a picture of this size cannot be painted");
    }
    buffer.close();
    return bytes.toStdString();
  }

 private:
  static bool paintAs(command::PlotFormat format, QBuffer& out, const draw::DisplayList& list, const view::View& view) {
    switch (format) {
      case command::PlotFormat::svg:
        return paintSvg(out, list, view);
      case command::PlotFormat::png:
        return paintPng(out, list, view);
      case command::PlotFormat::pdf:
        return paintPdf(out, list, view);
    }
    return false;
  }

  /// Fonts need an application object; a window program has its own, others get one that needs no display.
  void ensureApplication() {
    if (QCoreApplication::instance()) return;
    // Qt's remarks about the surroundings (no runtime folder, no locale) mean nothing to who plots.
    const auto handler = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    m_application = std::make_unique<QGuiApplication>(m_argumentCount, m_arguments);
    qInstallMessageHandler(handler);
  }

  // The application keeps references to these.
  char m_name[6] = "torva", m_option[10] = "-platform", m_platform[10] = "offscreen";
  char* m_arguments[4] = {m_name, m_option, m_platform, nullptr};
  int m_argumentCount = 3;
  std::unique_ptr<QGuiApplication> m_application;
};

}  // namespace

void paintPage(QPainter& painter, const draw::DisplayList& list, const view::View& view) {
  const QRectF paper(0, 0, view.widthPx(), view.heightPx());
  painter.fillRect(paper, Qt::white);
  painter.setClipRect(paper);
  TextOutlines outlines;
  Painter(painter, view, outlines, {}, paper).paint(list);
}
}  // namespace torva::paint

extern "C" TORVA_API torva::command::Plotter* torvaCreatePlotter() {
  return new torva::paint::QtPlotter;
}
