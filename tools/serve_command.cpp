// brindleway serve: the HTTP JSON service and the storefront page, until SIGINT or SIGTERM.
#include <csignal>
#include <iostream>
#include <memory>
#include <thread>

#include <CLI/CLI.hpp>

#include "tools/commands.h"
#include "web/service.h"

namespace brindlewayProj::cli {
namespace {

constexpr const char* kServeFooter =
    R"(Serves the component over HTTP/1.1 with JSON in and out, and the storefront page at /.
Each worker thread owns one object of the linked component, connected to --store, or
without it to the store brindlewayProj.ini names. Port 0 takes any free port; the line
"serving http://HOST:PORT/" on standard output tells which. SIGINT or SIGTERM stops the
service after the requests under way.

Routes: GET /api/products, GET /api/customers, POST /api/orders, GET and DELETE
/api/orders/{id}, POST /api/orders/{id}/purchase, POST /api/orders/{id}/basket, PATCH and
DELETE /api/orders/{id}/basket/{productId}, GET /api/customers/{id}/orders?state=all|open|
shipped, POST /api/call/{Method}.)";

struct ServeOptions {
  String store;
  String listen = "127.0.0.1:8080";
  std::size_t threads = 4;
};

// "host:port" into the service's options; anything else raises CLI::ValidationError.
void SetAddress(const String& listen, web::ServiceOptions& options) {
  const std::size_t colon = listen.rfind(':');
  int port = -1;
  try {
    if (colon != String::npos && colon > 0) {
      std::size_t used = 0;
      port = std::stoi(listen.substr(colon + 1), &used);
      if (used != listen.size() - colon - 1) port = -1;
    }
  } catch (const std::exception&) {
  }
  if (port < 0 || port > 65535) {
    throw CLI::ValidationError("--listen", "'" + listen + "' is not HOST:PORT");
  }
  options.host = listen.substr(0, colon);
  options.port = port;
}

// Serves until SIGINT or SIGTERM, which the calling thread waits for (blocked in every
// thread, so no handler runs inside the server).
int Serve(web::ServiceOptions options, const Program& program) {
  sigset_t stopSignals;
  sigemptyset(&stopSignals);
  sigaddset(&stopSignals, SIGINT);
  sigaddset(&stopSignals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);

  const std::optional<String> store = options.store;
  web::Service service(std::move(options));
  int port = 0;
  try {
    port = service.Bind();
  } catch (const std::exception& failure) {
    Program::Fail(failure.what());
    return kExitEnvironment;
  }
  std::thread serving([&service] { service.Run(); });
  std::cout << "serving http://" << service.Host() << ':' << port << "/ with the store "
            << (store ? *store : String("that brindlewayProj.ini names")) << std::endl;
  int signal = 0;
  sigwait(&stopSignals, &signal);
  program.Detail("stopping on signal " + std::to_string(signal));
  service.Stop();
  serving.join();
  return kExitOk;
}

}  // namespace

void AddServeCommand(CLI::App& app, Program& program) {
  auto options = std::make_shared<ServeOptions>();
  CLI::App* command = app.add_subcommand("serve", "Serve the HTTP JSON API and the storefront");
  command->footer(kServeFooter);
  CLI::Option* store =
      command->add_option("--store", options->store, "Connect every worker to this store file");
  command->add_option("--listen", options->listen, "HOST:PORT to listen on")
      ->capture_default_str();
  command->add_option("--threads", options->threads, "Worker threads, each with its own object")
      ->check(CLI::Range(1, 64))
      ->capture_default_str();
  command->callback([options, store, &program] {
    web::ServiceOptions service;
    SetAddress(options->listen, service);
    if (store->count()) service.store = options->store;
    service.threads = options->threads;
    program.exitCode = Serve(std::move(service), program);
  });
}

}  // namespace brindlewayProj::cli
