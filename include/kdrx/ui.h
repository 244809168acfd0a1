#pragma once

#include <kdrx/export.h>
#include <kdrx/text.h>

#include <QtCore/QPointer>
#include <QtGui/QIcon>
#include <QtWidgets/QDialog>

// Dialogs, offered by libtorva-gui.so: logic objects over Qt widgets. A module that includes this needs Qt, so only what is
// loaded when a dialog is to be shown should; kdrxShowsDialogs() in rx.h says whether the host can show one.
//
// A dialog is a pair. The logic, derived from CDialog, makes the widget, derived from QBaseDialog, whose layout gives every
// control that the logic binds a dynamic property "controlId" with its number. Both live as long as the logic object.

class CDialog;
class CWnd;

/// How a dialog or a message box ended.
enum KdDialogResult : int { IDOK = 1, IDCANCEL = 2, IDYES = 6, IDNO = 7 };

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

/// Sounds the beep that refuses an input.
KDRX_API void MessageBeep(unsigned type = MB_OK) noexcept;

/// Values on their way between the controls of a dialog and its members.
class KDRX_API CDataExchange {
 public:
  CDataExchange(CDialog* dialog, bool saves) : m_bSaveAndValidate(saves), m_pDlgWnd(dialog) {}

  /// Marks the exchange as failed: the dialog stays open.
  void Fail() { m_hasFailed = true; }
  bool HasFailed() const { return m_hasFailed; }

  const bool m_bSaveAndValidate;  ///< From the controls into the members; else the other way.
  CDialog* const m_pDlgWnd;

 private:
  bool m_hasFailed = false;
};

/// Binds `control` to the control `id` of the dialog, unless it is bound already. A control that the dialog lacks makes the
/// exchange fail.
KDRX_API void DDX_Control(CDataExchange* exchange, int id, CWnd& control);

/// A window or control: a few operations over the Qt widget that it is bound to. Unbound, and once the widget is gone, they
/// do nothing.
class KDRX_API CWnd {
 public:
  CWnd() = default;
  virtual ~CWnd();
  CWnd(const CWnd&) = delete;
  CWnd& operator=(const CWnd&) = delete;

  /// Null when unbound; owned by its dialog.
  QWidget* GetWidget() const { return m_widget; }
  /// The number of the control that this is bound to; 0 for none.
  int GetDlgCtrlID() const;

  /// Binds this object to the control `id` of a dialog. @return false when it is bound already or there is no such control
  bool SubclassDlgItem(unsigned id, CWnd* parent);

  /// Shows a message over this window until it is answered. @return the button; IDCANCEL for a box closed by its frame that
  /// has that button, IDNO for one that has No instead
  int MessageBoxW(const wchar_t* text, const wchar_t* caption = nullptr, unsigned type = MB_OK);

 protected:
  /// Called once this object is bound to its control.
  virtual void PreSubclassWindow() {}
  void Bind(QWidget* widget);

 private:
  QPointer<QWidget> m_widget;
};

/// A push button.
class KDRX_API CButton : public CWnd {
 public:
  ~CButton() override;
};

/// A push button that shows a picture for each of its states.
class KDRX_API CBitmapButton : public CButton {
 public:
  ~CBitmapButton() override;

  /// Takes pictures by name from the current resource library: released, held down, with the focus, disabled; null leaves a
  /// state to Qt. "NAME@2x", when there is one, is the same picture for screens of twice the resolution. Shown from the next
  /// binding on.
  /// @return false when a named picture is missing or none: what was found is shown all the same
  bool LoadBitmaps(const wchar_t* up, const wchar_t* down = nullptr, const wchar_t* focus = nullptr,
                   const wchar_t* disabled = nullptr);

 protected:
  void PreSubclassWindow() override;

 private:
  QIcon m_released, m_pressed;
};

/// The widget of a dialog. It hands on to the logic how it is closed.
class KDRX_API QBaseDialog : public QDialog {
 public:
  /// @param logic may be null: the dialog then ends by itself
  /// @param parent null: the window in front, so that the dialog stands over it
  explicit QBaseDialog(CDialog* logic, QWidget* parent = nullptr);
  ~QBaseDialog() override;

  /// Null without logic.
  CDialog* GetLogic() const { return m_logic; }
  /// The control of a number; null when there is none.
  QWidget* GetControl(int id) const;

  void accept() override;
  /// Escape and the window's own close control come here too.
  void reject() override;

 private:
  CDialog* const m_logic;
};

/// The logic of a dialog.
class KDRX_API CDialog : public CWnd {
 public:
  /// @param templateId the dialog's number, kept for who asks
  explicit CDialog(unsigned templateId);
  /// Deletes the widget.
  ~CDialog() override;

  unsigned GetTemplateId() const { return m_templateId; }

  /// Shows the dialog until it is ended.
  /// @return what it was ended with; -1 without a widget
  virtual int DoModal();
  /// Called before the dialog is shown; the base brings the values into the controls.
  virtual bool OnInitDialog();
  /// Takes the values from the controls and, unless that fails, ends the dialog with IDOK.
  virtual void OnOK();
  /// Ends the dialog with IDCANCEL.
  virtual void OnCancel();
  void EndDialog(int result);

  /// Runs the data exchange. @return false when it failed
  bool UpdateData(bool saves = true);

 protected:
  /// Exchanges values, control by control, with the DDX_ functions.
  virtual void DoDataExchange(CDataExchange* exchange);
  /// Makes `widget` the dialog's own. It belongs to this object, whatever its parent.
  void SetDialogWidget(QBaseDialog* widget);

 private:
  const unsigned m_templateId;
  QPointer<QBaseDialog> m_dialog;
  int m_result = IDCANCEL;
  bool m_hasEnded = false;
};
