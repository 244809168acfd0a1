#pragma once

#include <kdrx/export.h>
#include <kdrx/text.h>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

/// A rectangle; right and bottom are the first pixels outside.
struct tagRECT {
  int left = 0, top = 0, right = 0, bottom = 0;

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  bool operator==(const tagRECT&) const = default;
};

struct tagSIZE {
  int cx = 0, cy = 0;
  bool operator==(const tagSIZE&) const = default;
};

/// Buttons and icon of a message box: one of the buttons, plus an icon or none.
enum KdMessageBoxType : unsigned {
  MB_OK = 0x0,
  MB_OKCANCEL = 0x1,
  MB_YESNOCANCEL = 0x3,
  MB_YESNO = 0x4,
  MB_ICONERROR = 0x10,
  MB_ICONQUESTION = 0x20,
  MB_ICONWARNING = 0x30,
  MB_ICONINFORMATION = 0x40,
};

/// How a dialog or a message box ended.
enum KdDialogResult : int { IDOK = 1, IDCANCEL = 2, IDYES = 6, IDNO = 7 };

/// What a control tells of: a button was clicked, the text of an edit changed.
enum KdControlNotification : unsigned { BN_CLICKED = 0, EN_CHANGE = 0x300 };

/// Sounds the beep that refuses an input.
KDRX_API void MessageBeep(unsigned type = MB_OK) noexcept;

/// A window or control: a few operations over the Qt widget that it is bound to. Unbound, and once the widget is gone, they
/// do nothing and give empty values.
class KDRX_API CWnd {
 public:
  CWnd() = default;
  virtual ~CWnd();
  CWnd(const CWnd&) = delete;
  CWnd& operator=(const CWnd&) = delete;

  /// The object that was bound to a widget first; null when there is none.
  static CWnd* FromWidget(const QWidget* widget);
  /// Null when unbound; owned by its dialog.
  QWidget* GetWidget() const { return m_widget; }
  /// The number of the control that this is bound to; 0 for none.
  int GetDlgCtrlID() const;

  /// Binds this object to the control `id` of a dialog. @return false when it is bound already or there is no such control
  bool SubclassDlgItem(unsigned id, CWnd* parent);

  /// The text of a label, edit, button or group, what a box shows as chosen, the title of a dialog. A box without an entry
  /// of that text keeps what is chosen.
  CStdStr<wchar_t> GetWindowTextW() const;
  void SetWindowTextW(const wchar_t* text);

  void EnableWindow(bool isEnabled = true);
  bool IsWindowEnabled() const;
  bool IsWindowVisible() const;
  void SetFocus();
  /// Has the window painted anew.
  void Invalidate();

  /// Where the window is on the screen, without the frame that the desktop puts around a dialog.
  tagRECT GetWindowRect() const;
  /// The inner part in coordinates of its own, scroll bars and frame left out.
  tagRECT GetClientRect() const;
  /// From coordinates of the screen to those of this window.
  tagRECT ScreenToClient(const tagRECT& rectangle) const;
  /// Moves a control within its parent, a dialog on the screen. A dialog that no screen would show is not moved.
  void MoveWindow(const tagRECT& rectangle, bool isRepainted = true);

  /// Shows a message over this window until it is answered. @return the button; IDCANCEL for a box closed by its frame that
  /// has that button, IDNO for one that has No instead
  int MessageBoxW(const wchar_t* text, const wchar_t* caption = nullptr, unsigned type = MB_OK);

  /// Hears first what the control tells of. @param code a KdControlNotification
  /// @return true when that ends the matter: the dialog does not hear it
  virtual bool OnChildNotify(unsigned code);
  /// Called when the dialog that this belongs to was ended.
  virtual void OnDestroy();

 protected:
  /// Called once this object is bound to its control.
  virtual void PreSubclassWindow() {}
  void Bind(QWidget* widget);

 private:
  QPointer<QWidget> m_widget;
};
