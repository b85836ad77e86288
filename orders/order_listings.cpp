// ListOfOrders, ListOpenOrders, ListShippedOrders: a customer's orders as lines of text, one
// road for all three, which differ only in the query and the fields of a line.
#include <functional>
#include <optional>
#include <span>

#include <brindleway/brindleway.h>
#include "component/method_frame.h"

namespace brindlewayProj {

namespace {

struct OrderListing {
  const char* methodName;
  const char* selectFrom;        // the column list and the source, up to the condition
  std::optional<Long> delivery;  // the fixed Delivery of the condition, if any
  const char* ordering;
  std::span<const char* const> fields;  // the fields of a line, in order
};

constexpr const char* kOrderFields[] = {"OrderId", "OrderDate", "Description"};
constexpr const char* kShippedFields[] = {"OrderId", "OrderDate", "DeliveryDate", "Description"};

const OrderListing kAllOrders{
    "ListOfOrders", "Select [OrderId], [OrderDate], [Description] From [OrdersWithNames] ",
    std::nullopt, " Order By [OrderDate] Desc", kOrderFields};
const OrderListing kOpenOrders{
    "ListOpenOrders", "Select [OrderId], [OrderDate], [Description] From [OrdersWithNames] ", 0, "",
    kOrderFields};
const OrderListing kShippedOrders{
    "ListShippedOrders",
    "Select [OrderId], [OrderDate], [DeliveryDate], [Description] From [OrdersWithNames] ", 1,
    " Order By [OrderDate] Desc", kShippedFields};

// One line: the fields' texts ("<Empty>" for a field without a value) joined by `separator`.
String LineOf(const dao::Recordset& rows, std::span<const char* const> fields,
              const String& separator) {
  String line = component::FieldTextOrEmpty(rows, fields.front());
  for (const char* field : fields.subspan(1)) {
    line += separator;
    line += component::FieldTextOrEmpty(rows, field);
  }
  return line;
}

// The query of a listing for one customer.
String QueryOf(const OrderListing& listing, Long customerId) {
  const String condition = listing.delivery ? component::KeyCondition("CustomerId", customerId,
                                                                      "Delivery", *listing.delivery)
                                            : component::KeyCondition("CustomerId", customerId);
  return listing.selectFrom + condition + listing.ordering;
}

// One listing for one customer. The caller's collection is emptied (by `clear`), and an empty
// separator defaulted to ", ", only when rows are found, after the count has been reported.
Integer ListOrders(const OrderListing& listing, String& ReturnMsg,
                   const std::shared_ptr<dao::Database>& database,
                   const std::shared_ptr<Collection>& lines, String& separator, Long customerId,
                   const std::function<void()>& clear) {
  return component::ReadRowsInto(
      listing.methodName, ReturnMsg, database, QueryOf(listing, customerId), lines,
      [&] {
        clear();
        if (separator.empty()) separator = ", ";
      },
      [&](const dao::Recordset& rows) { return LineOf(rows, listing.fields, separator); });
}

}  // namespace

Integer brindleway::ListOfOrders(String& ReturnMsg, CollectionRef& ocolQueryResultCol,
                                 String& istrSeparator, Long& CustomerId) {
  return ListOrders(kAllOrders, ReturnMsg, mDBase, ocolQueryResultCol, istrSeparator, CustomerId,
                    [&] { ClearCollection(ocolQueryResultCol); });
}

// Delivery is part of the signature only: the listing always selects Delivery 0.
Integer brindleway::ListOpenOrders(String& ReturnMsg, CollectionRef& ocolQueryResultCol,
                                   String& istrSeparator, Long& CustomerId,
                                   [[maybe_unused]] Integer& Delivery) {
  return ListOrders(kOpenOrders, ReturnMsg, mDBase, ocolQueryResultCol, istrSeparator, CustomerId,
                    [&] { ClearCollection(ocolQueryResultCol); });
}

Integer brindleway::ListShippedOrders(String& ReturnMsg, CollectionRef& ocolQueryResultCol,
                                      String& istrSeparator, Long& CustomerId) {
  return ListOrders(kShippedOrders, ReturnMsg, mDBase, ocolQueryResultCol, istrSeparator,
                    CustomerId, [&] { ClearCollection(ocolQueryResultCol); });
}

}  // namespace brindlewayProj
