#include <cwchar>
#include <gtest/gtest.h>

#include "test_editor.h"

#include <kdrx/db_database.h>
#include <kdrx/ed.h>

namespace torva::command {
namespace {

KdResbuf shortBuffer(int value) {
  KdResbuf buffer;
  buffer.restype = kKdResultShort;
  buffer.value.shortInteger = static_cast<std::int16_t>(value);
  return buffer;
}

TEST(Kded, filesAreAskedForAtTheCommandLineUnlessThereIsAChooser) {
  using Given = std::pair<int, std::wstring>;
  const struct {
    const char* answer;
    const wchar_t* start;
    Given typed, chosen;
  } cases[] = {
      {"my lib", L"/root/Support/", {kKdInputNormal, L"my lib.mln"}, {kKdInputNormal, L"/root/Support/chosen.mln"}},
      {"", L"/root/TORVA.mln", {kKdInputNormal, L"/root/TORVA.mln"}, {kKdInputCancel, L""}},
      {"", L"/root/Support/", {kKdInputNone, L""}, {kKdInputNormal, L"/root/Support/chosen.mln"}},
  };
  for (const auto& c : cases) {
    TestEditor test;
    Given given;
    test.ask = [&](Editor&) {
      KdResbuf file;
      given = {kdedGetFileD(L"Library", c.start, L"mln", kKdFileToWrite, &file), L""};
      if (given.first != kKdInputNormal) return;
      given.second = file.value.string;
      kdutDelString(file.value.string);
    };
    test.run(std::string("ASK\n") + c.answer + "\n");
    EXPECT_EQ(given, c.typed) << c.answer;
    test.editor.setFileChooser([&](const FileRequest& request) {
      return request.offersFile() ? std::nullopt : std::optional(request.start + L"chosen");
    });
    test.ask(test.editor);
    EXPECT_EQ(given, c.chosen) << c.answer;
  }
}

TEST(Kded, keywordsComeInFullSpellingCutToTheBuffer) {
  TestEditor test;
  wchar_t keyword[kKdInputCapacity] = {}, cut[4] = {};
  test.ask = [&](Editor&) {
    double point[3];
    (void)kdedInitGet(0, L"Close Undo");
    EXPECT_EQ(kdedGetKword(L"Which: ", cut, 4), kKdInputNormal);
    (void)kdedInitGet(0, L"Close Undo");
    EXPECT_EQ(kdedGetPoint(nullptr, L"Point: ", point), kKdInputKeyword);
    EXPECT_EQ(kdedGetInput(keyword), kKdInputNormal);
  };
  test.run("ASK cl UND\n");
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
  const KdResbuf five = shortBuffer(5), large = shortBuffer(5000);
  EXPECT_EQ(kdedSetVar(L"PICKBOX", &five), kKdInputNormal);
  EXPECT_EQ(kdedSetVar(L"PICKBOX", &large), kKdInputError) << "out of range";
  EXPECT_EQ(kdedSetVar(L"ERRNO", &five), kKdInputError) << "read only";
  ASSERT_EQ(kdedGetVar(L"pickbox", &value), kKdInputNormal);
  EXPECT_EQ(value.restype, kKdResultShort);
  EXPECT_EQ(value.value.shortInteger, 5);
  ASSERT_EQ(kdedGetVar(L"UCSXDIR", &value), kKdInputNormal);
  EXPECT_EQ(value.restype, kKdResultPoint);
  EXPECT_EQ(value.value.point[0], 1);
  EXPECT_EQ(kdedGetVar(L"NOSUCH", &value), kKdInputError);
}

TEST(Kded, transConvertsPointsAndDisplacements) {
  TestEditor test;
  test.run("UCS 10,20 UCS Z 90");
  const KdResbuf world = shortBuffer(kKdWorld), user = shortBuffer(kKdUser), other = shortBuffer(7);
  double point[3] = {1, 2, 3}, displacement[3] = {1, 2, 3};
  EXPECT_EQ(kdedTrans(point, &user, &world, 0, point), kKdInputNormal);
  EXPECT_TRUE((KdGePoint3d{point[0], point[1], point[2]}).isEqualTo({8, 21, 3}));
  EXPECT_EQ(kdedTrans(point, &world, &user, 0, point), kKdInputNormal);
  EXPECT_TRUE((KdGePoint3d{point[0], point[1], point[2]}).isEqualTo({1, 2, 3}));
  EXPECT_EQ(kdedTrans(displacement, &user, &world, 1, displacement), kKdInputNormal);
  EXPECT_TRUE((KdGePoint3d{displacement[0], displacement[1], displacement[2]}).isEqualTo({-2, 1, 3}));
  EXPECT_EQ(kdedTrans(point, &world, &other, 0, point), kKdInputError);
  EXPECT_EQ(kdedTrans(point, nullptr, &world, 0, point), kKdInputError);
}

}  // namespace
}  // namespace torva::command
