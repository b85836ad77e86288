// brindleway demo: the road of a typical sale, call by call, on a sample store.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <brindleway/dao.h>
#include <brindleway/hooks.h>
#include "store/schema.h"
#include "store/store_name.h"
#include "tools/commands.h"
#include "tools/json_forms.h"
#include "tools/late_call.h"
#include "tools/session.h"

namespace brindlewayProj::cli {
namespace {

constexpr const char* kDemoFooter =
    R"(Walks through a typical sale on a store: StartNewOrder, ProductToBuy for three products,
ModifyOrderQuantity, RemoveFromBasket, BasketList, BasketTable, QuantityOrdered,
ListOpenOrders, BuyAnOrder, ListShippedOrders, OrderDetail and ListOfOrders, printing
each call with its status, message and changed arguments (with --json one JSON line per
call, as 'brindleway call --json' prints it, with the "arguments" given). The object is
created through the registry (run 'brindleway register' first) and connected to FILE, by
default brindleway.mdb beside brindlewayProj.so; a missing store file is created with sample
data. FILE may be a PostgreSQL connection URI; 'brindleway create --sample URI' fills an
empty database first.

Exit codes: 0 every call answered status 0 or more; 1 a call answered -1 or failed;
2 a usage error; 3 the store or the object could not be used.)";

struct DemoOptions {
  String store;
  bool json = false;
};

// The first `count` values of a whole-number column, in order.
std::vector<String> FirstKeys(dao::Database& store, const String& column, const String& table,
                              std::size_t count) {
  std::shared_ptr<dao::Recordset> rows =
      store.OpenRecordset("Select [" + column + "] From [" + table + "] Order By [" + column + "]",
                          dao::dbOpenSnapshot);
  std::vector<String> keys;
  for (; !Deref(rows).Eof() && keys.size() < count; rows->MoveNext()) {
    keys.push_back(CStr(Deref(Deref(rows->Fields()).Item(column)).Value()));
  }
  if (keys.size() < count) {
    platform::Raise(platform::errInvalidProcedureCall,
                    "the store holds fewer than " + std::to_string(count) + " " + table);
  }
  return keys;
}

// The date `days` from today, as ISO text.
String DateFromToday(int days) {
  auto day = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now()) +
             std::chrono::days(days);
  std::chrono::year_month_day date(day);
  char text[16];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", int(date.year()), unsigned(date.month()),
                unsigned(date.day()));
  return text;
}

// Name=value as a shell takes it back: a value with blanks in double quotes.
String ShellWord(const String& assignment) {
  if (assignment.find(' ') == String::npos) return assignment;
  std::size_t equals = assignment.find('=');
  return assignment.substr(0, equals + 1) + "\"" + assignment.substr(equals + 1) + "\"";
}

class Demo {
 public:
  Demo(server::Dispatch& object, const Program& program, bool json)
      : object_(object), program_(program), json_(json) {}

  // Prints and makes one call; a status below 0 or a failed call stops the demo.
  std::vector<server::Argument> Call(const String& methodName,
                                     const std::vector<String>& assignments) {
    const server::MethodInfo& method = MethodNamed(methodName);
    std::vector<server::Argument> arguments = ArgumentsFromText(method, assignments);
    const CallReport report = CallMethod(object_, method, arguments);
    if (json_) {
      Json answer = JsonOf(report);
      Json given = Json::object();
      for (const String& assignment : assignments) {
        const std::size_t equals = assignment.find('=');
        given[assignment.substr(0, equals)] = assignment.substr(equals + 1);
      }
      answer["arguments"] = std::move(given);
      std::cout << JsonLine(answer) << '\n';
    } else if (!program_.quiet || ExitCodeOf(report) != kExitOk) {
      std::cout << "\n> " << method.name;
      for (const String& assignment : assignments) std::cout << ' ' << ShellWord(assignment);
      std::cout << '\n';
      WriteText(report, std::cout);
    }
    if (report.failure) throw *report.failure;
    if (ExitCodeOf(report) != kExitOk) throw Stopped{};
    return arguments;
  }

  struct Stopped {};

 private:
  server::Dispatch& object_;
  const Program& program_;
  const bool json_;
};

Variant ArgumentValue(const std::vector<server::Argument>& arguments, const String& name) {
  for (const server::Argument& argument : arguments) {
    if (argument.name == name) return argument.value;
  }
  return Variant();
}

void WalkTheSale(Demo& demo, const String& customer, const std::vector<String>& products) {
  std::vector<server::Argument> started = demo.Call(
      "StartNewOrder", {"ilngCustomerId=" + customer, "iintDelivery=0",
                        "idtmOrderDate=" + DateFromToday(0), "istrDescription=Demo order"});
  const String order = CStr(ArgumentValue(started, "olngOrderId"));
  const String orderId = "OrderId=" + order;
  for (std::size_t i = 0; i < products.size(); ++i) {
    demo.Call("ProductToBuy", {"ilngOrderId=" + order, "ilngProductId=" + products[i],
                               "ilngQuantity=" + std::to_string(i + 1)});
  }
  demo.Call("ModifyOrderQuantity", {orderId, "ProductId=" + products[1], "ilngQuantity=5"});
  demo.Call("RemoveFromBasket", {orderId, "ProductId=" + products[2]});
  demo.Call("BasketList", {orderId});
  demo.Call("BasketTable", {orderId});
  demo.Call("QuantityOrdered", {orderId, "ProductId=" + products[1]});
  demo.Call("ListOpenOrders", {"istrSeparator= | ", "CustomerId=" + customer, "Delivery=0"});
  demo.Call("BuyAnOrder", {orderId, "idtmDeliveryDate=" + DateFromToday(3), "iintDelivery=1"});
  demo.Call("ListShippedOrders", {"istrSeparator= | ", "CustomerId=" + customer});
  demo.Call("OrderDetail", {orderId});
  demo.Call("ListOfOrders", {"istrSeparator= | ", "CustomerId=" + customer});
}

int RunDemo(const DemoOptions& options, const Program& program) {
  const String storeFile =
      options.store.empty() ? platform::App::Path() + "/brindleway.mdb" : options.store;
  String customer;
  std::vector<String> products;
  std::shared_ptr<server::Dispatch> object;
  const bool database = store::IsConnectionUri(storeFile);
  const String shown = database ? store::WithoutPassword(storeFile) : storeFile;
  try {
    if (!database && !std::filesystem::exists(storeFile)) {
      store::CreateStore(storeFile, true);
      program.Note("created sample store " + storeFile, options.json);
    }
    {
      std::shared_ptr<dao::Database> database =
          Deref(dao::DBEngine().Workspaces(0)).OpenDatabase(storeFile);
      customer = FirstKeys(*database, "CustomerId", "Customers", 1).front();
      products = FirstKeys(*database, "ProductId", "Products", 3);
    }
    object = OpenSession(storeFile, program);
  } catch (const platform::Error& failure) {
    // The default store lies beside the library, which an installed system may not let its
    // users write to.
    Program::Fail(shown + ": " + failure.Description() +
                  (options.store.empty() ? " ('demo --store FILE' runs on a store elsewhere)" : ""));
    return kExitEnvironment;
  }
  program.Note("store " + shown + ", customer " + customer, options.json);
  Demo demo(*object, program, options.json);
  try {
    WalkTheSale(demo, customer, products);
  } catch (const Demo::Stopped&) {
    Program::Fail("the demo stopped at a failed call");
    return kExitCallFailed;
  } catch (const platform::Error& failure) {
    Program::Fail("the call failed: error " + std::to_string(failure.Number()) + ": " +
                  failure.Description());
    return kExitCallFailed;
  }
  return kExitOk;
}

}  // namespace

void AddDemoCommand(CLI::App& app, Program& program) {
  auto options = std::make_shared<DemoOptions>();
  CLI::App* command =
      app.add_subcommand("demo", "Walk through a typical sale, printing every call");
  command->footer(kDemoFooter);
  command->add_option("--store", options->store,
                      "The store file (created with sample data when missing) or PostgreSQL URI");
  command->add_flag("--json", options->json, "One JSON line per call");
  command->callback([options, &program] { program.exitCode = RunDemo(*options, program); });
}

}  // namespace brindlewayProj::cli
