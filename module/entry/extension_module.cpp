#include "entry/extension_module.h"

int CKdExtensionModule::AttachInstance(KdModuleHandle instance) {
  if (m_attached) return 0;
  m_attached = 1;
  m_resourceAtAttach = AfxGetResourceHandle();
  m_instance = instance;
  return 1;
}

void CKdExtensionModule::DetachInstance() {
  m_attached = 0;
}
