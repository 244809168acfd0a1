#include "mlstyle/usage.h"

#include <map>

#include "mlstyle/OpenedObject.h"

#include <kdrx/db_mline_style.h>
#include <kdrx/text.h>

namespace {

/// Tells of styles whether they have a name; each is opened once.
class CStyleMatcher {
 public:
  explicit CStyleMatcher(const wchar_t* name) : m_name(name) {}

  bool Matches(KdDbObjectId id) {
    if (id == m_last) return m_lastMatches;
    const auto [known, isNew] = m_known.try_emplace(id, false);
    if (isNew) {
      const COpenedObject<KdDbMlineStyle> style(id, KdOpenMode::forRead);
      known->second = style && kdutEqualsIgnoringCase(style->name().c_str(), m_name);
    }
    m_last = id;
    m_lastMatches = known->second;
    return m_lastMatches;
  }

 private:
  const wchar_t* const m_name;
  std::map<KdDbObjectId, bool> m_known;
  KdDbObjectId m_last;  // mostly that of the multiline before, too
  bool m_lastMatches = false;
};

}  // namespace

bool isStyleUsed(KdDbDatabase* database, const wchar_t* name) {
  if (!database) return false;
  CStyleMatcher matcher(name);
  for (const auto mline = database->newMlineIterator(); !mline->done(); mline->step()) {
    if (matcher.Matches(mline->styleId())) return true;
  }
  return false;
}
