// Writes a new SQLite store file with the reference schema: two tables the component writes,
// the customer and product tables behind them, and the two stored queries it reads through.
// The file is created exclusively, so an existing one is never touched; a failure after that
// removes the half-made file again.
#include "store/sqlite/schema.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>

#include "store/errors.h"
#include "store/sample_data.h"

namespace brindlewayProj::store::sqlite {
namespace {

constexpr const char* kSchemaSql = R"sql(
CREATE TABLE Customers (CustomerId INTEGER PRIMARY KEY, FirstName TEXT, LastName TEXT);
CREATE TABLE Products  (ProductId INTEGER PRIMARY KEY, ProductName TEXT, Vendor TEXT,
                        ProductPrice CURRENCY);
CREATE TABLE Orders (OrderId INTEGER PRIMARY KEY AUTOINCREMENT,
                     CustomerId INTEGER REFERENCES Customers(CustomerId),
                     OrderDate DATETIME, DeliveryDate DATETIME, Delivery SMALLINT,
                     Description TEXT);
CREATE TABLE OrderBasket (OrderId INTEGER REFERENCES Orders(OrderId) ON DELETE CASCADE,
                          ProductId INTEGER REFERENCES Products(ProductId),
                          Quantity INTEGER);
CREATE INDEX OrdersByCustomer ON Orders(CustomerId, OrderDate);
CREATE INDEX BasketByOrder ON OrderBasket(OrderId, ProductId);
CREATE INDEX BasketByProduct ON OrderBasket(ProductId);
CREATE INDEX ProductsByName ON Products(ProductName);
CREATE VIEW OrdersWithNames AS
  SELECT o.OrderId, o.CustomerId, c.FirstName, c.LastName, o.OrderDate,
         o.DeliveryDate, o.Delivery, o.Description
  FROM Orders o LEFT JOIN Customers c ON c.CustomerId = o.CustomerId;
CREATE VIEW BasketList AS
  SELECT b.OrderId, p.ProductName, p.Vendor, p.ProductPrice, b.Quantity,
         p.ProductPrice * b.Quantity AS "Extended Price"
  FROM OrderBasket b LEFT JOIN Products p ON p.ProductId = b.ProductId;
)sql";

// Creates the empty file, refusing one that exists (an empty file is a valid empty database).
void CreateEmptyFile(const std::filesystem::path& file) {
  int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (descriptor < 0) {
    if (errno == EEXIST) throw AlreadyExists(file.string());
    throw InvalidPath(file.string());
  }
  ::close(descriptor);
}

void WriteSchema(const std::filesystem::path& file, bool withSample) {
  sqlite3* db = nullptr;
  int rc = sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  std::string script = "PRAGMA journal_mode=WAL; BEGIN;";
  script += kSchemaSql;
  if (withSample) script += kSampleSql;
  script += "COMMIT;";
  char* message = nullptr;
  if (rc == SQLITE_OK) rc = sqlite3_exec(db, script.c_str(), nullptr, nullptr, &message);
  String failure = message ? message : (db ? sqlite3_errmsg(db) : "out of memory");
  sqlite3_free(message);
  sqlite3_close_v2(db);
  if (rc != SQLITE_OK) throw EngineFailure(failure);
}

}  // namespace

void CreateStore(const std::filesystem::path& file, bool withSample) {
  if (file.empty()) throw EmptyPath();
  CreateEmptyFile(file);
  try {
    WriteSchema(file, withSample);
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    std::filesystem::remove(file.string() + "-wal", ignored);
    std::filesystem::remove(file.string() + "-shm", ignored);
    throw;
  }
}

}  // namespace brindlewayProj::store::sqlite
