// Late-bound calls on the worker's object and the HTTP codes of their answers.
#include "web/method_call.h"

#include <nlohmann/json.hpp>

#include "server/type_library.h"
#include "store/errors.h"
#include "web/worker_pool.h"

namespace brindlewayProj::web {

Integer MethodAnswer::Status() const { return report.failure ? Integer{-1} : CInt(report.result); }

const Variant& MethodAnswer::Value(std::string_view parameter) const {
  for (const server::Argument& argument : arguments) {
    if (argument.name == parameter) return argument.value;
  }
  throw std::logic_error("no argument " + String(parameter));
}

Json MethodAnswer::Head() const {
  Json head = cli::JsonOf(report);
  head.erase("changed");
  return head;
}

MethodAnswer CallOnWorker(std::string_view method, std::span<const cli::GivenArgument> given,
                          Changes changes) {
  const server::MethodInfo* info = server::FindMethod(method);
  if (!info) throw ApiError(kNotFound, "method", "no method '" + String(method) + "'");
  MethodAnswer answer;
  try {
    answer.arguments = cli::ArgumentsFromValues(*info, given);
  } catch (const cli::UsageError& usage) {
    throw ApiError(kBadRequest, "value", usage.what());
  }
  ShopSession& session = WorkerPool::Current();
  platform::Err().Clear();
  if (changes == Changes::Report) {
    answer.report = cli::CallMethod(*session.object, *info, answer.arguments);
  } else {
    answer.report.method = info;
    try {
      answer.report.result = session.object->Invoke(info->dispId, answer.arguments);
    } catch (const platform::Error& failure) {
      answer.report.failure = failure;
    }
    if (answer.arguments.front().name == "ReturnMsg") {
      answer.report.returnMsg = CStr(answer.arguments.front().value);
    }
  }
  answer.failureNumber = platform::Err().Number;
  return answer;
}

int HttpStatusOf(const MethodAnswer& answer, OnZero zero) {
  if (answer.report.failure) return kServerError;
  if (answer.report.method->result != server::TypeKind::Integer) return kOk;
  const Integer status = answer.Status();
  if (status > 0) return kOk;
  if (status == 0) return zero == OnZero::NotFound ? kNotFound : kOk;
  switch (answer.failureNumber) {
    case platform::errInvalidProcedureCall:
    case platform::errOverflow:
    case platform::errTypeMismatch:
    case platform::errInvalidUseOfNull:
    case store::errSyntax:
    case store::errUnknownName:
      return kBadRequest;
    case store::errRelatedRecordRequired:
    case store::errRelatedRecordsExist:
    case store::errDuplicateKey:
    case store::errRequiredField:
      return kUnprocessable;
    case store::errLocked:
    case store::errConflict:
      return kConflict;
    case platform::errObjectNotSet:
    case store::errFileNotFound:
    case store::errReadOnly:
    case store::errDiskFull:
      return kUnavailable;
    default:
      return kServerError;
  }
}

}  // namespace brindlewayProj::web
