// A late-bound client: creates brindlewayProj.brindleway through the registry, connects it to
// the store named on the command line and calls methods by name. Prints "ok"; any other
// outcome fails.
#include <iostream>
#include <vector>

#include <brindleway/collection.h>
#include <brindleway/dispatch.h>
#include <brindleway/hooks.h>

using namespace brindlewayProj;

int main(int argc, char** argv) {
  if (argc != 2) return 2;  // usage: late STORE
  // The store beside the library does not exist here: answer the box of the failed
  // connection at creation without showing it.
  platform::SetMessageBoxHandler([](const String&, Integer) { return Integer{1}; });
  try {
    std::shared_ptr<server::Dispatch> shop = client::CreateObject("brindlewayProj.brindleway");
    std::vector<server::Argument> connect{
        {"ReturnMsg", String()}, {"WSpace", nullptr}, {"DBase", nullptr}, {"sDbFileName", argv[1]}};
    auto names = std::make_shared<Collection>();
    std::vector<server::Argument> list{{"", String()}, {"", names}, {"", Long{1}}};
    const bool connected = CInt(shop->Invoke("DbConnect", connect)) == 0;
    const Integer found = connected ? CInt(shop->Invoke("BasketList", list)) : 0;
    if (found < 1 || names->Count() != found) {  // BasketList of order 1 finds its rows
      std::cerr << "late: " << CStr(connect[0].value) << "; " << CStr(list[0].value) << '\n';
      return 1;
    }
  } catch (const platform::Error& failure) {
    std::cerr << "late: error " << failure.Number() << ": " << failure.Description() << '\n';
    return 1;
  }
  std::cout << "ok\n";
  return 0;
}
