#include "db/record_copy.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace torva::db {

namespace {

using dxf::RecordType;

constexpr std::array<std::string_view, 3> kGroupsOfOriginal = {"{ACAD_XDICTIONARY", "{ACAD_REACTORS", "{BLKREFS"};

/// Passes the groups that applications keep of the original alone.
class OriginalsGroups {
 public:
  bool contains(const dxf::Group& group) {
    if (group.code != 102) return m_isInside;
    const bool wasInside =
        std::exchange(m_isInside, std::ranges::find(kGroupsOfOriginal, group.value) != kGroupsOfOriginal.end());
    return m_isInside || wasInside;
  }

 private:
  bool m_isInside = false;
};

/// Makes a hatch one that follows no boundary: its paths name none, and its flag says so.
class HatchRelease {
 public:
  /// Whether the group was dealt with.
  bool take(const dxf::Group& group, dxf::RecordBuilder& out) {
    constexpr int kIsAssociative = 71, kBoundaryCount = 97, kBoundary = 330;
    if (group.code == 100) m_isOwnPart = group.value == "AcDbHatch";
    if (!m_isOwnPart) return false;
    if (group.code == kBoundary) {
      // The same code counts the fit points of a spline; here boundaries follow.
      if (std::exchange(m_count, std::nullopt)) out.integer(kBoundaryCount, 0);
      return true;
    }
    release(out);
    if (group.code == kIsAssociative) {
      out.integer(kIsAssociative, 0);
      return true;
    }
    if (group.code != kBoundaryCount) return false;
    m_count = group;
    return true;
  }

 private:
  void release(dxf::RecordBuilder& out) {
    if (const auto count = std::exchange(m_count, std::nullopt)) out.copy(*count);
  }

  bool m_isOwnPart = false;
  std::optional<dxf::Group> m_count;
};

constexpr int kFirstOwnerCode = 350, kLastOwnerCode = 369;

class RecordCopier {
 public:
  RecordCopier(const dxf::DrawingFile& file, RecordType type, const CopyNames& names)
      : m_file(file), m_type(type), m_names(names), m_out(file) {}

  std::string copy(dxf::Groups groups) {
    for (const dxf::Group& group : groups) {
      if (m_originals.contains(group) || isOwned(group)) continue;
      if (m_type == RecordType::hatch && m_hatch.take(group, m_out)) continue;
      write(group);
    }
    return m_out.take();
  }

 private:
  static bool isOwned(const dxf::Group& group) { return group.code >= kFirstOwnerCode && group.code <= kLastOwnerCode; }

  void write(const dxf::Group& group) {
    if (m_type == RecordType::leader && releaseLeader(group)) return;
    if (isHandle(group)) {
      const auto found = m_names.handles.find(group.handle().value_or(0));
      if (found != m_names.handles.end()) return m_out.handle(group.code, found->second);
    }
    if (canNameBlock(group) && equalsIgnoringCase(m_file.text(group), m_names.block)) {
      return m_out.text(group.code, m_names.newBlock);
    }
    m_out.copy(group);
  }

  /// Makes a leader one without annotation. @return whether the group was dealt with
  bool releaseLeader(const dxf::Group& group) {
    constexpr int kAnnotation = 340, kAnnotationType = 73, kNone = 3;
    if (group.code == kAnnotationType) m_out.integer(kAnnotationType, kNone);
    return group.code == kAnnotationType || group.code == kAnnotation;
  }

  static bool isHandle(const dxf::Group& group) { return dxf::valueKind(group.code) == dxf::ValueKind::handle; }

  bool canNameBlock(const dxf::Group& group) const {
    const bool hasBlock =
        m_type == RecordType::block || m_type == RecordType::blockRecord || m_type == RecordType::dimension;
    return hasBlock && (group.code == 2 || group.code == 3) && !m_names.block.empty();
  }

  const dxf::DrawingFile& m_file;
  const RecordType m_type;
  const CopyNames& m_names;
  dxf::RecordBuilder m_out;
  OriginalsGroups m_originals;
  HatchRelease m_hatch;
};

}  // namespace

std::string copiedRecord(const dxf::DrawingFile& file, RecordType type, std::string_view bytes, const CopyNames& names) {
  return RecordCopier(file, type, names).copy(file.groupsOf(bytes));
}

}  // namespace torva::db
