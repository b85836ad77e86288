// The dialect's translation to backend SQL, its bound literals and its syntax errors.
#include "store/dialect.h"

#include <gtest/gtest.h>

#include "store/errors.h"
#include "store/sqlite/connection.h"

namespace brindlewayProj::store::dialect {
namespace {

const SqlSyntax& syntax = sqlite::Syntax();

struct Translation {
  const char* text;
  const char* sql;
  std::vector<SqlValue> parameters;
};

class DialectTranslation : public ::testing::TestWithParam<Translation> {};

TEST_P(DialectTranslation, GivesShapeOnlySqlAndBindsEveryLiteral) {
  const auto& expected = GetParam();
  auto statement = Parse(expected.text, syntax);
  std::string sql =
      statement.kind == StatementKind::kDelete ? DeleteSql(statement, syntax)
                                                : SelectSql(statement, false, syntax);
  EXPECT_EQ(sql, expected.sql);
  EXPECT_EQ(statement.parameters, expected.parameters);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DialectTranslation,
    ::testing::Values(
        Translation{"Select [ProductName] From [BasketList] Where ( [OrderId] = 42 ) Order By "
                    "[ProductName] Asc",
                    "SELECT \"ProductName\" FROM \"BasketList\" WHERE ((\"OrderId\" = ?)) ORDER "
                    "BY \"ProductName\" COLLATE NOCASE",
                    {std::int64_t{42}}},
        Translation{"select * from orders where not (delivery <> 1 or description is null) "
                    "order by [OrderDate] desc, OrderId",
                    "SELECT * FROM \"orders\" WHERE NOT ((\"delivery\" <> ?) OR (\"description\" "
                    "IS NULL)) ORDER BY \"OrderDate\" COLLATE NOCASE DESC, \"OrderId\" COLLATE "
                    "NOCASE",
                    {std::int64_t{1}}},
        Translation{"Select [Extended Price] From [BasketList] Where [ProductName] = \"x\"\" Or "
                    "\"\"1\"\"=\"\"1\"",
                    "SELECT \"Extended Price\" FROM \"BasketList\" WHERE (\"ProductName\" = ?)",
                    {std::string("x\" Or \"1\"=\"1")}},
        Translation{"Select * From T Where a Like 'A*b?%_' And b Not Like \"*\"",
                    "SELECT * FROM \"T\" WHERE (\"a\" LIKE ? ESCAPE '\\') AND (\"b\" NOT LIKE ? "
                    "ESCAPE '\\')",
                    {std::string("A%b_\\%\\_"), std::string("%")}},
        Translation{"Select * From T Where d >= #3/14/99# And d < #2026-01-02 2:05 PM# And f = "
                    "True And g = False And h = Null And i = 2.5",
                    "SELECT * FROM \"T\" WHERE (\"d\" >= ?) AND (\"d\" < ?) AND (\"f\" = ?) AND "
                    "(\"g\" = ?) AND (\"h\" = ?) AND (\"i\" = ?)",
                    {std::string("1999-03-14 00:00:00"), std::string("2026-01-02 14:05:00"),
                     std::int64_t{-1}, std::int64_t{0}, SqlValue{}, 2.5}},
        Translation{"Select [a\"b] From [x\"y];", "SELECT \"a\"\"b\" FROM \"x\"\"y\"", {}},
        Translation{"Delete From [Orders] Where ( [OrderId] = 42 )",
                    "DELETE FROM \"Orders\" WHERE ((\"OrderId\" = ?))",
                    {std::int64_t{42}}},
        Translation{"DELETE * FROM OrderBasket", "DELETE FROM \"OrderBasket\"", {}}));

struct Refusal {
  const char* text;
  Long number;
  const char* description;
};

class DialectRefusal : public ::testing::TestWithParam<Refusal> {};

TEST_P(DialectRefusal, RaisesTheStoreSyntaxError) {
  try {
    Parse(GetParam().text, syntax);
    FAIL() << "parsed: " << GetParam().text;
  } catch (const platform::Error& failure) {
    EXPECT_EQ(failure.Number(), GetParam().number);
    EXPECT_EQ(failure.Description(), GetParam().description);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DialectRefusal,
    ::testing::Values(
        Refusal{"Select [ProductName] From [BasketList] Where ( [ProductName] = \"x\" ) Union "
                "Select [FirstName] From [Customers]",
                errSyntax,
                "Syntax error in query expression '( [ProductName] = \"x\" ) Union Select "
                "[FirstName] From [Customers]'."},
        Refusal{"Select * From [Orders] Where [OrderId] = 1; Delete From [Orders]", errSyntax,
                "Syntax error in query expression '[OrderId] = 1; Delete From [Orders]'."},
        Refusal{"Select * From [Orders] Where [OrderId] In (Select [OrderId] From [Orders])",
                errSyntax,
                "Syntax error in query expression '[OrderId] In (Select [OrderId] From "
                "[Orders])'."},
        Refusal{"Select Count([OrderId]) From [Orders]", errSyntax,
                "Syntax error in query expression 'Count([OrderId]) From [Orders]'."},
        Refusal{"Update [Orders] Set [Delivery] = 1", errSyntax,
                "Syntax error in query expression 'Update [Orders] Set [Delivery] = 1'."},
        Refusal{"Select * From [Orders] Where [Description] = \"open", errSyntax,
                "Syntax error in query expression '\"open'."},
        Refusal{"Select * From [Orders] Where [OrderDate] = #2/30/2026#", errSyntax,
                "Syntax error in query expression '#2/30/2026#'."},
        Refusal{"Select * From (Select * From [Orders])", errFromClause,
                "Syntax error in FROM clause."},
        Refusal{"Select * From [Orders] Where [OrderId] = 1 -- comment", errSyntax,
                "Syntax error in query expression '[OrderId] = 1 -- comment'."}));

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

}  // namespace
}  // namespace brindlewayProj::store::dialect
