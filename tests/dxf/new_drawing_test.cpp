#include <array>
#include <cstdio>
#include <gtest/gtest.h>

#include "dxf/drawing_file.h"
#include "dxf/sample_drawing.h"
#include "support/temporary_folder.h"

namespace torva::dxf {
namespace {

TEST(NewDrawing, OpensWithoutAnythingToMend) {
  const auto opened = test::openBytes(newDrawing());
  ASSERT_TRUE(opened.file) << opened.error->message();
  EXPECT_TRUE(opened.findings.empty());
  EXPECT_EQ(opened.file->version(), Version::r2018);
  EXPECT_EQ(opened.file->lineEnd(), "\r\n");
}

TEST(NewDrawing, EveryPointerLeadsToARecord) {
  const auto opened = test::openBytes(newDrawing());
  ASSERT_TRUE(opened.file);
  int pointers = 0;
  for (RecordId id = 0; id < opened.file->recordCount(); ++id) {
    for (const Group& group : opened.file->groups(id)) {
      if (group.code < 320 || group.code > 399 || valueKind(group.code) != ValueKind::handle || group.value == "0") continue;
      ++pointers;
      EXPECT_NE(opened.file->find(group.handle().value()), kNoRecord) << group.code << " " << group.value;
    }
  }
  EXPECT_GT(pointers, 30);
}

TEST(NewDrawing, AnIndependentReaderFindsNoFault) {
  const TemporaryFolder folder;
  const std::string path = folder.write("new.dxf", newDrawing());
  const std::string command = "/usr/bin/python3 -m ezdxf audit '" + path + "' 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::string output;
  std::array<char, 256> buffer;
  while (std::fgets(buffer.data(), buffer.size(), pipe) != nullptr) output += buffer.data();
  EXPECT_EQ(pclose(pipe), 0) << output;
  EXPECT_NE(output.find("No errors found"), std::string::npos) << output;
}

}  // namespace
}  // namespace torva::dxf
