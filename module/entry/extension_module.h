#pragma once

#include <kdrx/text.h>

/// What the module remembers of its attachment to the host's process.
class CKdExtensionModule {
 public:
  /// Records `instance` and the resource handle that is current now.
  /// @return 1; 0, changing nothing, when an instance is attached already
  int AttachInstance(KdModuleHandle instance);
  /// Only ends the attachment: what was recorded stays until the next one.
  void DetachInstance();

  bool IsAttached() const { return m_attached != 0; }
  /// The resource handle that was current when the module was attached.
  KdModuleHandle ResourceAtAttach() const { return m_resourceAtAttach; }
  KdModuleHandle Instance() const { return m_instance; }

 private:
  unsigned char m_attached = 0;
  KdModuleHandle m_resourceAtAttach = nullptr;
  KdModuleHandle m_instance = nullptr;
};
