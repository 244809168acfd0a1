#include "mlstyle/load/LibraryFolder.h"

#include <kdrx/rx.h>

CStdStr<wchar_t> LibraryFolder() {
  constexpr unsigned kCapacity = 4096;
  wchar_t root[kCapacity];
  kdrxRootFolder(root, kCapacity);
  return CStdStr<wchar_t>(root) + L"Support/";
}
