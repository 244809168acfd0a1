#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "runtime/module_loader.h"

#include <kdrx/rx.h>

namespace torva::runtime {

/// The registered services: each an object without content of its own.
class ServiceDictionary final : public KdRxDictionary {
 public:
  KdRxObject* at(const wchar_t* key) const override;
  KdRxObject* remove(const wchar_t* key) override;

  /// A name that is registered stays as it is; null and the empty name are ignored.
  void add(const wchar_t* name);

 private:
  std::map<std::wstring, std::unique_ptr<KdRxObject>, std::less<>> m_services;
};

/// Hands the calls of modules to the loader.
class DynamicLinker final : public KdRxDynamicLinker {
 public:
  explicit DynamicLinker(ModuleLoader& loader) : m_loader(loader) {}
  bool unlockApplication(void* applicationId) override { return m_loader.unlock(applicationId); }
  // One drawing at a time is all that the host works on, so nothing more follows from it.
  bool registerAppMDIAware(void* applicationId) override { return m_loader.isLoaded(applicationId); }

 private:
  ModuleLoader& m_loader;
};

/// The host's own objects by their fixed names. They belong to the host, so nothing can be taken out: remove() gives null.
class SystemRegistry final : public KdRxDictionary {
 public:
  SystemRegistry(KdRxObject& commands, KdRxObject& services, KdRxObject& linker);
  KdRxObject* at(const wchar_t* key) const override;
  KdRxObject* remove(const wchar_t*) override { return nullptr; }

 private:
  std::map<std::wstring, KdRxObject*, std::less<>> m_objects;
};

}  // namespace torva::runtime
