#pragma once

#include <kdrx/export.h>
#include <kdrx/ui/wnd.h>

#include <QtGui/QIcon>

// The simple controls. Rows are counted from 0; -1 is none.

/// A push button or check box.
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

/// Styles of CStatic: it shows a picture, in the middle of its area.
enum KdStaticStyle : unsigned { SS_BITMAP = 0x00E, SS_CENTERIMAGE = 0x200 };

/// A label, or a text area that shows a text or a picture.
class KDRX_API CStatic : public CWnd {
 public:
  ~CStatic() override;

  /// Takes styles away and adds others.
  void ModifyStyle(unsigned removed, unsigned added) { m_style = (m_style & ~removed) | added; }
  /// Shows a picture in place of what was there; none without the style SS_BITMAP, and nothing for a null picture.
  void SetBitmap(const QImage& picture);

 private:
  unsigned m_style = 0;
};

/// A field for a line of text.
class KDRX_API CEdit : public CWnd {
 public:
  ~CEdit() override;

  /// Lets the user type no more than `characters`.
  void SetLimitText(int characters);
  /// Marks all of the text.
  void SelectAll();
};

/// A list of texts, of which one at most is selected. Searches ignore case, begin behind the row `after` and go on from the
/// first row. The layout's slots hear of what the user selects, not of what is done here.
class KDRX_API CListBox : public CWnd {
 public:
  ~CListBox() override;

  int GetCount() const;
  /// @return the new last row; -1 when unbound
  int AddString(const wchar_t* text);
  /// @return how many rows are left; -1 when there is no such row
  int DeleteString(int row);
  void ResetContent();
  /// Empty when there is no such row.
  CStdStr<wchar_t> GetText(int row) const;

  int GetCurSel() const;
  /// Selects a row; any other number selects none. @return false when there is no such row
  bool SetCurSel(int row);
  /// The first row that begins with `text`.
  int FindString(int after, const wchar_t* text) const;
  /// The first row that is `text`.
  int FindStringExact(int after, const wchar_t* text) const;
  /// Selects the row that FindString() finds, if there is one.
  int SelectString(int after, const wchar_t* text);

 protected:
  void PreSubclassWindow() override;
};

/// A box that shows one of several texts and drops a list of them. Searches are those of CListBox. The wheel
/// does not change the choice.
class KDRX_API CComboBox : public CWnd {
 public:
  ~CComboBox() override;

  int GetCount() const;
  int AddString(const wchar_t* text);
  void ResetContent();
  CStdStr<wchar_t> GetLBText(int row) const;

  int GetCurSel() const;
  bool SetCurSel(int row);
  int FindString(int after, const wchar_t* text) const;
  int FindStringExact(int after, const wchar_t* text) const;
  int SelectString(int after, const wchar_t* text);

 protected:
  void PreSubclassWindow() override;
};
