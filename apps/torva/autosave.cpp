#include "autosave.h"

#include "runtime/folders.h"

namespace {

constexpr int kKeepEveryMs = 3 * 60 * 1000, kLookEveryMs = 5 * 1000;

}  // namespace

Autosave::Autosave(torva::command::Editor& editor, WindowSource& source)
    : m_editor(editor), m_source(source), m_recovery(torva::runtime::defaultRecoveryFolder()) {
  connect(&m_keeping, &QTimer::timeout, this, &Autosave::keepCopy);
  connect(&m_looking, &QTimer::timeout, this, &Autosave::lookAtFile);
  connect(&m_source, &WindowSource::asked, this, [this] {
    if (!m_editor.hasUnsavedChanges()) m_recovery.drop();
  });
  m_keeping.start(kKeepEveryMs);
  m_looking.start(kLookEveryMs);
}

// While a command works nothing may look at the drawing; the next time will do.

void Autosave::keepCopy() {
  if (!m_source.question()) return;
  if (const auto kept = m_recovery.keep(m_editor.database()); !kept)
    m_editor.report(kept.error(), torva::command::Fault::none);
}

void Autosave::lookAtFile() {
  if (!m_source.question()) return;
  const auto& file = m_editor.database().file();
  if (file.isUnchangedOnDisk()) return m_toldOf.clear();
  const QString path = QString::fromStdString(file.path());
  if (m_toldOf == path) return;
  m_toldOf = path;
  emit fileChanged(path);
}
