#pragma once

#include <kdrx/ed.h>

/// Gives an integer system variable another value until this goes.
class CVariableSetting {
 public:
  CVariableSetting(const wchar_t* name, short value) : m_name(name) {
    m_isKnown = kdedGetVar(name, &m_former) == kKdInputNormal && m_former.restype == kKdResultShort;
    KdResbuf setting = m_former;
    setting.value.shortInteger = value;
    if (m_isKnown) m_isKnown = kdedSetVar(name, &setting) == kKdInputNormal;
  }
  ~CVariableSetting() {
    // What could be set can be set back.
    if (m_isKnown) (void)kdedSetVar(m_name, &m_former);
  }
  CVariableSetting(const CVariableSetting&) = delete;
  CVariableSetting& operator=(const CVariableSetting&) = delete;

 private:
  const wchar_t* m_name;
  KdResbuf m_former;
  bool m_isKnown = false;
};
