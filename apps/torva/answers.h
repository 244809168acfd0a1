#pragma once

#include <string>

#include <kdrx/ge.h>

/// A point as it is typed: user coordinates that read back as the same numbers.
std::wstring answerText(const KdGePoint3d& pointUcs);
/// A text as it is typed where a blank would end an answer: in quotes.
std::wstring quoted(const std::wstring& text);
