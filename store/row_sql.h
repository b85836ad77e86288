// The SQL of the single-row operations of a backend (Connection::ReadRow, UpdateRow,
// InsertRow, ParentRowExists), spelled with the engine's SqlSyntax, so that every engine builds them alike; and
// the reading of the row found.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "store/backend.h"

namespace brindlewayProj::store {

// SELECT of `columns` of the row whose identity is the first parameter.
std::string ReadRowSql(const SqlSyntax& syntax, const SourceInfo& table,
                       std::span<const std::string> columns);

// SELECT of the parent row that `key` refers to, by the first parameter (a key without a
// parent column refers to the parent's row identity).
std::string ParentRowSql(const SqlSyntax& syntax, const ForeignKey& key);

// The values of the statement's next row in its first `columns` columns; nullopt when no row
// is left.
std::optional<std::vector<SqlValue>> NextRowValues(Statement& statement, std::size_t columns);

// UPDATE of `changes` in the row `row`, while it holds `expected` (Null equal to Null); the
// values go to `parameters` in the order of their placeholders.
std::string UpdateRowSql(const SqlSyntax& syntax, const SourceInfo& table, const RowId& row,
                         std::span<const ColumnValue> changes,
                         std::span<const ColumnValue> expected,
                         std::vector<SqlValue>& parameters);

// INSERT of `values` (the other columns take their defaults); the values go to `parameters`.
std::string InsertRowSql(const SqlSyntax& syntax, const SourceInfo& table,
                         std::span<const ColumnValue> values, std::vector<SqlValue>& parameters);

}  // namespace brindlewayProj::store
