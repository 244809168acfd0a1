#pragma once

class QWidget;
namespace torva::command {
class Editor;
}

/// Asks for a printer and prints what the view shows, as large as the page allows.
void printView(QWidget& parent, torva::command::Editor& editor);
