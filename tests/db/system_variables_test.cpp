#include "db/system_variables.h"

#include <gmock/gmock.h>

#include "db/plan.h"

namespace torva::test {
namespace {

using db::SystemVariables;
using testing::ElementsAre;
using testing::IsEmpty;

class SystemVariablesTest : public PlanTest {
 protected:
  template <class T>
  T get(const wchar_t* name) {
    const auto value = m_variables.get(name);
    EXPECT_TRUE(value && std::holds_alternative<T>(*value));
    return value && std::holds_alternative<T>(*value) ? std::get<T>(*value) : T();
  }
  SystemVariables m_variables{&database()};
};

TEST_F(SystemVariablesTest, SettingWritesTheHeaderAndNothingElse) {
  EXPECT_EQ(get<double>(L"CMLSCALE"), 1) << "what the header does not say";
  EXPECT_TRUE(m_variables.set(L"dimzin", 8));
  EXPECT_TRUE(m_variables.set(L"PICKBOX", 10));
  EXPECT_THAT(changes(), IsEmpty());
  EXPECT_TRUE(m_variables.set(L"CMLSTYLE", std::wstring(L"Double")));
  EXPECT_TRUE(m_variables.set(L"CMLSCALE", 20));
  EXPECT_TRUE(m_variables.set(L"CECOLOR", std::wstring(L"5")));
  m_variables.setInternally(L"UCSORG", KdGePoint3d{1, 2, 3});
  EXPECT_THAT(changes(), ElementsAre("+9 $CMLSTYLE", "+2 Double", "+9 $CMLSCALE", "+40 20.0", "+9 $CECOLOR", "+62      5",
                                     "+9 $UCSORG", "+10 1.0", "+20 2.0", "+30 3.0"));
  EXPECT_EQ(get<std::wstring>(L"CECOLOR"), L"5");
  EXPECT_EQ(get<int>(L"WORLDUCS"), 0);
}

TEST_F(SystemVariablesTest, ProfileValuesOutliveTheDrawing) {
  EXPECT_TRUE(m_variables.set(L"PICKBOX", 7));
  EXPECT_TRUE(m_variables.set(L"LASTPOINT", KdGePoint3d{1, 2, 0}));
  m_variables.setDrawing(nullptr);
  EXPECT_EQ(get<int>(L"PICKBOX"), 7);
  EXPECT_EQ(get<int>(L"DIMZIN"), 0);
  EXPECT_EQ(m_variables.set(L"DIMZIN", 1).error().code, ErrorCode::notApplicable);
  const auto kept = m_variables.profileValues();
  EXPECT_EQ(std::get<int>(kept.at(L"PICKBOX")), 7);
  EXPECT_FALSE(kept.contains(L"LASTPOINT"));
}

TEST(SystemVariablesWithoutHeader, CannotKeepADrawingsValue) {
  const auto database = openText(groupsFrom("0 SECTION\n2 ENTITIES\n0 ENDSEC\n0 EOF"));
  SystemVariables variables(database.get());
  EXPECT_EQ(variables.set(L"DIMZIN", 1).error().code, ErrorCode::notApplicable);
  EXPECT_EQ(std::get<int>(*variables.get(L"DIMZIN")), 0);
}

}  // namespace
}  // namespace torva::test
