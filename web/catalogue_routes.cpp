// The catalogue and the customers, read through the dao model: neither has a method of its
// own, and the page needs both to offer its choices.
#include <nlohmann/json.hpp>

#include <brindleway/dao.h>
#include "web/api_answer.h"
#include "web/routes.h"
#include "web/worker_pool.h"

namespace brindlewayProj::web {
namespace {

// The rows of `query` on the worker's database as {name: [rows]}.
Route ListRoute(const char* name, const char* query) {
  return [name, query](const httplib::Request&) {
    ShopSession& session = WorkerPool::Current();
    try {
      std::shared_ptr<dao::Recordset> rows =
          Deref(session.database).OpenRecordset(query, dao::dbOpenSnapshot);
      return Answer{kOk, {{name, cli::JsonOf(Variant(rows))}}};
    } catch (const platform::Error& failure) {
      throw ApiError(kUnavailable, "store", failure.Description());
    }
  };
}

}  // namespace

void AddCatalogueRoutes(httplib::Server& server) {
  server.Get("/api/products",
             JsonRoute(ListRoute("products",
                                 "Select ProductId, ProductName, Vendor, ProductPrice "
                                 "From Products Order By ProductName")));
  server.Get("/api/customers",
             JsonRoute(ListRoute("customers",
                                 "Select CustomerId, FirstName, LastName From Customers "
                                 "Order By LastName, FirstName")));
}

}  // namespace brindlewayProj::web
