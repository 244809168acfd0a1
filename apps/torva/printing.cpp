#include "printing.h"

#include <algorithm>

#include "command/editor.h"
#include "command/plot_content.h"
#include "dialog/message_service.h"
#include "paint/page.h"

#include <kdrx/ui.h>

#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>

void printView(QWidget& parent, torva::command::Editor& editor) {
  QPrinter printer(QPrinter::HighResolution);
  if (editor.view().widthPx() > editor.view().heightPx()) printer.setPageOrientation(QPageLayout::Landscape);
  QPrintDialog dialog(&printer, &parent);
  if (dialog.exec() != QDialog::Accepted) return;
  QPainter painter;
  if (!painter.begin(&printer)) {
    torva::dialog::showMessage(&parent, L"The printer cannot be printed on.", L"TORVA multilines", MB_OK | MB_ICONERROR);
    return;
  }
  const QRectF page = printer.pageLayout().paintRectPixels(printer.resolution());
  const auto& view = editor.view();
  const double scale = std::min(page.width() / view.widthPx(), page.height() / view.heightPx());
  painter.translate((page.width() - scale * view.widthPx()) / 2, (page.height() - scale * view.heightPx()) / 2);
  painter.scale(scale, scale);
  torva::paint::paintPage(painter, torva::command::plotContent(editor), view);
}
