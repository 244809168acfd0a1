#include <cmath>
#include <cwchar>
#include <new>
#include <utility>

#include <kdrx/status.h>
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
