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
  struct Case {
    const char* answer;
    const wchar_t* start;
    int status;
    std::wstring path;
  };
  const Case cases[] = {
      {"my lib\n", L"/root/Support/", kKdInputNormal, L"my lib.mln"},
      {"a.b/lib.txt\n", nullptr, kKdInputNormal, L"a.b/lib.txt"},
      {"\n", L"/root/TORVA.mln", kKdInputNormal, L"/root/TORVA.mln"},
      {"\n", L"/root/Support/", kKdInputNone, L"unchanged"},
      {"^C\n", L"/root/TORVA.mln", kKdInputCancel, L"unchanged"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.answer);
    TestEditor test;
    std::wstring path = L"unchanged";
    int status = 0;
    const auto ask = [&] {
      KdResbuf file;
      status = kdedGetFileD(L"Library", c.start, L"mln", kKdFileToWrite, &file);
      if (status != kKdInputNormal) return;
      path = file.value.string;
      kdutDelString(file.value.string);
    };
    test.ask = [&](Editor&) { ask(); };
    test.run(std::string("ASK\n") + c.answer);
    EXPECT_EQ(status, c.status);
    EXPECT_EQ(path, c.path);

    test.editor.setFileChooser([&](const FileRequest& request) -> std::optional<std::wstring> {
      EXPECT_EQ(request.use, FileUse::write);
      if (request.offersFile()) return std::nullopt;
      return request.start + L"chosen";
    });
    ask();
    const bool isOffered = c.start && c.start[std::wcslen(c.start) - 1] != L'/';
    EXPECT_EQ(status, isOffered ? kKdInputCancel : kKdInputNormal);
    if (c.start && !isOffered) {
      EXPECT_EQ(path, std::wstring(c.start) + L"chosen.mln");
    }
  }
}

TEST(Kded, keywordsComeInFullSpellingCutToTheBuffer) {
  TestEditor test;
  wchar_t keyword[kKdInputCapacity] = {}, cut[4] = {};
  int statuses[4] = {};
  test.ask = [&](Editor&) {
    (void)kdedInitGet(0, L"Close Undo");
    statuses[0] = kdedGetKword(L"Which: ", keyword);
    (void)kdedInitGet(0, L"Close Undo");
    statuses[1] = kdedGetKword(L"Which: ", cut, 4);
    (void)kdedInitGet(0, L"Close Undo");
    double point[3];
    statuses[2] = kdedGetPoint(nullptr, L"Point: ", point);
    statuses[3] = kdedGetInput(keyword);
  };
  test.run("ASK u cl UND\n");
  EXPECT_STREQ(cut, L"Clo");
  EXPECT_STREQ(keyword, L"Undo");
  EXPECT_EQ(statuses[0], kKdInputNormal);
  EXPECT_EQ(statuses[2], kKdInputKeyword);
  EXPECT_EQ(statuses[3], kKdInputNormal);
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
  test.editor.variables().setInternally(L"UCSORG", KdGePoint3d{10, 20, 0});
  test.editor.variables().setInternally(L"UCSXDIR", KdGePoint3d{0, 1, 0});
  test.editor.variables().setInternally(L"UCSYDIR", KdGePoint3d{-1, 0, 0});
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
