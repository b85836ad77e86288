// The service's routes, each group added to the server by one function.
#pragma once

#include <httplib.h>

namespace brindlewayProj::web {

// GET /api/products and GET /api/customers: the catalogue and the customers, read through
// the dao model on the worker's database.
void AddCatalogueRoutes(httplib::Server& server);
// /api/orders/... and GET /api/customers/{id}/orders: the order and basket methods.
void AddOrderRoutes(httplib::Server& server);
// POST /api/call/{Method}: any method, late-bound, arguments by parameter name.
void AddCallRoute(httplib::Server& server);
// GET / and GET /static/{file}: the storefront page.
void AddStorefront(httplib::Server& server);

}  // namespace brindlewayProj::web
