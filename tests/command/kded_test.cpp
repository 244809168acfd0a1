#include <cwchar>
#include <gtest/gtest.h>

#include "test_editor.h"

#include <kdrx/db_database.h>
#include <kdrx/ed.h>
#include <kdrx/gs.h>

namespace torva::command {
namespace {

KdResbuf shortBuffer(int value) {
  KdResbuf buffer;
  buffer.restype = kKdResultShort;
  buffer.value.shortInteger = static_cast<std::int16_t>(value);
  return buffer;
}

TEST(Kded, answersWithoutAnEditorAreErrors) {
  wchar_t text[8] = L"x";
  KdName name = {1, 1};
  double point[3] = {};
  KdResbuf buffer;
  EXPECT_EQ(kdedInitGet(0, nullptr), kKdInputError);
  EXPECT_EQ(kdedGetKword(L"", text), kKdInputError);
  EXPECT_EQ(kdedEntSel(L"", name, point), kKdInputError);
  EXPECT_EQ(kdedGetVar(L"PICKBOX", &buffer), kKdInputError);
  EXPECT_EQ(kdgsActiveView(), nullptr);
  kdutPrint(L"nobody there");
}

TEST(Kded, filesAreAskedForAtTheCommandLineUnlessThereIsAChooser) {
  const struct {
    const char* answer;
    const wchar_t* start;
    int status;
    std::wstring path;
    int chosenStatus;
    std::wstring chosen;
  } cases[] = {
      {"my lib\n", L"/root/Support/", kKdInputNormal, L"my lib.mln", kKdInputNormal, L"/root/Support/chosen.mln"},
      {"a.b/lib.txt\n", nullptr, kKdInputNormal, L"a.b/lib.txt", kKdInputNormal, L"chosen.mln"},
      {"\n", L"/root/TORVA.mln", kKdInputNormal, L"/root/TORVA.mln", kKdInputCancel, L"unchanged"},
      {"\n", L"/root/Support/", kKdInputNone, L"unchanged", kKdInputNormal, L"/root/Support/chosen.mln"},
      {"^C\n", L"/root/TORVA.mln", kKdInputCancel, L"unchanged", kKdInputCancel, L"unchanged"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.answer);
    TestEditor test;
    std::pair<int, std::wstring> given;
    test.ask = [&](Editor&) {
      KdResbuf file;
      given = {kdedGetFileD(L"Library", c.start, L"mln", kKdFileToWrite, &file), L"unchanged"};
      if (given.first != kKdInputNormal) return;
      given.second = file.value.string;
      kdutDelString(file.value.string);
    };
    test.run(std::string("ASK\n") + c.answer);
    EXPECT_EQ(given, std::pair(c.status, c.path));

    test.editor.setFileChooser([&](const FileRequest& request) -> std::optional<std::wstring> {
      EXPECT_EQ(request.use, FileUse::write);
      if (request.offersFile()) return std::nullopt;
      return request.start + L"chosen";
    });
    test.ask(test.editor);
    EXPECT_EQ(given, std::pair(c.chosenStatus, c.chosen));
  }
}

TEST(Kded, keywordsComeInFullSpellingCutToTheBuffer) {
  TestEditor test;
  wchar_t keyword[kKdInputCapacity] = {}, cut[4] = {};
  std::vector<int> statuses;
  test.ask = [&](Editor&) {
    double point[3];
    for (const auto& get : std::initializer_list<std::function<int()>>{
             [&] { return kdedGetKword(L"Which: ", keyword); }, [&] { return kdedGetKword(L"Which: ", cut, 4); },
             [&] { return kdedGetPoint(nullptr, L"Point: ", point); }}) {
      (void)kdedInitGet(0, L"Close Undo");
      statuses.push_back(get());
    }
    statuses.push_back(kdedGetInput(keyword));
  };
  test.run("ASK u cl UND\n");
  EXPECT_EQ(statuses, (std::vector<int>{kKdInputNormal, kKdInputNormal, kKdInputKeyword, kKdInputNormal}));
  EXPECT_STREQ(cut, L"Clo");
  EXPECT_STREQ(keyword, L"Undo");
  EXPECT_EQ(kdedInitGet(0, L"Same same"), kKdInputError);
}

TEST(Kded, entSelClearsTheNameAndKeepsThePointUnlessPicked) {
  TestEditor test;
  KdName picked = {9, 9}, missed = {9, 9}, empty = {9, 9};
  double pickedAt[3] = {}, emptyAt[3] = {7, 8, 9};
  test.ask = [&](Editor&) {
    double anywhere[3] = {};
    EXPECT_EQ(kdedEntSel(L"Entity: ", picked, pickedAt), kKdInputNormal);
    EXPECT_EQ(kdedEntSel(L"Entity: ", missed, anywhere), kKdInputError);
    EXPECT_EQ(kdedEntSel(L"Entity: ", empty, emptyAt), kKdInputError);
  };
  test.run("ASK #2F:1,2 #99:1,2\n\n");
  KdDbObjectId id;
  EXPECT_EQ(kddbGetObjectId(id, picked), KdStatus::ok);
  EXPECT_EQ(id, test.editor.database().idOfHandle(0x2F));
  EXPECT_EQ(pickedAt[1], 2);
  EXPECT_EQ(missed[0] | missed[1] | empty[0] | empty[1], 0);
  EXPECT_EQ(emptyAt[0], 7);
}

TEST(Kded, variablesKeepTheirTypes) {
  TestEditor test;
  KdResbuf value;
  ASSERT_EQ(kdedGetVar(L"pickbox", &value), kKdInputNormal);
  EXPECT_EQ(value.restype, kKdResultShort);
  const KdResbuf five = shortBuffer(5);
  EXPECT_EQ(kdedSetVar(L"PICKBOX", &five), kKdInputNormal);
  ASSERT_EQ(kdedGetVar(L"PICKBOX", &value), kKdInputNormal);
  EXPECT_EQ(value.value.shortInteger, 5);
  ASSERT_EQ(kdedGetVar(L"UCSXDIR", &value), kKdInputNormal);
  EXPECT_EQ(value.restype, kKdResultPoint);
  EXPECT_EQ(value.value.point[0], 1);

  const KdResbuf large = shortBuffer(5000);
  EXPECT_EQ(kdedSetVar(L"PICKBOX", &large), kKdInputError) << "out of range";
  EXPECT_EQ(kdedSetVar(L"ERRNO", &five), kKdInputError) << "read only";
  EXPECT_EQ(kdedSetVar(L"NOSUCH", &five), kKdInputError);
  EXPECT_EQ(kdedGetVar(L"NOSUCH", &value), kKdInputError);
  EXPECT_EQ(kdedGetVar(L"PICKBOX", nullptr), kKdInputError);
}

TEST(Kded, transConvertsPointsAndDisplacements) {
  TestEditor test;
  test.run("UCS 10,20 UCS Z 90");
  const KdResbuf world = shortBuffer(kKdWorld), user = shortBuffer(kKdUser), display = shortBuffer(kKdDisplay);
  const struct {
    const char* name;
    const KdResbuf &from, &to;
    int isDisplacement;
    KdGePoint3d in, out;
  } rows[] = {
      {"user point", user, world, 0, {1, 2, 3}, {8, 21, 3}},  {"user displacement", user, world, 1, {1, 2, 3}, {-2, 1, 3}},
      {"world point", world, user, 0, {8, 21, 3}, {1, 2, 3}}, {"the same system", world, world, 0, {8, 21, 3}, {8, 21, 3}},
      {"plan view", world, display, 1, {1, 2, 0}, {1, 2, 0}},
  };
  for (const auto& row : rows) {
    const double in[3] = {row.in.x, row.in.y, row.in.z};
    double out[3] = {};
    EXPECT_EQ(kdedTrans(in, &row.from, &row.to, row.isDisplacement, out), kKdInputNormal) << row.name;
    EXPECT_TRUE((KdGePoint3d{out[0], out[1], out[2]}).isEqualTo(row.out)) << row.name;
  }
  double point[3] = {1, 2, 3};
  const KdResbuf other = shortBuffer(7);
  EXPECT_EQ(kdedTrans(point, &world, &other, 0, point), kKdInputError);
  EXPECT_EQ(kdedTrans(point, nullptr, &world, 0, point), kKdInputError);
  EXPECT_EQ(point[0], 1);
}

TEST(Kded, redrawKnowsModesAndEntities) {
  TestEditor test;
  KdName name = {0, 0};
  EXPECT_EQ(kdedRedraw(nullptr, kKdRedrawUnhighlight), kKdInputNormal);
  EXPECT_EQ(kdedRedraw(nullptr, 5), kKdInputError);
  EXPECT_EQ(kdedRedraw(name, kKdRedrawShow), kKdInputError);
  ASSERT_EQ(kddbGetName(name, test.editor.database().idOfHandle(0x2F)), KdStatus::ok);
  EXPECT_EQ(kdedRedraw(name, kKdRedrawHide), kKdInputNormal);
}

TEST(Kded, printShowsTextAsItStands) {
  TestEditor test;
  kdutPrint(L"100 %s\n");
  EXPECT_EQ(test.output, L"100 %s\n");
}

}  // namespace
}  // namespace torva::command
