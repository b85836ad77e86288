// Creation of a worker's component object through the linked server's class factory.
#include "web/shop_session.h"

#include "server/class_factory.h"
#include "server/server_exports.h"
#include "server/type_library.h"
#include "tools/store_connection.h"

namespace brindlewayProj::web {

ShopSession OpenShopSession(const std::optional<String>& store) {
  server::ClassFactory* factory = nullptr;
  const String classGuid(server::Library().classGuid);
  if (DllGetClassObject(classGuid.c_str(), &factory) != server::kOk) {
    platform::Raise(client::errCannotCreateObject, "the linked server has no class " + classGuid);
  }
  ShopSession session;
  session.object = factory->CreateInstance();
  session.database = cli::ConnectToStore(*session.object, store);
  return session;
}

}  // namespace brindlewayProj::web
