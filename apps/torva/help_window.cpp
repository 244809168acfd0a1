#include "help_window.h"

#include <utility>

#include <QDir>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr std::pair<const char*, const char*> kPages[] = {
    {"-MLEDIT CC", "closed-cross.md"}, {"-MLEDIT OC", "open-cross.md"}, {"-MLEDIT MC", "merged-cross.md"},
    {"-MLEDIT CT", "closed-tee.md"},   {"-MLEDIT OT", "open-tee.md"},   {"-MLEDIT MT", "merged-tee.md"},
    {"-MLEDIT CJ", "corner-joint.md"}, {"-MLEDIT AV", "add-vertex.md"}, {"-MLEDIT DV", "delete-vertex.md"},
    {"-MLEDIT CS", "cut-single.md"},   {"-MLEDIT CA", "cut-all.md"},    {"-MLEDIT WA", "weld-all.md"},
    {"MLINE", "drawing.md"},           {"MLSTYLE", "styles.md"},
};

QString pageOf(const QString& tool) {
  for (const auto& [name, page] : kPages) {
    if (tool == name) return page;
  }
  return "README.md";
}

}  // namespace

HelpWindow::HelpWindow(const QString& guideFolder, QWidget* parent)
    : QWidget(parent, Qt::Window), m_guideFolder(guideFolder), m_browser(new QTextBrowser(this)) {
  setWindowTitle(tr("User guide"));
  resize(800, 900);
  m_browser->setOpenExternalLinks(false);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_browser);
}

void HelpWindow::showPageOf(const QString& tool) {
  m_browser->setSource(QUrl::fromLocalFile(QDir(m_guideFolder).filePath(pageOf(tool))), QTextDocument::MarkdownResource);
  show();
  raise();
}
