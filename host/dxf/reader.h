#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "base/watch.h"
#include "dxf/file_content.h"
#include "dxf/finding.h"
#include "dxf/group.h"
#include "dxf/outline.h"
#include "dxf/record_index.h"
#include "dxf/text_codec.h"
#include "dxf/version.h"

namespace torva::dxf {

struct Section {
  std::string name;
  RecordId first = kNoRecord;  ///< The SECTION record.
  RecordId end = kNoRecord;    ///< Behind its last record, ENDSEC included where there is one.
};

/// A drawing after the one pass that opening makes over it.
struct OpenedDrawing {
  FileContent content;
  Form form = Form::text;
  BinaryCodes codes = BinaryCodes::twoBytes;
  LineEnds lineEnds = LineEnds::lf;
  Version version = Version::r12;
  Outline outline = {};
  HandleTable handles = {};
  std::vector<Section> sections = {};
  TextCodec codec{nullptr};
  /// Where the last group begins when it is not complete.
  std::optional<std::size_t> incompleteGroup = {};
  Handle handseed = 0;  ///< $HANDSEED; 0 when there is none.

  /// Bytes of an original record.
  std::string_view bytes(RecordId id) const;
  Groups groups(RecordId id) const { return Groups(bytes(id), form, codes, lineEnds); }
  /// The section of a name; null when there is none.
  const Section* section(std::string_view name) const;
};

/// Reads a drawing; errors and findings are those of DrawingFile::open(). `name` stands for the file in messages.
Result<OpenedDrawing> readDrawing(FileContent content, const std::string& name, DamagePolicy policy,
                                  std::vector<Finding>& findings, const Progress& progress = {});

}  // namespace torva::dxf
