#include <algorithm>
#include <cmath>

#include "base/text.h"
#include "db/database.h"
#include "db/mline_style_imp.h"
#include "db/mline_styles.h"
#include "db/record_groups.h"

#include <kdrx/db_mline_style.h>

namespace torva::db {

void MlineStyleImp::read() {
  m_data = readMlineStyle(file(), file().groups(record()));
  m_nameInMlines = m_data.name;
  m_areElementsChanged = false;
}

dxf::RecordText MlineStyleImp::write() const {
  return writeMlineStyle(file(), file().bytes(record()), m_data);
}

MlineStyleData& MlineStyleImp::change() {
  touch();
  return m_data;
}

MlineStyleElements& MlineStyleImp::changeElements() {
  m_areElementsChanged = true;
  return change().elements;
}

void MlineStyleImp::settle() {
  const std::wstring former = std::exchange(m_nameInMlines, m_data.name);
  if (former != m_data.name) renameInMlines(*database(), record(), former, m_data.name);
  if (!std::exchange(m_areElementsChanged, false)) return;
  std::ranges::stable_sort(m_data.elements, std::ranges::greater(), &MlineStyleElement::offset);
}

std::wstring MlineStyleImp::linetypeName(KdDbObjectId linetype) const {
  const Database* database = context();
  const dxf::RecordId record = database ? database->recordOf(linetype) : dxf::kNoRecord;
  if (record == dxf::kNoRecord || database->file().type(record) != dxf::RecordType::ltype) return {};
  return firstText(database->file(), record, 2);
}

KdDbObjectId MlineStyleImp::linetypeId(const MlineStyleElement& element) const {
  const Database* database = context();
  if (!database) return {};
  return database->idOf(database->findSymbol(dxf::RecordType::ltype, element.linetype));
}

}  // namespace torva::db

using torva::equalsIgnoringCase;
using torva::db::MlineStyleData;
using torva::db::MlineStyleElement;
using torva::db::MlineStyleImp;

namespace {

MlineStyleImp& impOf(const KdDbMlineStyle& style) {
  return static_cast<MlineStyleImp&>(*KdDbSystemInternals::getImpObject(&style));
}

template <class Member, class Value>
KdStatus setMember(const KdDbMlineStyle& style, Member member, const Value& value) {
  MlineStyleImp& imp = impOf(style);
  if (!imp.isWritable()) return KdStatus::notOpen;
  imp.change().*member = value;
  return KdStatus::ok;
}

KdStatus setFlag(const KdDbMlineStyle& style, torva::db::MlineStyleFlag flag, bool value) {
  const int flags = impOf(style).data().flags;
  return setMember(style, &MlineStyleData::flags, value ? flags | flag : flags & ~flag);
}

KdStatus setAngle(const KdDbMlineStyle& style, double MlineStyleData::*angle, double valueRad) {
  return std::isfinite(valueRad) ? setMember(style, angle, valueRad) : KdStatus::invalidInput;
}

bool isElement(const KdDbMlineStyle& style, int index) {
  return index >= 0 && index < style.numElements();
}

/// Gives an element its linetype. A null id leaves one alone that is by layer, or that has no id as the drawing lacks it.
KdStatus setLinetype(const MlineStyleImp& imp, MlineStyleElement& element, KdDbObjectId linetype) {
  if (linetype.isNull()) {
    const std::wstring byLayer = MlineStyleElement().linetype;
    if (!imp.linetypeId(element).isNull() && !equalsIgnoringCase(element.linetype, byLayer)) element.linetype = byLayer;
    return KdStatus::ok;
  }
  const std::wstring name = imp.linetypeName(linetype);
  if (name.empty()) return KdStatus::unknownObjectId;
  if (!equalsIgnoringCase(name, element.linetype)) element.linetype = name;
  return KdStatus::ok;
}

}  // namespace

KdDbMlineStyle::KdDbMlineStyle() : KdDbObject(std::make_unique<MlineStyleImp>()) {}
KdDbMlineStyle::~KdDbMlineStyle() = default;

void KdDbMlineStyle::initMlineStyle() {
  MlineStyleImp& imp = impOf(*this);
  if (!imp.isWritable()) return;
  imp.changeElements().clear();
  imp.change() = {};
}

const std::wstring& KdDbMlineStyle::name() const {
  return impOf(*this).data().name;
}
KdStatus KdDbMlineStyle::setName(const std::wstring& name) {
  return setMember(*this, &MlineStyleData::name, name);
}
const std::wstring& KdDbMlineStyle::description() const {
  return impOf(*this).data().description;
}
KdStatus KdDbMlineStyle::setDescription(const std::wstring& description) {
  return setMember(*this, &MlineStyleData::description, description);
}

bool KdDbMlineStyle::filled() const {
  return impOf(*this).data().has(torva::db::kStyleFilled);
}
KdStatus KdDbMlineStyle::setFilled(bool value) {
  return setFlag(*this, torva::db::kStyleFilled, value);
}
bool KdDbMlineStyle::showMiters() const {
  return impOf(*this).data().has(torva::db::kStyleShowMiters);
}
KdStatus KdDbMlineStyle::setShowMiters(bool value) {
  return setFlag(*this, torva::db::kStyleShowMiters, value);
}
bool KdDbMlineStyle::startSquareCap() const {
  return impOf(*this).data().has(torva::db::kStyleStartSquareCap);
}
KdStatus KdDbMlineStyle::setStartSquareCap(bool value) {
  return setFlag(*this, torva::db::kStyleStartSquareCap, value);
}
bool KdDbMlineStyle::startInnerArcs() const {
  return impOf(*this).data().has(torva::db::kStyleStartInnerArcs);
}
KdStatus KdDbMlineStyle::setStartInnerArcs(bool value) {
  return setFlag(*this, torva::db::kStyleStartInnerArcs, value);
}
bool KdDbMlineStyle::startRoundCap() const {
  return impOf(*this).data().has(torva::db::kStyleStartRoundCap);
}
KdStatus KdDbMlineStyle::setStartRoundCap(bool value) {
  return setFlag(*this, torva::db::kStyleStartRoundCap, value);
}
bool KdDbMlineStyle::endSquareCap() const {
  return impOf(*this).data().has(torva::db::kStyleEndSquareCap);
}
KdStatus KdDbMlineStyle::setEndSquareCap(bool value) {
  return setFlag(*this, torva::db::kStyleEndSquareCap, value);
}
bool KdDbMlineStyle::endInnerArcs() const {
  return impOf(*this).data().has(torva::db::kStyleEndInnerArcs);
}
KdStatus KdDbMlineStyle::setEndInnerArcs(bool value) {
  return setFlag(*this, torva::db::kStyleEndInnerArcs, value);
}
bool KdDbMlineStyle::endRoundCap() const {
  return impOf(*this).data().has(torva::db::kStyleEndRoundCap);
}
KdStatus KdDbMlineStyle::setEndRoundCap(bool value) {
  return setFlag(*this, torva::db::kStyleEndRoundCap, value);
}

const KdCmColor& KdDbMlineStyle::fillColor() const {
  return impOf(*this).data().fillColor;
}
KdStatus KdDbMlineStyle::setFillColor(const KdCmColor& color) {
  return setMember(*this, &MlineStyleData::fillColor, color);
}

double KdDbMlineStyle::startAngle() const {
  return impOf(*this).data().startAngleRad;
}
KdStatus KdDbMlineStyle::setStartAngle(double angleRad) {
  return setAngle(*this, &MlineStyleData::startAngleRad, angleRad);
}
double KdDbMlineStyle::endAngle() const {
  return impOf(*this).data().endAngleRad;
}
KdStatus KdDbMlineStyle::setEndAngle(double angleRad) {
  return setAngle(*this, &MlineStyleData::endAngleRad, angleRad);
}

int KdDbMlineStyle::numElements() const {
  return static_cast<int>(impOf(*this).data().elements.size());
}

KdStatus KdDbMlineStyle::getElementAt(int index, double& offset, KdCmColor& color, KdDbObjectId& linetype) const {
  if (!isElement(*this, index)) return KdStatus::invalidIndex;
  const MlineStyleImp& imp = impOf(*this);
  const MlineStyleElement& element = imp.data().elements[static_cast<std::size_t>(index)];
  offset = element.offset;
  color = element.color;
  linetype = imp.linetypeId(element);
  return KdStatus::ok;
}

KdStatus KdDbMlineStyle::getLinetypeNameAt(int index, std::wstring& name) const {
  if (!isElement(*this, index)) return KdStatus::invalidIndex;
  name = impOf(*this).data().elements[static_cast<std::size_t>(index)].linetype;
  return KdStatus::ok;
}

KdStatus KdDbMlineStyle::setElement(int index, double offset, const KdCmColor& color, KdDbObjectId linetype) {
  MlineStyleImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (!isElement(*this, index)) return KdStatus::invalidIndex;
  if (!std::isfinite(offset)) return KdStatus::invalidInput;
  MlineStyleElement element = imp.data().elements[static_cast<std::size_t>(index)];
  element.offset = offset;
  element.color = color;
  if (const KdStatus status = setLinetype(imp, element, linetype); status != KdStatus::ok) return status;
  imp.changeElements()[static_cast<std::size_t>(index)] = element;
  return KdStatus::ok;
}

KdStatus KdDbMlineStyle::addElement(int& index, double offset, const KdCmColor& color, KdDbObjectId linetype, bool) {
  MlineStyleImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (!std::isfinite(offset)) return KdStatus::invalidInput;
  MlineStyleElement element{offset, color};
  if (const KdStatus status = setLinetype(imp, element, linetype); status != KdStatus::ok) return status;
  index = numElements();
  imp.changeElements().push_back(element);
  return KdStatus::ok;
}

KdStatus KdDbMlineStyle::removeElementAt(int index) {
  MlineStyleImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (!isElement(*this, index)) return KdStatus::invalidIndex;
  torva::db::MlineStyleElements& elements = imp.changeElements();
  elements.erase(elements.begin() + index);
  return KdStatus::ok;
}

KdStatus KdDbMlineStyle::copyFrom(const KdDbObject* source) {
  if (!source) return KdStatus::nullPointer;
  if (!source->isKindOf(desc())) return KdStatus::wrongClass;
  MlineStyleImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (source == this) return KdStatus::ok;
  const MlineStyleData& data = impOf(static_cast<const KdDbMlineStyle&>(*source)).data();
  imp.changeElements() = data.elements;
  imp.change() = data;
  return KdStatus::ok;
}

KdStatus KdDbMlineStyle::set(const KdDbMlineStyle& source, bool includesName) {
  const std::wstring ownName = name();
  const KdStatus status = copyFrom(&source);
  if (status == KdStatus::ok && !includesName) impOf(*this).change().name = ownName;
  return status;
}
