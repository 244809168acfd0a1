#pragma once

#include <gtest/gtest.h>
#include <string>

#include "mledit/MlineEdit.h"
#include "module/mledit/drawing.h"

/// A drawing in whose command line tools are run as commands, each with an engine of its own.
class ToolRun : public ::testing::Test {
 protected:
  void addTool(const wchar_t* name, int (CMlineEdit::*tool)(KdModuleHandle)) {
    torva::command::Command command;
    command.group = L"TEST";
    command.globalName = command.localName = name;
    command.run = [tool] { (CMlineEdit().*tool)(nullptr); };
    ASSERT_EQ(m_drawing.commands().add(command), KdStatus::ok);
  }

  static std::string pick(torva::dxf::Handle handle, double x, double y) { return Drawing::pick(handle, x, y); }
  int flagsOf(torva::dxf::Handle handle) {
    int flags = 0;
    m_drawing.edit(handle, [&](KdDbMline& mline) { GetFlag(&mline, &flags); });
    return flags;
  }

  Drawing m_drawing;
};
