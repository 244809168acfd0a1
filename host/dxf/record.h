#pragma once

#include <cstdint>
#include <limits>

namespace torva::dxf {

/// Number of a record in its drawing file: 0, 1, 2... in the order of the file, then the new ones in the order of their
/// making. Never reused while the drawing is open.
using RecordId = std::uint32_t;
inline constexpr RecordId kNoRecord = std::numeric_limits<RecordId>::max();

using Handle = std::uint64_t;

/// What the value of group code 0 says. Names the host does not know get numbers from kFirstOther upward, one for each name
/// met in the file.
enum class RecordType : std::uint16_t {
  none,  // in front of the first group 0: comments
  section,
  endsec,
  table,
  endtab,
  block,
  endblk,
  eof,
  classRecord,
  vport,
  ltype,
  layer,
  style,
  view,
  ucs,
  appid,
  dimstyle,
  blockRecord,
  line,
  point,
  circle,
  arc,
  ellipse,
  lwpolyline,
  polyline,
  vertex,
  seqend,
  spline,
  mline,
  text,
  mtext,
  insert,
  attrib,
  attdef,
  solid,
  trace,
  face3d,
  hatch,
  dimension,
  leader,
  mleader,
  ray,
  xline,
  image,
  viewport,
  region,
  solid3d,
  body,
  wipeout,
  table_entity,
  dictionary,
  dictionaryWithDefault,
  dictionaryVariable,
  mlineStyle,
  layout,
  xrecord,
  plotSettings,
  kFirstOther,
};

}  // namespace torva::dxf
