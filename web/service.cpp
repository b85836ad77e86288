// The service's server: limits, the error answer of every refusal, routes and workers.
#include "web/service.h"

#include <stdexcept>

#include "web/api_answer.h"
#include "web/routes.h"
#include "web/worker_pool.h"

namespace brindlewayProj::web {
namespace {

// The message of an answer that no route wrote: no such route, a body too large, a request
// cpp-httplib could not read.
String RefusalText(const httplib::Request& request, int httpStatus, std::size_t maxBodyBytes) {
  switch (httpStatus) {
    case kNotFound:
      return "no route " + request.method + " " + request.path;
    case kPayloadTooLarge:
      return "the body is larger than " + std::to_string(maxBodyBytes) + " bytes";
    default:
      return "the request was refused (HTTP " + std::to_string(httpStatus) + ")";
  }
}

}  // namespace

Service::Service(ServiceOptions options) : options_(std::move(options)) {
  server_.set_payload_max_length(options_.maxBodyBytes);
  server_.set_read_timeout(options_.timeout);
  server_.set_write_timeout(options_.timeout);
  server_.set_keep_alive_timeout(options_.timeout.count());
  server_.set_keep_alive_max_count(1000);
  server_.set_tcp_nodelay(true);  // answers are small: no waiting to fill a segment
  server_.new_task_queue = [this] {
    return new WorkerPool(options_.threads, [store = options_.store] {
      return OpenShopSession(store);
    });
  };
  server_.set_error_handler([this](const httplib::Request& request, httplib::Response& response) {
    if (response.body.empty()) {
      SetError(response, response.status, "http",
               RefusalText(request, response.status, options_.maxBodyBytes));
    }
  });
  AddCatalogueRoutes(server_);
  AddOrderRoutes(server_);
  AddCallRoute(server_);
  AddStorefront(server_);
}

Service::~Service() { Stop(); }

int Service::Bind() {
  const bool bound = options_.port == 0
                         ? (options_.port = server_.bind_to_any_port(options_.host)) > 0
                         : server_.bind_to_port(options_.host, options_.port);
  if (!bound) {
    throw std::runtime_error("cannot listen on " + options_.host + ":" +
                             std::to_string(options_.port));
  }
  return options_.port;
}

void Service::Run() { server_.listen_after_bind(); }

void Service::Stop() { server_.stop(); }

}  // namespace brindlewayProj::web
