// Runtime error texts, the Error exception and the per-thread current failure.
#include <brindleway/error.h>

namespace brindlewayProj::platform {

String RuntimeErrorText(Long number) {
  switch (number) {
    case errInvalidProcedureCall: return "Invalid procedure call or argument";
    case errOverflow: return "Overflow";
    case errOutOfMemory: return "Out of memory";
    case errSubscriptOutOfRange: return "Subscript out of range";
    case errTypeMismatch: return "Type mismatch";
    case errInternal: return "Internal error";
    case errFileNotFound: return "File not found";
    case errInputPastEndOfFile: return "Input past end of file";
    case errPathFileAccess: return "Path/File access error";
    case errObjectNotSet: return "Object variable or With block variable not set";
    case errInvalidUseOfNull: return "Invalid use of Null";
    case errObjectDoesNotSupport: return "Object doesn't support this property or method";
    case errWrongThread:
      return "The application called an interface that was marshalled for a different thread.";
    default: return "Application-defined or object-defined error";
  }
}

Error::Error(Long number, const String& description, FailureContext context)
    : std::runtime_error(description),
      number_(number),
      description_(description),
      context_(std::move(context)) {}

void Error::SetQuery(const String& query) {
  if (context_.query.empty()) context_.query = query;
}

Error::Error(Long number) : Error(number, RuntimeErrorText(number)) {}

void Raise(Long number) { throw Error(number); }

void Raise(Long number, const String& description) { throw Error(number, description); }

void ErrObject::Clear() {
  Number = 0;
  Description.clear();
  Context = {};
}

void ErrObject::Set(const Error& failure) {
  Number = failure.Number();
  Description = failure.Description();
  Context = failure.Context();
}

// A thread's failure lives as long as the thread; an object destroyed after that (one of static
// storage, at the end of the process) gets one that outlives every thread.
ErrObject& Err() {
  thread_local bool gone = false;  // trivially destroyed: still readable at the thread's end
  struct Holder {
    ErrObject current;
    ~Holder() { gone = true; }
  };
  thread_local Holder holder;
  if (gone) {
    static ErrObject afterThreadEnd;
    return afterThreadEnd;
  }
  return holder.current;
}

}  // namespace brindlewayProj::platform
