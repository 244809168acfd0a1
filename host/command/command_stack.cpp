#include "command/command_stack.h"

#include <algorithm>

#include "base/text.h"

KdRxObject::~KdRxObject() = default;
KdEdCommandStack::~KdEdCommandStack() = default;

namespace torva::command {

KdStatus CommandStack::addCommand(const wchar_t* group, const wchar_t* globalName, const wchar_t* localName, int flags,
                                  KdCommandFunction function, void*, int, KdModuleHandle, void** record) {
  if (!group || !globalName || !function) return KdStatus::nullPointer;
  const KdStatus status =
      add({group, globalName, localName ? localName : globalName, flags, function, reinterpret_cast<const void*>(function)});
  if (status == KdStatus::ok && record) *record = m_commands.back().get();
  return status;
}

KdStatus CommandStack::removeGroup(const wchar_t* group) {
  if (!group) return KdStatus::nullPointer;
  const auto isOfGroup = [&](const auto& command) { return equalsIgnoringCase(command->group, group); };
  return std::erase_if(m_commands, isOfGroup) > 0 ? KdStatus::ok : KdStatus::keyNotFound;
}

KdStatus CommandStack::add(Command command) {
  command.globalName = upperCase(command.globalName);
  command.localName = upperCase(command.localName);
  const bool isKnown = std::any_of(m_commands.begin(), m_commands.end(), [&](const auto& other) {
    return equalsIgnoringCase(other->group, command.group) && other->globalName == command.globalName;
  });
  if (isKnown) return KdStatus::duplicateKey;
  m_commands.push_back(std::make_unique<Command>(std::move(command)));
  return KdStatus::ok;
}

void CommandStack::removeIf(const std::function<bool(const Command&)>& isMeant) {
  std::erase_if(m_commands, [&](const auto& command) { return isMeant(*command); });
}

const Command* CommandStack::find(std::wstring_view name) {
  if (const Command* known = findKnown(name)) return known;
  if (!m_loader || name.empty()) return nullptr;
  const std::size_t underscore = name.front() == L'_' ? 1 : 0;
  return m_loader(upperCase(name.substr(underscore))) ? findKnown(name) : nullptr;
}

const Command* CommandStack::findKnown(std::wstring_view name) const {
  const bool isGlobalOnly = name.size() > 1 && name.front() == L'_';
  const std::wstring wanted = upperCase(isGlobalOnly ? name.substr(1) : name);
  const auto isMeant = [&](const auto& command) {
    return command->globalName == wanted || (!isGlobalOnly && command->localName == wanted);
  };
  const auto found = std::find_if(m_commands.begin(), m_commands.end(), isMeant);
  return found == m_commands.end() ? nullptr : found->get();
}

std::vector<std::wstring> CommandStack::names() const {
  std::vector<std::wstring> names;
  for (const auto& command : m_commands) names.push_back(command->globalName);
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

}  // namespace torva::command
