// Runtime failures: the error numbers and texts of the host runtime, and the current failure
// (the runtime's Err object) that a method's failure path reads.
#pragma once

#include <stdexcept>

#include <brindleway/export.h>
#include <brindleway/types.h>

namespace brindlewayProj::platform {

// Error numbers of the runtime itself; the store uses the 3000 range.
enum ErrorNumber : Long {
  errInvalidProcedureCall = 5,
  errOverflow = 6,
  errOutOfMemory = 7,
  errSubscriptOutOfRange = 9,
  errTypeMismatch = 13,
  errInternal = 51,
  errFileNotFound = 53,
  errInputPastEndOfFile = 62,
  errPathFileAccess = 75,
  errObjectNotSet = 91,
  errInvalidUseOfNull = 94,
  errObjectDoesNotSupport = 438,
  // An object used on another thread than the one it belongs to (the platform's
  // RPC_E_WRONG_THREAD, 0x8001010E).
  errWrongThread = static_cast<Long>(0x8001010Eu),
};

// The runtime's own text for one of its error numbers ("Overflow" for 6); an unknown
// number gives "Application-defined or object-defined error".
BRINDLEWAY_API String RuntimeErrorText(Long number);

// A failure as the runtime raises it: a number and a description.
// Where a store failure came from, beside its number and description: the query text that
// failed, and the storage engine's own code and message. Empty for the runtime's own failures
// and for what the object model refuses before the engine is asked.
struct FailureContext {
  String query;
  Long engineCode = 0;
  String engineMessage;
};

class BRINDLEWAY_API Error : public std::runtime_error {
 public:
  Error(Long number, const String& description, FailureContext context = {});
  explicit Error(Long number);  // with the runtime's own text
  Long Number() const { return number_; }
  const String& Description() const { return description_; }
  const FailureContext& Context() const { return context_; }
  // Names the query text that failed, unless a query is named already.
  void SetQuery(const String& query);

 private:
  Long number_;
  String description_;
  FailureContext context_;
};

[[noreturn]] BRINDLEWAY_API void Raise(Long number);
[[noreturn]] BRINDLEWAY_API void Raise(Long number, const String& description);

// The current failure of the running method, as a handler sees it; cleared when a method
// arms its failure path. One per thread, as calls run on their caller's thread.
struct BRINDLEWAY_API ErrObject {
  Long Number = 0;
  String Description;
  FailureContext Context;
  void Clear();
  void Set(const Error& failure);
};
BRINDLEWAY_API ErrObject& Err();

}  // namespace brindlewayProj::platform
