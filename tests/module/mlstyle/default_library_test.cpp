#include <gmock/gmock.h>

#include "mlstyle/library/style_library.h"
#include "module/mlstyle/style_host.h"

namespace {

using testing::ElementsAreArray;

// What "Support/TORVA.mln" holds. The file is what the writer makes of these.
class DefaultLibraryTest : public StyleHost {
 protected:
  const std::vector<Style> m_styles = {
      {L"STANDARD", L"", 0, {{0.5}, {-0.5}}},
      {L"WALL-2", L"Wall of two lines", 0, {{0.5}, {-0.5}}},
      {L"WALL-2-FILLED", L"Wall of two lines, filled", kStyleFilled, {{0.5}, {-0.5}}},
      {L"WALL-3", L"Wall with its axis", 0, {{0.5}, {0, 1, L"CENTER"}, {-0.5}}},
      {L"WALL-3-FILLED", L"Wall with its axis, filled", kStyleFilled, {{0.5}, {0, 1, L"CENTER"}, {-0.5}}},
      {L"WALL-5", L"Cavity wall with its axis", 0, {{0.5}, {0.2, 8}, {0, 1, L"CENTER"}, {-0.2, 8}, {-0.5}}},
      {L"WALL-5-FILLED",
       L"Cavity wall with its axis, filled",
       kStyleFilled,
       {{0.5}, {0.2, 8}, {0, 1, L"CENTER"}, {-0.2, 8}, {-0.5}}},
      {L"ROAD",
       L"Road with footways and a middle line",
       kStyleShowMiters,
       {{5, 8}, {3.5}, {0, 2, L"DASHED"}, {-3.5}, {-5, 8}}},
      {L"PIPE", L"Pipe with its axis and closed start", kStyleStartRoundCap, {{0.5}, {0, 1, L"CENTER"}, {-0.5}}},
      {L"DOUBLE-CENTER", L"Two center lines", 0, {{0.5, 1, L"CENTER"}, {-0.5, 1, L"CENTER"}}},
  };
};

TEST_F(DefaultLibraryTest, IsWhatTheWriterMakes) {
  for (const Style& style : m_styles) {
    put(style);
    EXPECT_TRUE(saveToLibrary(path("new.mln"), style.name, dictionary()));
  }
  EXPECT_EQ(folder.read("new.mln"), folder.read("Support/TORVA.mln"));
}

TEST_F(DefaultLibraryTest, LoadsIntoANewDrawing) {
  const std::wstring library = path("Support/TORVA.mln");
  std::vector<std::wstring> names;
  for (const Style& style : m_styles) names.push_back(style.name);
  EXPECT_THAT(listLibrary(library).value(), ElementsAreArray(names));
  for (const Style& style : m_styles) {
    ASSERT_TRUE(loadFromLibrary(library, style.name, addStyle(style.name, dictionary())));
    const Style loaded = read(style.name);
    EXPECT_EQ(loaded.description, style.description);
    EXPECT_EQ(loaded.flags, style.flags);
    EXPECT_EQ(loaded.elements, style.elements);
  }
}

}  // namespace
