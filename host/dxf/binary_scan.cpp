#include <algorithm>

#include "dxf/binary_group.h"
#include "dxf/outline.h"

namespace torva::dxf {

ScanEnd scanBinary(std::string_view content, std::size_t from, BinaryCodes codes, Outline& outline,
                   const Progress& progress) {
  RecordId record = kNoRecord;
  int awaited = kUnreadableCode;
  std::size_t stretchEnd = from;
  for (std::size_t at = from; at < content.size();) {
    if (at >= stretchEnd) {
      const double share = static_cast<double>(at) / static_cast<double>(content.size());
      if (!progress.goOn(share)) return {ScanEnd::Reason::cancelled, at};
      stretchEnd = at + kWatchedStretch;
    }
    const BinaryGroup group = readBinaryGroup(content.substr(at), codes);
    if (group.status == BinaryGroup::Status::unknownCode) return {ScanEnd::Reason::badGroupCode, at};
    if (group.status == BinaryGroup::Status::truncated) return {ScanEnd::Reason::incompleteGroup, at};
    const std::string_view value = content.substr(at + group.valueBegin, group.valueSize);
    if (group.code == 0) {
      record = outline.addRecord(at, value);
      const RecordType type = outline.index.type(record);
      if (type == RecordType::eof) return {ScanEnd::Reason::eofRecord, at};
      awaited = handleCode(type);
    } else if (group.code == awaited) {
      outline.readHandle(record, value);
      awaited = kUnreadableCode;
    }
    if (group.code == 999 && !outline.binaryComment) outline.binaryComment = at;
    const bool isText = valueKind(group.code) == ValueKind::text;
    if (isText && !outline.firstHighByte && std::any_of(value.begin(), value.end(), [](char c) { return c < 0; })) {
      outline.firstHighByte = at;
    }
    at += group.size;
  }
  return {ScanEnd::Reason::contentEnd, content.size()};
}

}  // namespace torva::dxf
