// The class factory of brindleway, and the count of the objects it made that are still alive.
#pragma once

#include <memory>

#include <brindleway/dispatch.h>

namespace brindlewayProj::server {

class ClassFactory {
 public:
  virtual ~ClassFactory() = default;
  // A new object behind its late-bound interface. Creating it connects it to its store; a
  // failed connection shows a message box and still gives a live object.
  virtual std::shared_ptr<Dispatch> CreateInstance() = 0;
};

// The factory of class brindleway; it lives as long as the component stays loaded.
ClassFactory& BrindlewayClassFactory();

// The brindleway objects made by the factory and not yet destroyed.
Long ObjectsAlive();

}  // namespace brindlewayProj::server
