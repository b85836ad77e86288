// The storefront: the page at / and its files under /static/, from the bytes compiled into
// the program, with a content policy that lets the page load nothing from elsewhere.
#include <string_view>

#include "web/api_answer.h"
#include "web/routes.h"
#include "web/static_files.h"

namespace brindlewayProj::web {
namespace {

const char* ContentType(std::string_view name) {
  if (name.ends_with(".html")) return "text/html; charset=utf-8";
  if (name.ends_with(".css")) return "text/css; charset=utf-8";
  if (name.ends_with(".js")) return "text/javascript; charset=utf-8";
  if (name.ends_with(".svg")) return "image/svg+xml";
  return "application/octet-stream";
}

void Serve(std::string_view name, httplib::Response& response) {
  for (const StaticFile& file : StaticFiles()) {
    if (file.name == name) {
      response.set_header("Content-Security-Policy", "default-src 'self'");
      response.set_header("X-Content-Type-Options", "nosniff");
      response.set_content(String(file.bytes), ContentType(name));
      return;
    }
  }
  SetError(response, kNotFound, "route", "no file '" + String(name) + "'");
}

}  // namespace

void AddStorefront(httplib::Server& server) {
  server.Get("/", [](const httplib::Request&, httplib::Response& response) {
    Serve("index.html", response);
  });
  server.Get(R"(/static/([A-Za-z0-9_.-]+))",
             [](const httplib::Request& request, httplib::Response& response) {
               Serve(String(request.matches[1]), response);
             });
}

}  // namespace brindlewayProj::web
