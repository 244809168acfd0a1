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
  struct Case {
    const wchar_t* headings;
    std::vector<int> widths;
  };
  const Case cases[] = {{L"", {}},
                        {L"No comma", {}},
                        {L"Offset,70;Linetype,80;Color,90;", {70, 80, 90}},
                        {L"Offset,70;Color,90", {70, 90}},
                        {L"Offset,70;rest", {70}}};
  for (const Case& c : cases) {
    Sample sample;
    EXPECT_TRUE(sample.table.SetHeadings(CStdStr<wchar_t>(c.headings)));
    const auto& table = dynamic_cast<QTableWidget&>(*sample.table.GetWidget());
    ASSERT_EQ(table.columnCount(), static_cast<int>(c.widths.size()));
    for (int i = 0; i < table.columnCount(); ++i) EXPECT_EQ(table.columnWidth(i), c.widths[static_cast<std::size_t>(i)]);
    if (!c.widths.empty()) {
      EXPECT_EQ(table.horizontalHeaderItem(0)->text(), "Offset");
    }
  }
  CSortListCtrl unbound;
  EXPECT_FALSE(unbound.SetHeadings(CStdStr<wchar_t>(L"Offset,70")));
}

TEST_F(UiTest, RowsAreSortedByTheNumbersOfTheClickedColumn) {
  Sample sample;
  EXPECT_EQ(sample.table.AddItem(L"10"), -1) << "no column takes it";
  EXPECT_EQ(sample.table.GetItemCount(), 0);
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
    const wchar_t *offsets, *counts;
    bool isAscending;
  };
  const Click clicks[] = {{0, L"-1 0.25 9 10 ", L"1.5  2x b ", true},
                          {0, L"10 9 0.25 -1 ", L"b 2x  1.5 ", false},
                          {1, L"10 0.25 -1 9 ", L"b  1.5 2x ", true},
                          {0, L"-1 0.25 9 10 ", L"1.5  2x b ", true}};
  for (const Click& click : clicks) {
    emit header->sectionClicked(click.column);
    EXPECT_EQ(sample.column(0), click.offsets);
    EXPECT_EQ(sample.column(1), click.counts);
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
  EXPECT_TRUE(kdrxGetProfileBinary(L"ListCtrls", L"1046").empty());
  sample.table.OnDestroy();
  EXPECT_EQ(sample.table.GetItemData(1), 0u);
}

TEST(SortListTexts, NumbersAndDatesAreToldAndCompared) {
  for (const auto& [text, isNumber, isDate] : {std::tuple{L"", true, false},
                                               {L"0129", true, false},
                                               {L"1.5", false, false},
                                               {L"24/12/2025", false, true},
                                               {L"24/12/202", false, false},
                                               {L"24/12/20255", false, false},
                                               {L"24-12-2025", false, false}}) {
    EXPECT_EQ(IsNumber(text), isNumber);
    EXPECT_EQ(IsDate(text), isDate);
  }
  for (const auto& [a, b, order] :
       {std::tuple{L"10", L"9", 1}, {L" -1.5e1x", L"-14", -1}, {L"text", L"0", 0}, {L"nan", L"1", -1}, {L"+2", L"1,9", 1}}) {
    EXPECT_EQ(NumberCompare(a, b), order);
  }
  for (const auto& [a, b, order] : {std::tuple{L"31/01/2024", L"01/01/2025", -1},
                                    {L"01/02/2025", L"31/01/2025", 1},
                                    {L"02/01/2025", L"01/01/2025", 1},
                                    {L"01/01/2025", L"01/01/2025", 0}}) {
    EXPECT_EQ(DateCompare(a, b), order);
  }
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
      {{90, 40, 300, 100}, {100, 50, 400, 250}},   // moved and smaller
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
  constexpr const wchar_t* kKeys[] = {L"DlgPosLeft", L"DlgPosTop", L"DlgPosRight", L"DlgPosBottom"};
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
  EXPECT_EQ(restored(), kept);
  EXPECT_EQ(kdrxGetProfileInt(L"Settings", kKeys[3], 0), 330);
  for (const wchar_t* key : kKeys) {
    const int value = kdrxGetProfileInt(L"Settings", key, 0);
    kdrxWriteProfileInt(L"Settings", key, -10000);
    EXPECT_EQ(restored(), first);
    kdrxWriteProfileInt(L"Settings", key, value);
  }
  EXPECT_EQ(restored(), kept);
}

}  // namespace
