// PostgreSQL statements: binding values as text, running the statement, and reading its rows.
//
// A failed statement aborts PostgreSQL's whole transaction (or savepoint), where the embedded
// engine undoes the statement alone. That costs nothing here: the object model rolls back the
// level a failure happened in, and a failure names what it needs (the parent table of a
// refused reference) without asking the store again.
#include "store/postgres/statement.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>

#include "store/postgres/errors.h"

namespace brindlewayProj::store::postgres {
namespace {

constexpr Oid kInt8 = 20, kInt2 = 21, kInt4 = 23, kFloat4 = 700, kFloat8 = 701,
              kNumeric = 1700, kText = 25, kVarchar = 1043, kBpchar = 1042, kDate = 1082,
              kTimestamp = 1114;

DeclaredKind KindOfType(Oid type) {
  switch (type) {
    case kInt8:
    case kInt4:
      return DeclaredKind::kLong;
    case kInt2:
      return DeclaredKind::kInteger;
    case kFloat4:
    case kFloat8:
    case kNumeric:
      return DeclaredKind::kDouble;
    case kDate:
    case kTimestamp:
      return DeclaredKind::kDate;
    case kText:
    case kVarchar:
    case kBpchar:
      return DeclaredKind::kText;
    default:
      return DeclaredKind::kUnknown;
  }
}

// The value of a number as text that every numeric type of the server takes.
std::string NumberText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

// A cursor's first fetch takes the rows a dynaset reads as it opens (its first two); later
// ones take batches.
constexpr int kFirstFetch = 2, kCursorBatch = 64;

std::string FetchSql(int rows, const std::string& cursor) {
  return "FETCH " + std::to_string(rows) + " FROM \"" + cursor + "\"";
}

}  // namespace

PostgresStatement::PostgresStatement(Channel& channel, std::string name, const std::string& sql)
    : channel_(channel),
      db_(channel.Db()),
      name_(std::move(name)),
      sql_(sql),
      firstFetch_(FetchSql(kFirstFetch, name_ + "_cursor")),
      fetch_(FetchSql(kCursorBatch, name_ + "_cursor")),
      wholeTable_(sql.starts_with("SELECT ctid, ") && sql.find(" WHERE ") == std::string::npos) {
  PGresult* prepared = PQprepare(db_, name_.c_str(), sql.c_str(), 0, nullptr);
  if (PQresultStatus(prepared) != PGRES_COMMAND_OK) Fail(db_, prepared);
  PQclear(prepared);
  PGresult* described = PQdescribePrepared(db_, name_.c_str());
  if (PQresultStatus(described) != PGRES_COMMAND_OK) Fail(db_, described);
  auto columns = std::make_shared<std::vector<ColumnInfo>>();
  for (int i = 0; i < PQnfields(described); ++i) {
    types_.push_back(PQftype(described, i));
    columns->push_back({PQfname(described, i), KindOfType(types_.back())});
  }
  parameterCount_ = PQnparams(described);
  PQclear(described);
  columns_ = std::move(columns);
}

PostgresStatement::~PostgresStatement() {
  Reset();
  if (channel_.Holds(cursorLevel_) && PQtransactionStatus(db_) == PQTRANS_INTRANS) {
    PQclear(PQexec(db_, ("CLOSE \"" + name_ + "_cursor\"").c_str()));
  }
  // A statement that served one holder alone goes from the server with it.
  if (name_.starts_with("once")) {
    PQclear(PQexec(db_, ("DEALLOCATE \"" + name_ + "\"").c_str()));
    if (declared_) PQclear(PQexec(db_, ("DEALLOCATE \"" + name_ + "_declare\"").c_str()));
  }
}

void PostgresStatement::Bind(const std::vector<SqlValue>& values) {
  Reset();
  texts_.assign(values.size(), std::string());
  nulls_.assign(values.size(), false);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const SqlValue& value = values[i];
    if (auto* whole = std::get_if<std::int64_t>(&value)) {
      texts_[i] = std::to_string(*whole);
    } else if (auto* real = std::get_if<double>(&value)) {
      texts_[i] = NumberText(*real);
    } else if (auto* text = std::get_if<std::string>(&value)) {
      texts_[i] = *text;
    } else {
      nulls_[i] = true;
    }
  }
}

void PostgresStatement::Run() {
  std::vector<const char*> parameters(static_cast<std::size_t>(parameterCount_), nullptr);
  for (std::size_t i = 0; i < texts_.size() && i < parameters.size(); ++i) {
    if (!nulls_[i]) parameters[i] = texts_[i].c_str();
  }
  if (!wholeTable_ || !channel_.InTransaction()) {
    result_ = channel_.Send({Request::Prepared(name_.c_str(), parameterCount_, parameters.data())});
    return;
  }
  // The cursor is declared and its first rows fetched in one round trip, after the cursor of
  // an earlier run is closed while it stands; others ended with their transaction or with the
  // savepoint that was rolled back.
  const std::string declare = PrepareDeclare(), close = "CLOSE \"" + name_ + "_cursor\"";
  const Request declaring = Request::Prepared(declare.c_str(), parameterCount_, parameters.data());
  const Request fetching = Request::Text(firstFetch_.c_str());
  result_ = channel_.Holds(cursorLevel_)
                ? channel_.Send({Request::Text(close.c_str()), declaring, fetching})
                : channel_.Send({declaring, fetching});
  cursorLevel_ = channel_.Level();
  cursorOpen_ = PQntuples(result_) == kFirstFetch;
}

std::string PostgresStatement::PrepareDeclare() {
  const std::string declare = name_ + "_declare";
  if (!declared_) {
    const std::string sql = "DECLARE \"" + name_ + "_cursor\" NO SCROLL CURSOR FOR " + sql_;
    PGresult* prepared = PQprepare(db_, declare.c_str(), sql.c_str(), 0, nullptr);
    if (PQresultStatus(prepared) != PGRES_COMMAND_OK) Fail(db_, prepared);
    PQclear(prepared);
    declared_ = true;
  }
  return declare;
}

void PostgresStatement::Fetch() {
  PQclear(result_);
  result_ = nullptr;
  cursorOpen_ = false;
  result_ = channel_.Send({Request::Text(fetch_.c_str())});
  row_ = -1;
  cursorOpen_ = PQntuples(result_) == kCursorBatch;
}

bool PostgresStatement::Step() {
  if (!result_) Run();
  if (++row_ < PQntuples(result_)) return true;
  if (!cursorOpen_) return false;
  Fetch();
  return ++row_ < PQntuples(result_);
}

SqlValue PostgresStatement::Column(int index) const {
  if (PQgetisnull(result_, row_, index)) return SqlValue{};
  const char* text = PQgetvalue(result_, row_, index);
  const std::size_t length = static_cast<std::size_t>(PQgetlength(result_, row_, index));
  switch (KindOfType(types_[static_cast<std::size_t>(index)])) {
    case DeclaredKind::kLong:
    case DeclaredKind::kInteger: {
      std::int64_t whole = 0;
      std::from_chars(text, text + length, whole);
      return whole;
    }
    case DeclaredKind::kDouble:
      return std::strtod(text, nullptr);
    default:
      return std::string(text, length);
  }
}

std::size_t PostgresStatement::RowsReady() const {
  return result_ ? static_cast<std::size_t>(PQntuples(result_) - row_ - 1) : 0;
}

void PostgresStatement::Reset() {
  PQclear(result_);
  result_ = nullptr;
  row_ = -1;
  cursorOpen_ = false;  // the cursor itself ends with its transaction, or at the next run
}

long long PostgresStatement::Changes() const {
  const char* changed = result_ ? PQcmdTuples(result_) : "";
  return *changed ? std::atoll(changed) : 0;
}

}  // namespace brindlewayProj::store::postgres
