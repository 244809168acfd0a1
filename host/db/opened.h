#pragma once

#include "db/database.h"

namespace torva::db {

/// Holds an object of class T open for a scope. False when it could not be opened, or is of another class.
template <class T>
class Opened {
 public:
  Opened(Database& database, KdDbObjectId id, KdOpenMode mode) {
    KdDbObject* object = nullptr;
    if (database.openObject(object, id, mode, false) != KdStatus::ok) return;
    if (object->isKindOf(T::desc())) {
      m_object = static_cast<T*>(object);
    } else {
      object->close();
    }
  }
  ~Opened() {
    if (m_object) m_object->close();
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;

  explicit operator bool() const { return m_object != nullptr; }
  T& operator*() const { return *m_object; }
  T* operator->() const { return m_object; }

 private:
  T* m_object = nullptr;
};

}  // namespace torva::db
