#include "runtime/registry.h"

KdRxDictionary::~KdRxDictionary() = default;
KdRxDynamicLinker::~KdRxDynamicLinker() = default;

namespace torva::runtime {
namespace {

class Service final : public KdRxObject {};

}  // namespace

KdRxObject* ServiceDictionary::at(const wchar_t* key) const {
  if (!key) return nullptr;
  const auto found = m_services.find(std::wstring_view(key));
  return found == m_services.end() ? nullptr : found->second.get();
}

KdRxObject* ServiceDictionary::remove(const wchar_t* key) {
  if (!key) return nullptr;
  const auto found = m_services.find(std::wstring_view(key));
  if (found == m_services.end()) return nullptr;
  KdRxObject* service = found->second.release();
  m_services.erase(found);
  return service;
}

void ServiceDictionary::add(const wchar_t* name) {
  if (name && *name) m_services.try_emplace(name, std::make_unique<Service>());
}

SystemRegistry::SystemRegistry(KdRxObject& commands, KdRxObject& services, KdRxObject& linker)
    : m_objects{{L"KDAPP_REGISTERED_COMMANDS", &commands}, {L"ServiceDictionary", &services}, {L"DynamicLinker", &linker}} {}

KdRxObject* SystemRegistry::at(const wchar_t* key) const {
  if (!key) return nullptr;
  const auto found = m_objects.find(std::wstring_view(key));
  return found == m_objects.end() ? nullptr : found->second;
}

}  // namespace torva::runtime
