#pragma once

#include <string>

#include "base/current.h"
#include "base/export.h"

class QWidget;

namespace torva::dialog {

/// Answers message boxes and hears beeps in the user's place for as long as it lives; the one made last does.
class TORVA_API MessageService {
 public:
  MessageService();
  virtual ~MessageService();

  /// @param parent the window that the box stands over; may be null
  /// @param type buttons and icon as in <kdrx/ui.h>
  /// @return the answer, a KdDialogResult
  virtual int show(QWidget* parent, const std::wstring& text, const std::wstring& title, unsigned type) = 0;
  virtual void beep() = 0;

 private:
  Current<MessageService> m_current;
};

/// Shows a message box to the service that answers, or to the user when there is none.
TORVA_API int showMessage(QWidget* parent, const std::wstring& text, const std::wstring& title, unsigned type);
TORVA_API void beep();

}  // namespace torva::dialog
