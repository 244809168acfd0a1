#pragma once

#include <memory>
#include <vector>

#include "mledit/MlineSegment.h"

#include <kdrx/db_mline.h>
#include <kdrx/text.h>

struct CMlineTool;

/// The multiline editing engine: one object for one run of one tool.
///
/// An element line of a multiline is called a Mongline here. Points are arrays of 3 doubles in world coordinates unless said
/// otherwise. Element parameter lists: entry 0 is the offset along the miter; then start, stop, start... of the drawn
/// stretches, as distances along the segment.
///
/// Nothing outside a list is ever read: a pick that does not fit the multiline at hand makes no edit. The same holds for
/// element lines that have no parameters on a segment concerned.
class CMlineEdit {
 public:
  /// A candidate for the crossing of two multilines.
  struct xPtList {
    double point[3];
    int firstSegment;
    int secondSegment;
  };

  CMlineEdit();
  ~CMlineEdit();
  CMlineEdit(const CMlineEdit&) = delete;
  CMlineEdit& operator=(const CMlineEdit&) = delete;

  // The tools. Each runs at the command line until the user ends it, with its prompts from `module`, and returns the status
  // of the last input call.
  /// Opens the first multiline where it crosses the second.
  int cmd_mledit_ClosedCross(KdModuleHandle module);
  /// The same, and opens the outer elements of the second across the first.
  int cmd_mledit_OpenCross(KdModuleHandle module);
  /// Opens the elements of both so that those of equal depth join.
  int cmd_mledit_MergedCross(KdModuleHandle module);
  // The tee tools bear "Tree" in their names; the spelling is our own and stays. They end the first multiline, the stem, at
  // the side of the second, the bar, and suppress the stem's caps there. A closed stem is refused.
  /// Ends each element of the stem at the outer element of the bar that is nearer to it.
  int cmd_mledit_ClosedTree(KdModuleHandle module);
  /// Ends the stem at the bar's near outer element, and opens that across the stem.
  int cmd_mledit_OpenTree(KdModuleHandle module);
  /// Ends the elements of the stem at those of equal depth in the bar, and opens these so that they join.
  int cmd_mledit_MergedTree(KdModuleHandle module);
  /// Cuts back or extends two multilines, or both ends of one, to where the picked segments meet, and joins their elements
  /// there. Vertices beyond the corner go, caps at it are suppressed. Closed multilines are refused.
  int cmd_mledit_CornerJoint(KdModuleHandle module);
  int cmd_mledit_AddVertex(KdModuleHandle module);
  int cmd_mledit_DeleteVertex(KdModuleHandle module);
  /// Cuts a gap into the picked element line, between two points.
  int cmd_mledit_CutSingle(KdModuleHandle module);
  /// Cuts a gap into all element lines, between two points.
  int cmd_mledit_CutAll(KdModuleHandle module);
  int cmd_mledit_WeldAll(KdModuleHandle module);

  // Picks.

  /// Resolves the pick `pickPoint` on entity `name` into `seg`: opens the multiline for read (shared with `other`, the first
  /// pick, when that is the same entity), rebuilds its point table and finds the first segment, and of it the first element,
  /// whose drawn line passes the pick within the tolerance. Where there is none the former values stay. `name` is cleared.
  void mlineEditInitialize(CMlineSegment* seg, long* name, CMlineSegment* other);
  /// The same for the weld tool: a pick in a gap counts too, a segment includes both its ends, and a foot beyond an end but
  /// within the tolerance becomes that end. Where there is no such line, `seg` belongs to no segment and makes no edit.
  void mlineEditInitializeForWeldAll(CMlineSegment* seg, long* name, CMlineSegment* other);
  /// Rebuilds a point table: (*ptList)[e][v] is where element line e passes vertex v. `*count` is its number of rows. A null
  /// multiline or a count below 1 gives none.
  void ptListInitialize(KdDbMline* mline, int numVertices, int numElements, double (***ptList)[3], int* count);
  /// The pick tolerance in display units: the half diagonal of the pick box. Unchanged without a view.
  void set_SpaceBetween(double* tol);
  /// After the vertices changed: refreshes counts and point table, and finds `origSegment` again from `origPoint`.
  void correctMapping(CMlineSegment* seg);

  // Undo copies.

  /// dst->copyFrom(src). @return true when both are given and the copy was made
  bool MlineCopy(KdDbMline* dst, KdDbMline* src);
  /// Copies onto the entity `name`, opened for write for it.
  bool MlineCopy(long* name, KdDbMline* copy);

  // Crossings.

  /// Finds the segments at which two multilines meet, the picked ones first, else those nearest to the picks. Both indices
  /// have to be preset; they and the records' segments change only where a pair is chosen. The closing segment of `b` is
  /// searched, that of `a` is not.
  /// @param[out] point the crossing of the two axes; may be null
  /// @param touching true: a crossing on either segment counts; false: one within both, or on the second only, or at an
  ///   end of the first
  bool getSegmentNumbers(CMlineSegment* a, CMlineSegment* b, int* segA, int* segB, double* point, bool touching);
  /// The crossing of two axis segments by linexline3d().
  /// @return false where the lines do not meet, and for an index without a following vertex: `out` is unchanged then
  bool getXPoint(KdDbMline* a, int segA, KdDbMline* b, int segB, double* out);
  /// Direction from a to b in the plan, coordinates compared with 1e-10: 0 same place, 1 (+x), 2 (+x +y), 3 (+y),
  /// 4 (-x +y); opposite directions have opposite codes. -5001 for points that are no numbers.
  static int PositionConnection(const double* a, const double* b);
  // The same made safe against the rounding of computed points, which at coordinates of 1e6 is more than 1e-10.

  /// Whether two points are one place in the plan: within 1e-10, or the rounding of their coordinates.
  static bool isSamePlace(const double* a, const double* b);
  /// Whether the way from a to b leads on to c: PositionConnection() tells the same for both, or the points lie in line, up
  /// to rounding, with b between the others.
  static bool leadsOn(const double* a, const double* b, const double* c);
  /// Whether b and c lie in the same direction from a in the plan: within 1e-10 radians, or the rounding of the coordinates.
  /// False where one of them is a.
  static bool isSameDirection(const double* a, const double* b, const double* c);
  /// Carries the pick over, square to its segment: with an element index onto that element line (into the `orig` fields;
  /// clamped to the segment, `origSegment` unchanged), with -1 onto the axis (into `out`).
  /// @return false, nothing changed, when the pick does not fit the multiline at hand
  bool mappingToSpecifyMongline(CMlineSegment* seg, int element, double* out = nullptr);
  /// Carries the resolved pick over onto an element line for the weld tool: to the nearest point of that line on the picked
  /// segment, ends included, into the `orig` fields, `origSegment` too. `point` may be null and receives that point.
  /// @return false, nothing changed, when the pick does not fit the multiline at hand
  bool mappingToSpecifyMonglineForWeldAll(CMlineSegment* seg, int element, double* point);
  /// Fills the crossing table: (*table)[i][j] is where element line i of `a` on segment segA crosses element line j of `b`
  /// on segB (closing segment included). Points that do not exist are no numbers, so that no edit uses them.
  /// @return true when at least one pair crosses; false also when element 0 of both runs in the same direction (1e-10, the
  ///   opposite direction is not caught here) or a segment does not exist: the table is empty then
  bool set_PTCrossing(const CMlineSegment* a, int segA, const CMlineSegment* b, int segB, double (***table)[3], int* rows);
  /// Picks from the crossing table where an element ends in a corner. Outer elements meet outer ones of the other multiline,
  /// inner ones an inner one where it has any.
  /// @param ownCount, otherCount elements of the two multilines, as the table has them
  /// @param a true: the elements of both come in the same order; false: element 0 meets the last one of the other
  /// @param b from which end an inner element counts the other's, where these are more, or two: true from the first
  /// @param second whether `element` is one of the second multiline
  /// @return false, `out` unchanged, for an element outside and where the two do not cross
  bool getCornerPoint(int element, int ownCount, int otherCount, double* out, bool a, bool b, bool second);

  // Element parameters and flags.

  /// Loads the list of an element at a vertex into `paramList`.
  void setRealVector(KdDbMline* mline, int vertex, int element);
  /// Removes what is drawn of an element line between P on segment segP and Q on segment segQ, in either order. Does nothing
  /// when the points are equal or one does not lie between the ends of its segment, seen in the plan.
  void Cut_Mongline(CMlineSegment* seg, int element, double* P, int segP, double* Q, int segQ);
  /// Draws an element line whole between the positions that both records have on it (their `orig` fields), in either order.
  /// Does nothing when the points are equal. A position on a vertex is moved to the end of the segment that lies between the
  /// two, in the record. Breaks within the pick tolerance of a position in a gap belong to it, so a gap shorter than the
  /// tolerance is not seen as one. On one segment a weld from a drawn stretch into a gap leaves the rest of it inverted: our
  /// own decision.
  void Weld_Mongline(CMlineSegment* first, CMlineSegment* second);
  /// Makes the element line end at X (`keepBefore`) or start there, on the segment that starts at `vertex`. X lies on the
  /// line; ahead and behind are judged along the segment's axis. Does nothing where nothing of the element is drawn.
  void change41GroupNumber(CMlineSegment* seg, int element, int vertex, const double* X, bool keepBefore);
  /// Changes the flag word: 1 sets a bit, 0 clears it, anything else leaves it. Clearing one also drops every bit above 8:
  /// our own decision, the word has no such bits.
  void change71GroupNumber(KdDbMline* mline, int endCaps, int startCaps, int closed, int hasVertex);

  // Vertices. The records' tables are those of before; correctMapping() brings one up to date.

  /// Inserts a vertex where the pick, carried square onto the axis, lies on it. On the split segment the gaps before the
  /// vertex stay, beyond it the elements are drawn whole: our own decision. Does nothing where an element line passes a
  /// vertex at that very point.
  void add_OneVertex(CMlineSegment* seg);
  /// The vertex nearer to the pick, measured along element 0; of equals the start of the segment. -1 when the pick does not
  /// fit the multiline at hand.
  int getDeleteVertexNumver(CMlineSegment* seg);
  /// Removes a vertex. The joined segment is drawn whole on every element: our own decision. Does nothing for an index
  /// outside, and to an open multiline of 2 vertices or a closed one of 3.
  void delete_OneVertex(CMlineSegment* seg, int vertex);
  /// Removes `count` vertices from `first` on, which reach to an end of an open multiline: as delete_OneVertex() one by one,
  /// at the cost of one.
  void removeEndVertices(CMlineSegment* seg, int first, int count);
  /// Moves an end vertex of an open multiline along its segment to the foot of `point` on the segment's axis line. Element
  /// lines, their gaps and those of the fill stay where they are in the drawing; the line's end goes along. The new miter is
  /// square to the axis, or the neighbour's where a square one would turn an element round or leave less than half of it.
  /// Does nothing for any other vertex.
  /// @param ptList the multiline's point table as it stands, a row for each element; see ptListInitialize()
  void changePTPosition(KdDbMline* mline, int vertex, const double* point, double (**ptList)[3]);

  // Signed distances.

  /// Distance of two points, negative when `ref` (may be null) lies counter-clockwise of a seen from b.
  void Distance_PointToPoint(const double* a, const double* b, double* dist, const double* ref);
  /// Distance of p from the endless line a-b, positive on the left of a -> b, seen from the side to which the normal's z
  /// points. The side is judged from the foot towards b, so beyond b the signs swap. `dist` and `foot` may be null.
  void Distance_PointToLine(const double* p, const double* a, const double* b, const double* normal, double* dist,
                            double* foot);

  int retCode;              ///< Status of the last input call; what a tool returns.
  wchar_t promptBuf[2049];  ///< The prompt or keyword list loaded last; also receives the keyword typed.
  double pickPoint[3];      ///< The last pick, user coordinates.
  double spaceBetween;      ///< Pick tolerance in display units.
  long pickName[2];
  CMlineSegment segFirst;
  CMlineSegment segSecond;
  std::vector<double> paramList;          ///< The list being edited.
  int spareIndex;                         ///< Read by no tool; kept, our own decision.
  std::unique_ptr<KdDbMline> undoFirst;   ///< The first multiline before the last edit; null when there is nothing to undo.
  std::unique_ptr<KdDbMline> undoSecond;  ///< The second one, for tools that change both.
  double (**ptCrossing)[3];               ///< See set_PTCrossing().
  int ptCrossingCount;

 private:
  int runTool(KdModuleHandle module, const CMlineTool& tool);
  bool pickFirst(const CMlineTool& tool);
  bool pickSecond(const CMlineTool& tool);
  void undoLastEdit();
  void restore(CMlineSegment& seg, std::unique_ptr<KdDbMline>& copy);
  void renewUndoCopies(const CMlineTool& tool);
  void discardUndoCopies();
  void closePicked();
  void refuse(unsigned textId);

  bool isMlinePicked();
  bool isOpenMlinePicked();
  void closedCross();
  void openCross();
  void mergedCross();
  bool findSegments(double* axisCrossing, bool touching);
  bool tabulateCrossings();
  bool findCrossing();
  void openFirst();
  void cutFirst(int element, int from, int to);
  void cutSecond(int element, int from, int to);

  class CornerJoint;
  void cornerJoint();

  struct StemEnd;
  void closedTee();
  void openTee();
  void mergedTee();
  bool joinStem(StemEnd& end);
  int nearColumn(const StemEnd& end, int element) const;
  void endStem(const StemEnd& end, int element, int column);
  void cutBar(int element, int from, int to);

  bool isPickedAgain();
  void cutSingle();
  void cutAll();
  void cutBetweenPicks();
  bool isAnythingPicked();
  void weldAll();
  void addVertex();
  void deleteVertex();

  void openPicked(CMlineSegment* seg, long* name, CMlineSegment* other);
  void refreshPoints(CMlineSegment* seg);
  bool resolveWeldPick(CMlineSegment* seg, const double* pick);
  bool resolvePick(CMlineSegment* seg, const double* pick);
  bool isDrawnAt(KdDbMline* mline, int vertex, int element, double distance);

  bool writeRealVector(KdDbMline* mline, int vertex, int element);
  void endAt(const double* X, const double* A, const KdGeVector3d& axis);
  void startAt(const double* X, const double* A, const double* B, const KdGeVector3d& axis);

  KdModuleHandle m_texts = nullptr;  // of the running tool
};

/// Whether the position of a record on its element line (its `orig` fields) lies in a gap or at the start of one
/// (`atStart`), or on a drawn stretch or at the start of one (otherwise). Breaks within `tol` of the position count as
/// passed. False without a multiline.
bool IsPositionCutPt(CMlineSegment* seg, bool atStart, double tol);

/// True when the lines ab and cd are one line, within the host's global tolerance.
bool isCollinear(const KdGePoint3d& a, const KdGePoint3d& b, const KdGePoint3d& c, const KdGePoint3d& d);
