#include "mlstyle/manager/StyleManager.h"

#include <memory>

#include "mlstyle/manager/MlineStyleDialog.h"

void CreateStyleManager(StyleManager* manager) {
  // Shared since a function object has to be one that could be copied.
  *manager = [dialog = std::make_shared<CMlineStyleDialog>(nullptr)] { dialog->DoModal(); };
}
