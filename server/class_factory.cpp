// The late-bound brindleway object, its factory, and the count of live objects.
#include "server/class_factory.h"

#include <atomic>
#include <thread>

#include <brindleway/brindleway.h>

#include "server/invoke.h"

namespace brindlewayProj::server {
namespace {

std::atomic<Long> liveObjects{0};

// One brindleway object behind the late-bound interface; counted while it lives. It belongs to
// the thread that created it, as an apartment's object does: a call from another thread is
// refused before it reaches the object.
class BrindlewayDispatch final : public Dispatch {
 public:
  BrindlewayDispatch() { ++liveObjects; }
  ~BrindlewayDispatch() override { --liveObjects; }

  using Dispatch::Invoke;

  Long GetIdOfName(const String& name) const override {
    const MethodInfo* method = FindMethod(name);
    if (!method) platform::Raise(platform::errObjectDoesNotSupport);
    return method->dispId;
  }

  Variant Invoke(Long dispId, std::span<Argument> arguments) override {
    if (std::this_thread::get_id() != owner_) platform::Raise(platform::errWrongThread);
    const MethodInfo* method = FindMethod(dispId);
    if (!method) platform::Raise(platform::errObjectDoesNotSupport);
    return InvokeMethod(object_, *method, arguments);
  }

 private:
  const std::thread::id owner_ = std::this_thread::get_id();
  brindleway object_;
};

class BrindlewayFactory final : public ClassFactory {
 public:
  std::shared_ptr<Dispatch> CreateInstance() override {
    return std::make_shared<BrindlewayDispatch>();
  }
};

}  // namespace

ClassFactory& BrindlewayClassFactory() {
  static BrindlewayFactory factory;
  return factory;
}

Long ObjectsAlive() { return liveObjects.load(); }

}  // namespace brindlewayProj::server
