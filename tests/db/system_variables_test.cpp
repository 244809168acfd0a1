#include "db/system_variables.h"

#include <gmock/gmock.h>

#include "db/plan.h"

namespace torva::test {
namespace {

using db::SystemVariables;
using db::VariableValue;
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

TEST_F(SystemVariablesTest, EveryVariableIsFoundByItsName) {
  const std::vector<std::wstring> names = m_variables.names();
  EXPECT_GE(names.size(), 25u);
  EXPECT_TRUE(std::ranges::is_sorted(names));
  for (const std::wstring& name : names) EXPECT_TRUE(m_variables.has(name) && m_variables.get(name));
  EXPECT_TRUE(m_variables.has(L"dimzin"));
  EXPECT_FALSE(m_variables.has(L"DIM"));
  EXPECT_EQ(m_variables.get(L"NOSUCH").error().code, ErrorCode::unknownName);
}

TEST_F(SystemVariablesTest, HeaderValuesAreReadAndMissingOnesHaveTheirFirstValue) {
  EXPECT_EQ(get<int>(L"DIMZIN"), 8);
  EXPECT_EQ(get<std::wstring>(L"CLAYER"), L"WALLS");
  EXPECT_EQ(get<std::wstring>(L"CMLSTYLE"), L"STANDARD");
  EXPECT_EQ(get<double>(L"CMLSCALE"), 1);
  EXPECT_EQ(get<std::wstring>(L"CECOLOR"), L"BYLAYER");
  EXPECT_EQ(get<KdGePoint3d>(L"UCSYDIR").y, 1);
  EXPECT_EQ(get<int>(L"PICKBOX"), 3);
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(SystemVariablesTest, SettingWritesTheHeaderAndNothingElse) {
  EXPECT_TRUE(m_variables.set(L"dimzin", 8));
  EXPECT_THAT(changes(), IsEmpty());
  EXPECT_TRUE(m_variables.set(L"CMLSTYLE", std::wstring(L"Double")));
  EXPECT_TRUE(m_variables.set(L"CMLSCALE", 20));
  EXPECT_TRUE(m_variables.set(L"CECOLOR", std::wstring(L"5")));
  EXPECT_TRUE(m_variables.set(L"PICKBOX", 10));
  EXPECT_THAT(changes(), ElementsAre("+9 $CMLSTYLE", "+2 Double", "+9 $CMLSCALE", "+40 20.0", "+9 $CECOLOR", "+62      5"));
  EXPECT_EQ(get<std::wstring>(L"CMLSTYLE"), L"Double");
  EXPECT_EQ(get<double>(L"CMLSCALE"), 20);
  EXPECT_EQ(get<std::wstring>(L"CECOLOR"), L"5");
}

TEST_F(SystemVariablesTest, RefusesWhatAVariableCannotBe) {
  const struct {
    const wchar_t* name;
    VariableValue value;
    ErrorCode error;
  } cases[] = {
      {L"NOSUCH", 1, ErrorCode::unknownName},
      {L"ERRNO", 1, ErrorCode::readOnly},
      {L"DWGNAME", std::wstring(L"x"), ErrorCode::readOnly},
      {L"PICKBOX", 51, ErrorCode::invalidValue},
      {L"PICKBOX", -1, ErrorCode::invalidValue},
      {L"PICKBOX", 3.0, ErrorCode::invalidValue},
      {L"PICKBOX", std::wstring(L"3"), ErrorCode::invalidValue},
      {L"CMLJUST", 3, ErrorCode::invalidValue},
      {L"CMLSCALE", std::numeric_limits<double>::quiet_NaN(), ErrorCode::invalidValue},
      {L"LTSCALE", 0.0, ErrorCode::invalidValue},
      {L"CMLSTYLE", std::wstring(L"nowhere"), ErrorCode::invalidValue},
      {L"CMLSTYLE", 1, ErrorCode::invalidValue},
      {L"CLAYER", std::wstring(L"nowhere"), ErrorCode::invalidValue},
      {L"CELTYPE", std::wstring(L"nowhere"), ErrorCode::invalidValue},
      {L"CECOLOR", std::wstring(L"300"), ErrorCode::invalidValue},
      {L"CECOLOR", std::wstring(L"red"), ErrorCode::invalidValue},
  };
  for (const auto& row : cases) {
    const auto result = m_variables.set(row.name, row.value);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().code, row.error) << result.error().text;
  }
  EXPECT_EQ(m_variables.set(L"PICKBOX", 51).error().text, "PICKBOX requires an integer from 0 to 50");
  EXPECT_THAT(changes(), IsEmpty());
  EXPECT_TRUE(m_variables.set(L"CELTYPE", std::wstring(L"ByLayer")));
}

TEST_F(SystemVariablesTest, TheHostSetsWhatUsersOnlyRead) {
  m_variables.setInternally(L"ERRNO", 52);
  EXPECT_EQ(get<int>(L"ERRNO"), 52);
  EXPECT_EQ(get<int>(L"WORLDUCS"), 1);
  m_variables.setInternally(L"UCSORG", KdGePoint3d{1, 2, 3});
  EXPECT_EQ(get<int>(L"WORLDUCS"), 0);
  EXPECT_THAT(changes(), ElementsAre("+9 $UCSORG", "+10 1.0", "+20 2.0", "+30 3.0"));
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
