#pragma once

#include <kdrx/ui.h>

/// A field for a line of text that takes only so many characters.
class CEditLimited : public CEdit {
 public:
  /// Sets the limit; 8 before. A limit below 1 is passed over.
  void SetMaxWords(int characters);

  /// The control handles what it tells of itself: its dialog hears of it by the layout's slots alone.
  bool OnChildNotify(unsigned code) override;

 protected:
  void PreSubclassWindow() override;

 private:
  int m_maximum = 8;
  bool m_swallowsNotifications = true;
};
