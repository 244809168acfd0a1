#pragma once

#include <kdrx/db_database.h>

/// Whether any multiline of the drawing, in whatever block, space or layout, inserted or not, has a style of this name
/// (ignoring case). No other entity is looked into, and of multilines their style alone.
bool isStyleUsed(KdDbDatabase* database, const wchar_t* name);
