#include <kdrx/db_database.h>
#include <kdrx/db_mline.h>
#include <kdrx/db_mline_style.h>

bool KdRxClass::isDerivedFrom(const KdRxClass* other) const {
  for (const KdRxClass* own = this; own; own = own->base()) {
    if (own == other) return true;
  }
  return false;
}

const KdRxClass* KdDbObject::desc() {
  static const KdRxClass description(L"KdDbObject", nullptr);
  return &description;
}
const KdRxClass* KdDbObject::isA() const {
  return desc();
}

const KdRxClass* KdDbEntity::desc() {
  static const KdRxClass description(L"KdDbEntity", KdDbObject::desc());
  return &description;
}
const KdRxClass* KdDbEntity::isA() const {
  return desc();
}

const KdRxClass* KdDbMline::desc() {
  static const KdRxClass description(L"KdDbMline", KdDbEntity::desc());
  return &description;
}
const KdRxClass* KdDbMline::isA() const {
  return desc();
}

const KdRxClass* KdDbMlineStyle::desc() {
  static const KdRxClass description(L"KdDbMlineStyle", KdDbObject::desc());
  return &description;
}
const KdRxClass* KdDbMlineStyle::isA() const {
  return desc();
}

const KdRxClass* KdDbDictionary::desc() {
  static const KdRxClass description(L"KdDbDictionary", KdDbObject::desc());
  return &description;
}
const KdRxClass* KdDbDictionary::isA() const {
  return desc();
}

const KdRxClass* KdDbSymbolTableRecord::desc() {
  static const KdRxClass description(L"KdDbSymbolTableRecord", KdDbObject::desc());
  return &description;
}
const KdRxClass* KdDbSymbolTableRecord::isA() const {
  return desc();
}

const KdRxClass* KdDbLayerTableRecord::desc() {
  static const KdRxClass description(L"KdDbLayerTableRecord", KdDbSymbolTableRecord::desc());
  return &description;
}
const KdRxClass* KdDbLayerTableRecord::isA() const {
  return desc();
}

const KdRxClass* KdDbLinetypeTableRecord::desc() {
  static const KdRxClass description(L"KdDbLinetypeTableRecord", KdDbSymbolTableRecord::desc());
  return &description;
}
const KdRxClass* KdDbLinetypeTableRecord::isA() const {
  return desc();
}

const KdRxClass* KdDbBlockTableRecord::desc() {
  static const KdRxClass description(L"KdDbBlockTableRecord", KdDbSymbolTableRecord::desc());
  return &description;
}
const KdRxClass* KdDbBlockTableRecord::isA() const {
  return desc();
}

const KdRxClass* KdDbSymbolTable::desc() {
  static const KdRxClass description(L"KdDbSymbolTable", KdDbObject::desc());
  return &description;
}
const KdRxClass* KdDbSymbolTable::isA() const {
  return desc();
}

const KdRxClass* KdDbLayerTable::desc() {
  static const KdRxClass description(L"KdDbLayerTable", KdDbSymbolTable::desc());
  return &description;
}
const KdRxClass* KdDbLayerTable::isA() const {
  return desc();
}

const KdRxClass* KdDbLinetypeTable::desc() {
  static const KdRxClass description(L"KdDbLinetypeTable", KdDbSymbolTable::desc());
  return &description;
}
const KdRxClass* KdDbLinetypeTable::isA() const {
  return desc();
}

const KdRxClass* KdDbBlockTable::desc() {
  static const KdRxClass description(L"KdDbBlockTable", KdDbSymbolTable::desc());
  return &description;
}
const KdRxClass* KdDbBlockTable::isA() const {
  return desc();
}
