#include <cmath>
#include <cwchar>
#include <new>
#include <utility>

#include "base/text.h"
#include "dxf/file_writer.h"

#include <kdrx/status.h>
#include <kdrx/text.h>
#include <kdrx/ut.h>

double kdutDistance(const double* p, const double* q) noexcept {
  if (!p || !q) return 0.0;
  const double x = q[0] - p[0], y = q[1] - p[1], z = q[2] - p[2];
  return std::sqrt(x * x + y * y + z * z);
}

int kdutNewString(const wchar_t* text, wchar_t** copy) noexcept {
  if (!copy) return kKdInputError;
  *copy = nullptr;
  if (!text) return kKdInputNormal;
  const std::size_t size = std::wcslen(text) + 1;
  wchar_t* const characters = new (std::nothrow) wchar_t[size];
  if (!characters) return kKdInputError;
  *copy = std::wmemcpy(characters, text, size);
  return kKdInputNormal;
}

void kdutDelString(wchar_t* text) noexcept {
  delete[] text;
}

void kdutRelRb(KdResbuf* chain) noexcept {
  while (chain) {
    KdResbuf* const item = std::exchange(chain, chain->next);
    if (item->restype == kKdResultString) kdutDelString(item->value.string);
    delete item;
  }
}

std::wstring kdutWideFromUtf8(const std::string& text) {
  return torva::wideFromUtf8(text);
}

std::string kdutUtf8FromWide(const std::wstring& text) {
  return torva::utf8FromWide(text);
}

bool kdutEqualsIgnoringCase(const wchar_t* a, const wchar_t* b) noexcept {
  return a && b ? torva::equalsIgnoringCase(std::wstring_view(a), std::wstring_view(b)) : a == b;
}

int kdutReplaceFile(const char* path, const char* content, std::size_t size) noexcept {
  if (!path || (!content && size > 0)) return kKdInputError;
  try {
    const auto written = torva::dxf::replaceFile(path, {std::string_view(content, size)}, torva::dxf::Backup::none,
                                                 torva::dxf::ClosedFolder::writeInPlace);
    return written ? kKdInputNormal : kKdInputError;
  } catch (...) {
    return kKdInputError;
  }
}
