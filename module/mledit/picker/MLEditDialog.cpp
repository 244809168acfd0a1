#include "mledit/picker/MLEditDialog.h"

#include "mledit/picker/MLEditWidget.h"

namespace {

constexpr unsigned kTemplateId = 5758;
constexpr int kCloseId = 5771;
constexpr int kCloseNumber = 13;

struct PictureButton {
  int id;
  const wchar_t *up, *down, *focus;
};

/// By tool number less one. The numbers of the two vertex tools' controls are the other way round, and the tees are "TREE":
/// so it has always been.
constexpr PictureButton kButtons[] = {
    {5759, L"IDB_CLOSE_CROSS_UP", L"IDB_CLOSE_CROSS_DOWN", L"IDB_CLOSE_CROSS_FOCUS"},
    {5760, L"IDB_OPEN_CROSS_UP", L"IDB_OPEN_CROSS_DOWN", L"IDB_OPEN_CROSS_FOCUS"},
    {5761, L"IDB_MERGED_CROSS_UP", L"IDB_MERGED_CROSS_DOWN", L"IDB_MERGED_CROSS_FOCUS"},
    {5762, L"IDB_CLOSE_TREE_UP", L"IDB_CLOSE_TREE_DOWN", L"IDB_CLOSE_TREE_FOCUS"},
    {5763, L"IDB_OPEN_TREE_UP", L"IDB_OPEN_TREE_DOWN", L"IDB_OPEN_TREE_FOCUS"},
    {5764, L"IDB_MERGED_TREE_UP", L"IDB_MERGED_TREE_DOWN", L"IDB_MERGED_TREE_FOCUS"},
    {5765, L"IDB_CORNER_JOINT_UP", L"IDB_CORNER_JOINT_DOWN", L"IDB_CORNER_JOINT_FOCUS"},
    {5767, L"IDB_ADD_VERTEX_UP", L"IDB_ADD_VERTEX_DOWN", L"IDB_ADD_VERTEX_FOCUS"},
    {5766, L"IDB_DELETE_VERTEX_UP", L"IDB_DELETE_VERTEX_DOWN", L"IDB_DELETE_VERTEX_FOCUS"},
    {5768, L"IDB_CUT_SINGLE_UP", L"IDB_CUT_SINGLE_DOWN", L"IDB_CUT_SINGLE_FOCUS"},
    {5769, L"IDB_CUT_ALL_UP", L"IDB_CUT_ALL_DOWN", L"IDB_CUT_ALL_FOCUS"},
    {5770, L"IDB_WELD_ALL_UP", L"IDB_WELD_ALL_DOWN", L"IDB_WELD_ALL_FOCUS"},
};

}  // namespace

CMLEditDialog::CMLEditDialog(CWnd* parent) : CDialog(kTemplateId) {
  for (int i = 0; i < kPictureCount; ++i) {
    const PictureButton& button = kButtons[i];
    // The disabled picture is the one with the focus, deliberately. A picture that is missing leaves the layout's own.
    m_pictures[i].LoadBitmaps(button.up, button.down, button.focus, button.focus);
  }
  SetDialogWidget(new KVUI::CMLEditDialog(this, parent ? parent->GetWidget() : nullptr));
}

bool CMLEditDialog::OnInitDialog() {
  for (int i = 0; i < kPictureCount; ++i) m_pictures[i].SubclassDlgItem(static_cast<unsigned>(kButtons[i].id), this);
  return CDialog::OnInitDialog();
}

void CMLEditDialog::DoDataExchange(CDataExchange* exchange) {
  CDialog::DoDataExchange(exchange);
  for (int i = 0; i < kPictureCount; ++i) DDX_Control(exchange, kButtons[i].id, m_pictures[i]);
  DDX_Control(exchange, kCloseId, m_close);
}

void CMLEditDialog::Choose(int tool) {
  m_tool = tool;
  CDialog::OnOK();
}

void CMLEditDialog::OnClosedCross() {
  Choose(1);
}

void CMLEditDialog::OnOpenCross() {
  Choose(2);
}

void CMLEditDialog::OnMergedCross() {
  Choose(3);
}

void CMLEditDialog::OnClosedTee() {
  Choose(4);
}

void CMLEditDialog::OnOpenTee() {
  Choose(5);
}

void CMLEditDialog::OnMergedTee() {
  Choose(6);
}

void CMLEditDialog::OnCornerJoint() {
  Choose(7);
}

void CMLEditDialog::OnAddVertex() {
  Choose(8);
}

void CMLEditDialog::OnDeleteVertex() {
  Choose(9);
}

void CMLEditDialog::OnCutSingle() {
  Choose(10);
}

void CMLEditDialog::OnCutAll() {
  Choose(11);
}

void CMLEditDialog::OnWeldAll() {
  Choose(12);
}

void CMLEditDialog::OnClose() {
  Choose(kCloseNumber);
}
