#include "dialog/file_dialog.h"

#include <QtCore/QFileInfo>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>

namespace torva::dialog {

std::optional<std::wstring> chooseFile(const command::FileRequest& request) {
  QFileDialog dialog(QApplication::activeWindow(), QString::fromStdWString(request.title));
  const bool isToBeWritten = request.use == command::FileUse::write;
  dialog.setAcceptMode(isToBeWritten ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(isToBeWritten ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  if (!request.extension.empty()) {
    const QString extension = QString::fromStdWString(request.extension);
    dialog.setNameFilters({extension.toUpper() + " files (*." + extension + ")", "All files (*)"});
    dialog.setDefaultSuffix(extension);
  }
  if (!request.start.empty()) dialog.setDirectory(QFileInfo(QString::fromStdWString(request.start)).path());
  if (request.offersFile()) dialog.selectFile(QString::fromStdWString(request.start));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().empty()) return std::nullopt;
  return dialog.selectedFiles().front().toStdWString();
}

}  // namespace torva::dialog
