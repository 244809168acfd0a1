#pragma once

#include <utility>

namespace torva {

/// The object of a kind that the programming interface's free functions work on. Those functions take no context argument,
/// so each layer keeps one such object while a host runs; nothing else in the host is global.
template <class T>
class Current {
 public:
  /// Makes `object` the current one for the lifetime of this scope, then restores the one before.
  explicit Current(T& object) : m_previous(std::exchange(s_object, &object)) {}
  ~Current() { s_object = m_previous; }
  Current(const Current&) = delete;
  Current& operator=(const Current&) = delete;

  /// Null when there is none.
  static T* get() { return s_object; }

 private:
  inline static T* s_object = nullptr;
  T* m_previous;
};

}  // namespace torva
