#include "support/dialog_driver.h"
#include "support/host_driver.h"
#include "ui/DialogPosition.h"
#include "ui/DlgItemResizer.h"
#include "ui/EditLimited.h"
#include "ui/SortListCtrl.h"

#include <kdrx/app.h>

#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTableWidget>

namespace {

enum Id : int { kTable = 1046, kEdit = 1035, kOther };

class Sample : public CDialog {
 public:
  Sample() : CDialog(100) {
    auto* widget = new QBaseDialog(this);
    const std::pair<int, QWidget*> controls[] = {
        {kTable, new QTableWidget(widget)}, {kEdit, new QLineEdit(widget)}, {kOther, new QLineEdit(widget)}};
    for (const auto& [id, control] : controls) control->setProperty("controlId", id);
    widget->setGeometry(100, 50, 300, 200);
    SetDialogWidget(widget);
    UpdateData(false);
  }
  void DoDataExchange(CDataExchange* exchange) override {
    DDX_Control(exchange, kTable, table);
    DDX_Control(exchange, kEdit, edit);
  }
  bool OnCommand(int id, unsigned) override {
    heard.push_back(id);
    return false;
  }
  std::wstring column(int number) {
    std::wstring texts;
    for (int row = 0; row < table.GetItemCount(); ++row) texts += table.GetItemText(row, number) + L' ';
    return texts;
  }

  CSortListCtrl table;
  CEditLimited edit;
  std::vector<int> heard;
};

class UiTest : public DialogTest, protected HostDriver {
 protected:
  UiTest() { startHost(); }
};

TEST_F(UiTest, HeadingsAreNamesAndWidths) {
  const std::pair<const wchar_t*, std::vector<int>> cases[] = {{L"", {}},
                                                               {L"No comma", {}},
                                                               {L"Offset,70;Linetype,80;Color,90;", {70, 80, 90}},
                                                               {L"Offset,70;Color,90", {70, 90}},
                                                               {L"Offset,70;rest", {70}}};
  for (const auto& [headings, widths] : cases) {
    Sample sample;
    EXPECT_TRUE(sample.table.SetHeadings(CStdStr<wchar_t>(headings)));
    const auto& table = dynamic_cast<QTableWidget&>(*sample.table.GetWidget());
    std::vector<int> found;
    for (int i = 0; i < table.columnCount(); ++i) found.push_back(table.columnWidth(i));
    EXPECT_EQ(found, widths);
    if (!widths.empty()) {
      EXPECT_EQ(table.horizontalHeaderItem(0)->text(), "Offset");
    }
  }
  CSortListCtrl unbound;
  EXPECT_FALSE(unbound.SetHeadings(CStdStr<wchar_t>(L"Offset,70")));
}

TEST_F(UiTest, RowsAreSortedByTheNumbersOfTheClickedColumn) {
  Sample sample;
  EXPECT_EQ(sample.table.AddItem(L"10"), -1) << "no column takes it";
  sample.table.SetHeadings(CStdStr<wchar_t>(L"Offset,70;Count,80"));
  const wchar_t* rows[][2] = {{L"10", L"b"}, {L"9", L"2x"}, {L"-1", L"1.5"}, {L"0.25", L""}};
  for (const auto& [offset, count] : rows) {
    const int row = sample.table.AddItem(offset, count);
    EXPECT_TRUE(sample.table.SetItemData(row, static_cast<unsigned long>(row) + 1));
  }
  EXPECT_FALSE(sample.table.SetItemData(4, 1));
  auto* header = dynamic_cast<QTableWidget&>(*sample.table.GetWidget()).horizontalHeader();
  struct Click {
    int column;
    const wchar_t* rows;
    bool isAscending;
  };
  const Click clicks[] = {{0, L"-1 0.25 9 10 | 1.5  2x b ", true},
                          {0, L"10 9 0.25 -1 | b 2x  1.5 ", false},
                          {1, L"10 0.25 -1 9 | b  1.5 2x ", true},
                          {0, L"-1 0.25 9 10 | 1.5  2x b ", true}};
  for (const Click& click : clicks) {
    emit header->sectionClicked(click.column);
    EXPECT_EQ(sample.column(0) + L"| " + sample.column(1), click.rows);
    EXPECT_EQ(header->sortIndicatorSection(), click.column);
    EXPECT_EQ(header->sortIndicatorOrder() == Qt::AscendingOrder, click.isAscending);
  }
  EXPECT_EQ(sample.table.GetItemData(0), 3u);
  EXPECT_TRUE(sample.table.SetItemText(0, 0, L"50"));
  sample.table.Sort(0, true);
  EXPECT_EQ(sample.column(0), L"0.25 9 10 50 ");
  EXPECT_TRUE(sample.table.DeleteItem(1));
  EXPECT_FALSE(sample.table.DeleteItem(7));
  EXPECT_EQ(sample.table.GetItemData(1), 1u);
  sample.table.SaveColumnInfo();
  sample.table.LoadColumnInfo();
  sample.table.OnDestroy();
  EXPECT_EQ(sample.table.GetItemData(1), 0u);
}

TEST(SortListTexts, NumbersAndDatesAreToldAndCompared) {
  for (const wchar_t* number : {L"", L"0129"}) EXPECT_TRUE(IsNumber(number) && !IsDate(number));
  for (const wchar_t* text : {L"1.5", L"24/12/202", L"24-12-2025"}) EXPECT_FALSE(IsNumber(text) || IsDate(text)) << text;
  EXPECT_TRUE(IsDate(L"24/12/2025"));
  const struct {
    int (*compare)(const wchar_t*, const wchar_t*);
    const wchar_t *a, *b;
    int order;
  } cases[] = {{NumberCompare, L"10", L"9", 1},
               {NumberCompare, L" -1.5e1x", L"-14", -1},
               {NumberCompare, L"text", L"0", 0},
               {NumberCompare, L"nan", L"1", -1},
               {NumberCompare, L"+2", L"1,9", 1},
               {DateCompare, L"31/01/2024", L"01/01/2025", -1},
               {DateCompare, L"01/02/2025", L"31/01/2025", 1},
               {DateCompare, L"02/01/2025", L"01/01/2025", 1},
               {DateCompare, L"01/01/2025", L"01/01/2025", 0}};
  for (const auto& c : cases) EXPECT_EQ(c.compare(c.a, c.b), c.order) << c.a << ' ' << c.b;
}

TEST_F(UiTest, ADialogStaysAsLargeAsItWas) {
  struct Case {
    tagRECT proposed, taken;
  };
  const Case cases[] = {
      {{100, 50, 500, 400}, {100, 50, 500, 400}},  // larger
      {{100, 50, 350, 250}, {100, 50, 400, 250}},  // the right edge inwards
      {{150, 50, 400, 250}, {100, 50, 400, 250}},  // the left one
      {{100, 90, 400, 250}, {100, 50, 400, 250}},  // the upper one
      {{100, 50, 400, 200}, {100, 50, 400, 250}},  // the lower one
      {{120, 70, 380, 240}, {100, 50, 400, 250}},  // a corner beyond
  };
  Sample sample;
  CDlgItemResizer resizer;
  for (const Case& c : cases) {
    tagRECT rectangle = c.proposed;
    resizer.OnSizing(&sample, &rectangle);
    EXPECT_EQ(rectangle, c.proposed) << "nothing is recorded yet";
  }
  resizer.Add(&sample, kEdit, 0);
  resizer.Add(&sample, 99, 3);
  resizer.Add(nullptr, 3);
  resizer.Add(&sample, kEdit, 3);
  sample.GetWidget()->resize(600, 600);
  resizer.Add(&sample, kOther, 10);
  sample.GetWidget()->resize(300, 200);
  for (const Case& c : cases) {
    tagRECT rectangle = c.proposed;
    resizer.OnSizing(&sample, &rectangle);
    EXPECT_EQ(rectangle, c.taken) << c.proposed.left << ' ' << c.proposed.top;
  }
  resizer.ClearData();
  resizer.SetInitial({280, 10});
  tagRECT rectangle{100, 50, 120, 150};
  resizer.OnSizing(&sample, &rectangle);
  EXPECT_EQ(rectangle, (tagRECT{100, 50, 380, 150}));
}

TEST_F(UiTest, AnEditTakesSoManyCharactersAndTellsNobody) {
  Sample sample;
  withNextDialog([&](QDialog& dialog) {
    auto* edit = qobject_cast<QLineEdit*>(sample.edit.GetWidget());
    for (const auto& [limit, length] : {std::pair{0, 8}, {31, 31}, {-4, 31}}) {
      sample.edit.SetMaxWords(limit);
      edit->clear();
      QTest::keyClicks(edit, QString(40, 'x'));
      EXPECT_EQ(edit->text().size(), length);
    }
    qobject_cast<QLineEdit*>(sample.GetDlgItem(kOther)->GetWidget())->setText("heard");
    dialog.reject();
  });
  sample.DoModal();
  EXPECT_EQ(sample.heard, std::vector<int>{kOther});
}

TEST_F(UiTest, APositionIsRestoredOnlyWhenAllOfItIsKept) {
  const tagRECT first{100, 50, 400, 250}, kept{20, 30, 350, 330};
  Sample sample;
  const auto restored = [&] {
    sample.MoveWindow(first);
    RestorePosition(sample, L"Dlg");
    return sample.GetWindowRect();
  };
  EXPECT_EQ(restored(), first);
  sample.MoveWindow(kept);
  KeepPosition(sample, L"Dlg");
  for (const wchar_t* key : {L"DlgPosLeft", L"DlgPosTop", L"DlgPosRight", L"DlgPosBottom"}) {
    EXPECT_EQ(restored(), kept);
    const int value = kdrxGetProfileInt(L"Settings", key, 0);
    kdrxWriteProfileInt(L"Settings", key, -10000);
    EXPECT_EQ(restored(), first);
    kdrxWriteProfileInt(L"Settings", key, value);
  }
}

}  // namespace
