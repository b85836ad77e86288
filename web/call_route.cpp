// POST /api/call/{Method}: any method of the component, late-bound, with its arguments by
// parameter name as the program's call command takes them, answered as 'call --json' answers.
#include <nlohmann/json.hpp>

#include "server/type_library.h"
#include "web/method_call.h"
#include "web/routes.h"

namespace brindlewayProj::web {
namespace {

Answer CallRoute(const httplib::Request& request) {
  const String method = request.matches[1];
  // The worker's connection is the service's: a client may neither drop it nor point it at
  // another file on this machine.
  const server::MethodInfo* info = server::FindMethod(method);
  if (info && (info->name == "DbConnect" || info->name == "DbDisconnect")) {
    throw ApiError(kForbidden, "method",
                   String(info->name) + " is not offered over HTTP: the service holds the connection");
  }
  std::vector<cli::GivenArgument> given;
  try {
    given = cli::GivenArgumentsOf(BodyObject(request));
  } catch (const cli::UsageError& usage) {
    throw ApiError(kBadRequest, "value", usage.what());
  }
  MethodAnswer answer = CallOnWorker(method, given, Changes::Report);
  return {HttpStatusOf(answer, OnZero::Ok), cli::JsonOf(answer.report)};
}

}  // namespace

void AddCallRoute(httplib::Server& server) {
  server.Post(R"(/api/call/([A-Za-z]+))", JsonRoute(CallRoute));
}

}  // namespace brindlewayProj::web
