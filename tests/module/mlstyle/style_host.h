#pragma once

#include "module/mlstyle/style_drawing.h"

/// A host with an empty drawing, whose root folder holds what is installed there, and its styles.
class StyleHost : public testing::Test, protected StyleDrawing {
 protected:
  StyleHost() {
    std::filesystem::create_directory(folder.path("bin"));
    std::filesystem::copy(TORVA_SOURCE_DIR "/support", folder.path(), std::filesystem::copy_options::recursive);
    startHost(torva::runtime::DialogUse::none, folder.path("bin"));
  }
  ~StyleHost() override { EXPECT_TRUE(drawing().openObjects().empty()) << "an object is left open"; }

  void run(const std::string& script) { EXPECT_EQ(HostDriver::run(script), torva::command::Fault::none); }
  std::wstring path(const char* name) const { return kdutWideFromUtf8(folder.path(name)); }
};
