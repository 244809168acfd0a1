#include "db/dictionary_data.h"

#include <algorithm>
#include <optional>

#include "base/text.h"
#include "db/record_groups.h"

namespace torva::db {

namespace {

constexpr int kNameCode = 3, kSoftCode = 350, kHardCode = 360, kHardOwnerFlagCode = 280;

/// Tells the groups of a dictionary's entries from the others.
class DictionaryClassifier {
 public:
  enum class Role { other, name, handle };

  Role classify(const dxf::Group& group) {
    if (m_isPast || m_application.contains(group)) return Role::other;
    if (group.code == 100) {
      m_isPast = m_isInside;
      m_isInside = true;
      return Role::other;
    }
    if (group.code >= 1000 || group.code == 101) m_isPast = true;
    if (m_isPast || !m_isInside) return Role::other;
    if (group.code == kNameCode) {
      m_hasName = true;
      return Role::name;
    }
    if (!m_hasName || (group.code != kSoftCode && group.code != kHardCode)) return Role::other;
    m_hasName = false;
    return Role::handle;
  }
  bool isPast() const { return m_isPast; }

 private:
  ApplicationGroups m_application;
  bool m_isInside = false, m_isPast = false, m_hasName = false;
};

class DictionaryWriter {
 public:
  DictionaryWriter(const dxf::DrawingFile& file, std::string_view bytes, const std::vector<DictionaryEntry>& target)
      : m_file(file),
        m_groups(file.groupsOf(bytes)),
        m_sourceCount(readDictionary(file, m_groups).size()),
        m_target(target),
        m_out(file) {}

  std::string write() {
    DictionaryClassifier classifier;
    std::optional<dxf::Group> name;
    for (const dxf::Group& group : m_groups) {
      const auto role = classifier.classify(group);
      if (classifier.isPast()) writeRest();
      if (role == DictionaryClassifier::Role::name) {
        if (name) m_out.copy(*name);
        name = group;
        continue;
      }
      if (role == DictionaryClassifier::Role::handle) {
        m_handleCode = group.code;
        writeEntry(*name, group);
        name.reset();
        if (++m_sourceIndex == m_sourceCount) writeRest();
        continue;
      }
      if (group.code == kHardOwnerFlagCode && m_sourceIndex == 0 && group.integerOr(0) == 1) m_handleCode = kHardCode;
      m_out.copy(group);
    }
    if (name) m_out.copy(*name);
    writeRest();
    return m_out.take();
  }

 private:
  /// Entries keep their order, so one is gone when the next one wanted agrees with it neither by name nor by handle.
  void writeEntry(const dxf::Group& name, const dxf::Group& handle) {
    if (m_next == m_target.size()) return;
    const DictionaryEntry& entry = m_target[m_next];
    const bool isSameName = m_file.text(name) == entry.name;
    const bool isSameHandle = handle.handle().value_or(0) == entry.handle;
    if (!isSameName && !isSameHandle) return;
    ++m_next;
    if (isSameName) {
      m_out.copy(name);
    } else {
      m_out.text(kNameCode, entry.name);
    }
    if (isSameHandle) {
      m_out.copy(handle);
    } else {
      m_out.handle(handle.code, entry.handle);
    }
  }

  void writeRest() {
    for (; m_next < m_target.size(); ++m_next) {
      m_out.text(kNameCode, m_target[m_next].name);
      m_out.handle(m_handleCode, m_target[m_next].handle);
    }
  }

  const dxf::DrawingFile& m_file;
  dxf::Groups m_groups;
  std::size_t m_sourceCount, m_sourceIndex = 0;
  const std::vector<DictionaryEntry>& m_target;
  dxf::RecordBuilder m_out;
  std::size_t m_next = 0;
  int m_handleCode = kSoftCode;
};

}  // namespace

std::vector<DictionaryEntry> readDictionary(const dxf::DrawingFile& file, dxf::Groups groups) {
  std::vector<DictionaryEntry> entries;
  std::wstring name;
  DictionaryClassifier classifier;
  for (const dxf::Group& group : groups) {
    const auto role = classifier.classify(group);
    if (role == DictionaryClassifier::Role::name) name = file.text(group);
    if (role == DictionaryClassifier::Role::handle) entries.push_back({name, group.handle().value_or(0)});
  }
  return entries;
}

std::string writeDictionary(const dxf::DrawingFile& file, std::string_view bytes,
                            const std::vector<DictionaryEntry>& entries) {
  return DictionaryWriter(file, bytes, entries).write();
}

std::vector<DictionaryEntry>::const_iterator findEntry(const std::vector<DictionaryEntry>& entries, std::wstring_view name) {
  return std::ranges::find_if(entries, [&](const DictionaryEntry& entry) { return equalsIgnoringCase(entry.name, name); });
}

}  // namespace torva::db
