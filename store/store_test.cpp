// The dialect's translation to backend SQL, its bound literals and its syntax errors; and store
// creation: the reference schema in WAL mode, the sample rows, and an existing file left as it
// was.
#include "store/dialect.h"

#include <gtest/gtest.h>

#include <fstream>

#include "store/errors.h"
#include "store/schema.h"
#include "store/sqlite/connection.h"
#include "tests/support/test_support.h"

namespace brindlewayProj::store::dialect {
namespace {

using testing::ErrorOf;
using testing::SqlScalar;
using testing::TempDir;
const SqlSyntax& syntax = sqlite::Syntax();

// Each text, its SQL of shape only, and the literals bound to it.
TEST(DialectTranslation, GivesShapeOnlySqlAndBindsEveryLiteral) {
  const std::tuple<const char*, const char*, std::vector<SqlValue>> translations[] = {
      {"Select [ProductName] From [BasketList] Where ( [OrderId] = 42 ) Order By "
       "[ProductName] Asc",
       "SELECT \"ProductName\" FROM \"BasketList\" WHERE ((\"OrderId\" = ?)) ORDER "
       "BY \"ProductName\" COLLATE NOCASE",
       {std::int64_t{42}}},
      {"select * from orders where not (delivery <> 1 or description is null) "
       "order by [OrderDate] desc, OrderId",
       "SELECT * FROM \"orders\" WHERE NOT ((\"delivery\" <> ?) OR (\"description\" "
       "IS NULL)) ORDER BY \"OrderDate\" COLLATE NOCASE DESC, \"OrderId\" COLLATE "
       "NOCASE",
       {std::int64_t{1}}},
      {"Select [Extended Price] From [BasketList] Where [ProductName] = \"x\"\" Or "
       "\"\"1\"\"=\"\"1\"",
       "SELECT \"Extended Price\" FROM \"BasketList\" WHERE (\"ProductName\" = ?)",
       {std::string("x\" Or \"1\"=\"1")}},
      {"Select * From T Where a Like 'A*b?%_' And b Not Like \"*\"",
       "SELECT * FROM \"T\" WHERE (\"a\" LIKE ? ESCAPE '\\') AND (\"b\" NOT LIKE ? "
       "ESCAPE '\\')",
       {std::string("A%b_\\%\\_"), std::string("%")}},
      {"Select * From T Where d >= #3/14/99# And d < #2026-01-02 2:05 PM# And f = "
       "True And g = False And h = Null And i = 2.5",
       "SELECT * FROM \"T\" WHERE (\"d\" >= ?) AND (\"d\" < ?) AND (\"f\" = ?) AND "
       "(\"g\" = ?) AND (\"h\" = ?) AND (\"i\" = ?)",
       {std::string("1999-03-14 00:00:00"), std::string("2026-01-02 14:05:00"), std::int64_t{-1},
        std::int64_t{0}, SqlValue{}, 2.5}},
      {"Select [a\"b] From [x\"y];", "SELECT \"a\"\"b\" FROM \"x\"\"y\"", {}},
      {"Delete From [Orders] Where ( [OrderId] = 42 )",
       "DELETE FROM \"Orders\" WHERE ((\"OrderId\" = ?))",
       {std::int64_t{42}}},
      {"DELETE * FROM OrderBasket", "DELETE FROM \"OrderBasket\"", {}}};
  for (const auto& [text, sql, parameters] : translations) {
    auto statement = Parse(text, syntax);
    EXPECT_EQ(statement.kind == StatementKind::kDelete ? DeleteSql(statement, syntax)
                                                       : SelectSql(statement, false, syntax),
              sql);
    EXPECT_EQ(statement.parameters, parameters) << text;
  }
}

// Each text the dialect refuses, with the store's syntax error.
TEST(DialectRefusal, RaisesTheStoreSyntaxError) {
  const std::tuple<const char*, Long, String> refusals[] = {
      {"Select [ProductName] From [BasketList] Where ( [ProductName] = \"x\" ) Union "
       "Select [FirstName] From [Customers]",
       errSyntax,
       "Syntax error in query expression '( [ProductName] = \"x\" ) Union Select "
       "[FirstName] From [Customers]'."},
      {"Select * From [Orders] Where [OrderId] = 1; Delete From [Orders]", errSyntax,
       "Syntax error in query expression '[OrderId] = 1; Delete From [Orders]'."},
      {"Select * From [Orders] Where [OrderId] In (Select [OrderId] From [Orders])", errSyntax,
       "Syntax error in query expression '[OrderId] In (Select [OrderId] From [Orders])'."},
      {"Select Count([OrderId]) From [Orders]", errSyntax,
       "Syntax error in query expression 'Count([OrderId]) From [Orders]'."},
      {"Update [Orders] Set [Delivery] = 1", errSyntax,
       "Syntax error in query expression 'Update [Orders] Set [Delivery] = 1'."},
      {"Select * From [Orders] Where [Description] = \"open", errSyntax,
       "Syntax error in query expression '\"open'."},
      {"Select * From [Orders] Where [OrderDate] = #2/30/2026#", errSyntax,
       "Syntax error in query expression '#2/30/2026#'."},
      {"Select * From (Select * From [Orders])", errFromClause, "Syntax error in FROM clause."},
      {"Select * From [Orders] Where [OrderId] = 1 -- comment", errSyntax,
       "Syntax error in query expression '[OrderId] = 1 -- comment'."}};
  for (const auto& [text, number, description] : refusals) {
    EXPECT_EQ(ErrorOf([&] { Parse(text, syntax); }), std::pair(number, description));
  }
}

TEST(DialectRecordSource, ReadsANameAsAllOfItsRows) {
  for (const char* text : {"Orders", " [Orders] ", "orders"}) {
    auto statement = ParseRecordSource(text, syntax);
    EXPECT_EQ(statement.source.size(), 6u) << text;
    EXPECT_EQ(SelectSql(statement, true, syntax).substr(0, 16), "SELECT rowid, * ");
  }
  EXPECT_EQ(ParseRecordSource("[Order Details]", syntax).source, "Order Details");
  EXPECT_THROW(ParseRecordSource("  ", syntax), platform::Error);
  EXPECT_THROW(ParseRecordSource("Delete From [Orders]", syntax), platform::Error);
}

TEST(CreateStore, WritesTheSchemaInWalModeWithOrWithoutSamples) {
  TempDir dir;
  CreateStore(dir / "sample.mdb", true);
  CreateStore(dir / "empty.mdb", false);
  EXPECT_EQ(SqlScalar(dir / "sample.mdb", "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(SqlScalar(dir / "sample.mdb",
                      "SELECT count(*) FROM sqlite_master WHERE name IN ('Customers', 'Products', "
                      "'Orders', 'OrderBasket', 'OrdersWithNames', 'BasketList')"),
            "6");
  EXPECT_EQ(SqlScalar(dir / "sample.mdb", "PRAGMA foreign_key_check"), "no row");
  EXPECT_EQ(SqlScalar(dir / "empty.mdb", "SELECT count(*) FROM Orders"), "0");
  EXPECT_EQ(SqlScalar(dir / "empty.mdb", "SELECT count(*) FROM Products"), "0");
}

// An existing file is left as it was; an empty path and a missing folder are refused.
TEST(CreateStore, CreatesNothingWhereItMayNot) {
  TempDir dir;
  auto file = dir / "shop.mdb";
  std::ofstream(file) << "keep me";
  EXPECT_EQ(ErrorOf([&] { CreateStore(file, true); }),
            std::pair(Long{errAlreadyExists}, "Database '" + file.string() + "' already exists."));
  EXPECT_EQ(testing::ReadFile(file), "keep me");

  EXPECT_THROW(CreateStore("", false), platform::Error);
  auto missing = dir / "no-such-folder" / "shop.mdb";
  EXPECT_EQ(ErrorOf([&] { CreateStore(missing, false); }).first, errInvalidPath);
  EXPECT_FALSE(std::filesystem::exists(missing));
}

}  // namespace
}  // namespace brindlewayProj::store::dialect
