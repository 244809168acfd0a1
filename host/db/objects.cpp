#include "db/database.h"
#include "db/object_imp.h"
#include "db/record_groups.h"

using torva::db::Database;

KdDbObject::KdDbObject(std::unique_ptr<KdDbObjectImp> imp) : m_imp(std::move(imp)) {}
KdDbObject::~KdDbObject() = default;

KdDbObjectImp* KdDbSystemInternals::getImpObject(const KdDbObject* object) {
  return object ? object->m_imp.get() : nullptr;
}

KdDbObjectId KdDbObject::objectId() const {
  return m_imp->database() ? m_imp->database()->idOf(m_imp->record()) : KdDbObjectId();
}

KdDbObjectId KdDbObject::ownerId() const {
  const Database* database = m_imp->database();
  if (!database) return {};
  return database->idOfHandle(torva::db::ownerHandle(database->file().groups(m_imp->record())));
}

KdDbDatabase* KdDbObject::database() const {
  return m_imp->database();
}

std::uint64_t KdDbObject::handle() const {
  return m_imp->database() ? m_imp->file().handle(m_imp->record()) : 0;
}

bool KdDbObject::isReadEnabled() const {
  return !m_imp->database() || m_imp->isOpen();
}

bool KdDbObject::isWriteEnabled() const {
  return m_imp->isWritable();
}

bool KdDbObject::isErased() const {
  return m_imp->database() && m_imp->file().isErased(m_imp->record());
}

KdStatus KdDbObject::close() {
  return m_imp->close();
}

KdStatus KdDbObject::erase() {
  if (!m_imp->database()) return KdStatus::notInDatabase;
  if (!m_imp->isWritable()) return KdStatus::notOpen;
  m_imp->database()->setErased(m_imp->record(), true);
  return KdStatus::ok;
}

KdStatus KdDbObject::unerase() {
  if (!m_imp->database()) return KdStatus::notInDatabase;
  if (!m_imp->isWritable()) return KdStatus::notOpen;
  m_imp->database()->setErased(m_imp->record(), false);
  return KdStatus::ok;
}

KdStatus KdDbObject::copyFrom(const KdDbObject* source) {
  return source ? KdStatus::wrongClass : KdStatus::nullPointer;
}

KdDbObjectId KdDbEntity::layerId() const {
  const Database* database = m_imp->context();
  if (!database) return {};
  return database->idOf(database->findSymbol(torva::dxf::RecordType::layer, m_imp->layerName()));
}
