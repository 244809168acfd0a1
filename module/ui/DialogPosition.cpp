#include "ui/DialogPosition.h"

#include <string>

#include <kdrx/app.h>

namespace {

constexpr const wchar_t* kSection = L"Settings";
constexpr int kNotKept = -10000;
constexpr unsigned kHostIcon = 128;

struct Edge {
  const wchar_t* key;
  int tagRECT::*value;
};
constexpr Edge kEdges[] = {
    {L"PosLeft", &tagRECT::left},
    {L"PosTop", &tagRECT::top},
    {L"PosRight", &tagRECT::right},
    {L"PosBottom", &tagRECT::bottom},
};

}  // namespace

void RestorePosition(CWnd& dialog, const wchar_t* prefix) {
  tagRECT kept;
  for (const Edge& edge : kEdges) {
    kept.*edge.value = kdrxGetProfileInt(kSection, (std::wstring(prefix) + edge.key).c_str(), kNotKept);
    if (kept.*edge.value == kNotKept) return;
  }
  dialog.MoveWindow(kept);
}

void KeepPosition(const CWnd& dialog, const wchar_t* prefix) {
  const tagRECT now = dialog.GetWindowRect();
  for (const Edge& edge : kEdges) {
    kdrxWriteProfileInt(kSection, (std::wstring(prefix) + edge.key).c_str(), now.*edge.value);
  }
}

void ShowHostIcon(CDialog& dialog) {
  dialog.SetIcon(L"TORVARes.dll", kHostIcon);
}
