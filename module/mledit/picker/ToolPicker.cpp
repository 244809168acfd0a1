#include "mledit/picker/ToolPicker.h"

#include <memory>

#include "mledit/picker/MLEditDialog.h"

void CreateToolPicker(ToolPicker* picker) {
  // Shared since a function object has to be one that could be copied.
  *picker = [dialog = std::make_shared<CMLEditDialog>(nullptr)] {
    dialog->DoModal();
    return dialog->GetTool();
  };
}
