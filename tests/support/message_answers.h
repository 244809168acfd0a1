#pragma once

#include <string>
#include <vector>

#include "dialog/message_service.h"

#include <kdrx/ui.h>

/// Answers message boxes with one button and keeps what they said.
class MessageAnswers final : public torva::dialog::MessageService {
 public:
  int show(QWidget*, const std::wstring& text, const std::wstring& title, unsigned type) override {
    heard.push_back(title + L'|' + text + L'|' + std::to_wstring(type));
    return answer;
  }
  void beep() override { heard.push_back(L"beep"); }

  int answer = IDYES;
  std::vector<std::wstring> heard;
};
