#pragma once

#include <kdrx/db_object.h>

/// An object of the drawing that is open until this goes, or none when it could not be opened.
template <class Object>
class COpenedObject {
 public:
  COpenedObject(KdDbObjectId id, KdOpenMode mode) {
    if (kddbOpenObject(m_object, id, mode) != KdStatus::ok) m_object = nullptr;
  }
  ~COpenedObject() { Close(); }
  COpenedObject(const COpenedObject&) = delete;
  COpenedObject& operator=(const COpenedObject&) = delete;

  void Close() {
    if (m_object) m_object->close();
    m_object = nullptr;
  }
  Object* Get() const { return m_object; }
  Object* operator->() const { return m_object; }
  explicit operator bool() const { return m_object != nullptr; }

 private:
  Object* m_object = nullptr;
};
