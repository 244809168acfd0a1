#pragma once

#include <string>

#include <kdrx/cm_color.h>
#include <kdrx/db_object.h>

/// A multiline style: an ordered list of elements, fill, joints and caps.
/// Elements are kept in the order from the largest to the smallest offset when they are stored in a drawing.
class KDRX_API KdDbMlineStyle : public KdDbObject {
 public:
  /// An empty style outside any database; see initMlineStyle().
  KdDbMlineStyle();
  ~KdDbMlineStyle() override;

  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

  /// Back to an unnamed style without elements, flags off, both angles 90 degrees, fill by layer.
  /// Does nothing to a style that may not be changed.
  void initMlineStyle();

  const std::wstring& name() const;
  KdStatus setName(const std::wstring& name);
  const std::wstring& description() const;
  KdStatus setDescription(const std::wstring& description);

  bool filled() const;
  KdStatus setFilled(bool value);
  bool showMiters() const;
  KdStatus setShowMiters(bool value);
  bool startSquareCap() const;
  KdStatus setStartSquareCap(bool value);
  bool startInnerArcs() const;
  KdStatus setStartInnerArcs(bool value);
  bool startRoundCap() const;
  KdStatus setStartRoundCap(bool value);
  bool endSquareCap() const;
  KdStatus setEndSquareCap(bool value);
  bool endInnerArcs() const;
  KdStatus setEndInnerArcs(bool value);
  bool endRoundCap() const;
  KdStatus setEndRoundCap(bool value);

  const KdCmColor& fillColor() const;
  KdStatus setFillColor(const KdCmColor& color);

  /// Angle of the caps against the segment, in radians (stored in drawings in degrees; 90 degrees is square).
  double startAngle() const;
  KdStatus setStartAngle(double angleRad);
  double endAngle() const;
  KdStatus setEndAngle(double angleRad);

  int numElements() const;
  /// @param linetype null when the linetype's name is not in the drawing; by layer is a linetype of most drawings too
  /// @return invalidIndex; the outputs are unchanged then
  KdStatus getElementAt(int index, double& offset, KdCmColor& color, KdDbObjectId& linetype) const;
  /// The name of an element's linetype as the style has it, also one that is not in the drawing.
  /// @return invalidIndex; `name` is unchanged then
  KdStatus getLinetypeNameAt(int index, std::wstring& name) const;
  /// Replaces an element. A null linetype is by layer, but leaves a name alone that is not in the drawing.
  /// Elements of a style in a drawing are sorted, largest offset first, when the style is closed.
  /// @return notOpen, invalidIndex, invalidInput (offset no number), unknownObjectId (no linetype of the drawing)
  KdStatus setElement(int index, double offset, const KdCmColor& color, KdDbObjectId linetype);
  /// Adds an element at the end.
  /// @param[out] index its position
  /// @param checkReferences without effect: a linetype that is none of the drawing is refused always
  /// @return notOpen, invalidInput, unknownObjectId; nothing is changed then
  KdStatus addElement(int& index, double offset, const KdCmColor& color, KdDbObjectId linetype, bool checkReferences = true);
  /// @return notOpen, invalidIndex
  KdStatus removeElementAt(int index);

  KdStatus copyFrom(const KdDbObject* source) override;
  /// The same with or without the name.
  KdStatus set(const KdDbMlineStyle& source, bool includesName = true);
};
