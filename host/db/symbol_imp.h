#pragma once

#include <vector>

#include "db/object_imp.h"

namespace torva::db {

/// A named record of a symbol table.
class SymbolImp : public KdDbObjectImp {
 public:
  void read() override;
  const std::wstring& name() const { return m_name; }

 private:
  std::wstring m_name;
};

class LinetypeImp final : public SymbolImp {
 public:
  void read() override;
  const std::vector<double>& dashes() const { return m_dashes; }

 private:
  std::vector<double> m_dashes;
};

/// A symbol table: the type of its records.
class TableImp final : public KdDbObjectImp {
 public:
  void read() override;
  dxf::RecordType symbols() const { return m_symbols; }

 private:
  dxf::RecordType m_symbols = dxf::RecordType::none;
};

}  // namespace torva::db
