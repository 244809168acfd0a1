#pragma once

#include <map>
#include <memory>

#include <kdrx/export.h>
#include <kdrx/ui/wnd.h>

#include <QtWidgets/QDialog>

class CDialog;

/// Values on their way between the controls of a dialog and its members.
class KDRX_API CDataExchange {
 public:
  CDataExchange(CDialog* dialog, bool saves) : m_bSaveAndValidate(saves), m_pDlgWnd(dialog) {}

  /// Marks the exchange as failed: the dialog stays open. On the way into the members the focus goes to the edit whose text
  /// was exchanged last.
  void Fail();
  bool HasFailed() const { return m_hasFailed; }
  /// Names the edit that the next failure is about.
  void PrepareEditCtrl(int id) { m_lastEditId = id; }

  const bool m_bSaveAndValidate;  ///< From the controls into the members; else the other way.
  CDialog* const m_pDlgWnd;

 private:
  bool m_hasFailed = false;
  int m_lastEditId = 0;
};

/// Binds `control` to the control `id` of the dialog, unless it is bound already. A control that the dialog lacks makes the
/// exchange fail.
KDRX_API void DDX_Control(CDataExchange* exchange, int id, CWnd& control);
/// Exchanges the text of the control `id`, as CWnd::GetWindowTextW() has it.
KDRX_API void DDX_Text(CDataExchange* exchange, int id, CStdStr<wchar_t>& text);

/// A message on its way to a control. Those of keys have codes from kFirstKeyMessage to kLastKeyMessage; `wParam` is then
/// the key: its character in capitals, 13 for Enter, 27 for Escape, 0 for keys without a character.
struct tagMSG {
  unsigned message = 0;
  unsigned long wParam = 0;
};
inline constexpr unsigned kFirstKeyMessage = 256, kLastKeyMessage = 511;

/// The widget of a dialog. It hands on to the logic what happens to it.
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
  /// Gives the controls their places, which else happens when the dialog is shown, and from now on tells the logic of them.
  void Prepare();

  void accept() override;
  /// Escape and the window's own close control come here too.
  void reject() override;

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  friend class CWnd;
  void Notify(QWidget* control, unsigned code);
  void ProposeRect();

  CDialog* const m_logic;
  QRect m_windowRect;  // the last one that was not just proposed
  bool m_isPrepared = false;
  bool m_isProposing = false;
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
  /// Called before the dialog is shown, with the controls in their places; the base brings the values into them. The result
  /// is for derived classes: the dialog is shown either way.
  virtual bool OnInitDialog();
  /// Takes the values from the controls and, unless that fails, ends the dialog with IDOK.
  virtual void OnOK();
  /// Ends the dialog with IDCANCEL.
  virtual void OnCancel();
  void EndDialog(int result);
  /// Clicks the default button: the one that Enter presses where the focus is now. One that is disabled does nothing.
  void PressDefaultButton();

  /// Runs the data exchange. @return false when it failed
  bool UpdateData(bool saves = true);

  /// The control `id`: the object that is bound to it, else one that this dialog owns. Never null; without such a control it
  /// is unbound.
  CWnd* GetDlgItem(int id);
  void CheckDlgButton(int id, bool isChecked);
  bool IsDlgButtonChecked(int id);
  /// Shows the icon `id` of a resource library, its picture of that name, in the dialog's frame.
  /// @return false when there is none
  bool SetIcon(const wchar_t* library, unsigned id);

  /// Called for every key before the control that has the focus. @return true when that ends the matter
  virtual bool PreTranslateMessage(tagMSG* message);
  /// Called for what the numbered controls tell of, after the slots of the layout. @param code a KdControlNotification
  virtual bool OnCommand(int id, unsigned code);
  /// Called with a rectangle on the screen that the user would like the dialog to have, and may change it. GetWindowRect()
  /// is still the former one.
  virtual void OnSizing(unsigned edge, tagRECT* proposed);
  /// Called when the dialog has got a new size. @param type 0
  virtual void OnSize(unsigned type, int clientWidth, int clientHeight);
  /// The base tells the objects that are bound to controls.
  void OnDestroy() override;

 protected:
  /// Exchanges values, control by control, with the DDX_ functions.
  virtual void DoDataExchange(CDataExchange* exchange);
  /// Makes `widget` the dialog's own. It belongs to this object, whatever its parent.
  void SetDialogWidget(QBaseDialog* widget);

 private:
  const unsigned m_templateId;
  QPointer<QBaseDialog> m_dialog;
  std::map<int, std::unique_ptr<CWnd>> m_items;
  int m_result = IDCANCEL;
  bool m_hasEnded = false;
};
