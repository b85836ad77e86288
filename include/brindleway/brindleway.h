// The brindleway component: one object through which clients open orders, fill and change
// baskets, place orders for delivery, list and read orders, and delete them.
//
// Statuses. Every public method but BuildMultiCond answers an Integer status: -1 the call
// failed; 0 nothing was found (nothing read or changed), or plain success for DbConnect,
// DbDisconnect, ProductToBuy and StartNewOrder; above 0 a row count of at most 32767 (a larger
// count is a failure, "Overflow").
//
// ReturnMsg. Always the first parameter; written on every path, never read. Its form is
// "<CompInfo: brindleway.Method> text", with the levels CompError, CompWarning and CompInfo.
// On -1 the text after the tag is the failure's description (Err().Description).
//
// Failures. A method never lets a failure out as an exception, with one exception: the four
// methods with a transaction (BuyAnOrder, ModifyOrderQuantity, ProductToBuy, StartNewOrder)
// roll back on their failure path, and when that Rollback fails too (no workspace after
// DbDisconnect, or no open transaction) the call throws that platform::Error, with ReturnMsg
// already written. On -1 only the status and ReturnMsg are to be relied on: out parameters and
// collections keep whatever was written before the failure.
//
// Out parameters. A reader writes an out parameter only when the field read has a value
// (not Null, not blank text, not Date 0), and fills a caller's Collection only when rows were
// found: neither is reset first, so on 0 they hold what the caller put there.
//
// Ownership. Objects pass as std::shared_ptr; the component keeps its references to the
// workspace and database only (shared with the caller of DbConnect), and nothing of a
// Recordset or Collection after a call returns. The Recordset that BasketTable hands out is
// the caller's.
//
// Threads. An object is used on the thread that created it; objects on different threads
// must not share a workspace or database. Two objects on one thread share that thread's
// default workspace, and with it its transaction.
#pragma once

#include <memory>

#include <brindleway/collection.h>
#include <brindleway/dao.h>
#include <brindleway/error.h>
#include <brindleway/export.h>
#include <brindleway/hooks.h>
#include <brindleway/variant.h>
#include <brindleway/version.h>

namespace brindlewayProj {

struct BrindlewayTestAccess;  // test-only window on the private methods

class BRINDLEWAY_API brindleway {
 public:
  using WorkspaceRef = std::shared_ptr<dao::Workspace>;
  using DatabaseRef = std::shared_ptr<dao::Database>;
  using RecordsetRef = std::shared_ptr<dao::Recordset>;
  using CollectionRef = std::shared_ptr<Collection>;

  // Message levels of ReturnMsg.
  static constexpr Byte CompError = 0;
  static constexpr Byte CompWarning = 1;
  static constexpr Byte CompInfo = 2;

  // Connects to the store named by brindlewayProj.ini beside the component (the first line
  // holding "brindleway" opens the section, the first later line holding "DbPath" gives the
  // path), or else to brindleway.mdb there. A failed connection shows one message box and
  // leaves a live object whose methods answer -1 until DbConnect succeeds. An ini file that
  // exists but cannot be read makes the construction throw that platform::Error, with no box.
  brindleway();
  // Disconnects; a failed disconnection shows one message box.
  ~brindleway();
  brindleway(const brindleway&) = delete;
  brindleway& operator=(const brindleway&) = delete;

  // Uses WSpace, or when it is Nothing the engine's first workspace, which is then written
  // into WSpace. Opens sDbFileName when it has a value (trimmed in the caller's Variant first),
  // else uses DBase when it is set, else opens the file settled at creation; the database
  // opened is written into DBase. Both are shared with the object, which closes neither.
  // 0 "Success"; -1 when the workspace or the file cannot be had (WSpace may already be
  // filled, DBase is as it came, the object keeps the database it held).
  Integer DbConnect(String& ReturnMsg, WorkspaceRef& WSpace, DatabaseRef& DBase,
                    Variant& sDbFileName);
  Integer DbConnect(String& ReturnMsg, WorkspaceRef& WSpace, DatabaseRef& DBase);
  // Gives up the object's workspace and database references and closes nothing: what the
  // caller of DbConnect still holds stays open. Always 0 "Success".
  Integer DbDisconnect(String& ReturnMsg);

  // "((field op value) OR ...)" over the values of colCond (the operator sCompOp, " = " by
  // default; values in double quotes when bQuote). Answers the condition, and no status: a
  // failure, such as a colCond of Nothing with a field given, leaves the call as a
  // platform::Error.
  String BuildMultiCond(String& sField, CollectionRef& colCond, String& sCompOp, bool& bQuote);
  String BuildMultiCond(String& sField, CollectionRef& colCond, String& sCompOp);
  String BuildMultiCond(String& sField, CollectionRef& colCond);

  // The product names of the order's basket rows, ascending, one item per row ("<Empty>" for
  // a Null name). n > 0 "Found n records": the caller's Collection is emptied and filled.
  // 0 "Did not find any records" (CompWarning): the Collection is untouched.
  Integer BasketList(String& ReturnMsg, CollectionRef& ostrProductNameCol, Long& OrderId);
  // The order's basket rows with ProductName, Vendor, ProductPrice, Quantity and "Extended
  // Price", as a snapshot standing on its first row. orsQueryResult receives the recordset on
  // n > 0 and on 0 (then an empty one); the caller owns it. -1 when the query cannot be opened
  // leaves it as it was; -1 "Overflow" (over 32767 rows) leaves the new recordset in it.
  Integer BasketTable(String& ReturnMsg, RecordsetRef& orsQueryResult, Long& OrderId);
  // Places the order: writes iintDelivery (1 for shipped) and, unless it is Date 0,
  // idtmDeliveryDate into the order's row, in one transaction. 1 "Success"; 0 "No records
  // found. Nothing to update" (CompInfo) when there is no such order; -1 stores nothing.
  Integer BuyAnOrder(String& ReturnMsg, Long& OrderId, Date& idtmDeliveryDate,
                     Integer& iintDelivery);
  // Deletes the order (its basket rows go with it) in one statement. n > 0 "n records
  // deleted"; 0 "No records found" at CompError; -1 deletes nothing, except that a count past
  // 32767 overflows after the rows are gone.
  Integer DeleteAnOrder(String& ReturnMsg, Long& OrderId);
  // As BasketList, but each name once, in the store's order.
  Integer GetOrderedProducts(String& ReturnMsg, CollectionRef& ostrProductNameCol,
                             Long& OrderId);
  // The customer's orders, newest first, one text per order: OrderId, OrderDate and
  // Description joined by istrSeparator, "<Empty>" for a field without value. On n > 0 the
  // Collection is emptied and filled, and an empty istrSeparator becomes ", " (also in the
  // caller's variable); on 0 both are untouched.
  Integer ListOfOrders(String& ReturnMsg, CollectionRef& ocolQueryResultCol,
                       String& istrSeparator, Long& CustomerId);
  // As ListOfOrders, for the customer's open orders (Delivery 0), in the store's order.
  // Delivery is neither read nor written.
  Integer ListOpenOrders(String& ReturnMsg, CollectionRef& ocolQueryResultCol,
                         String& istrSeparator, Long& CustomerId, Integer& Delivery);
  // As ListOfOrders, for the shipped orders (Delivery 1), with DeliveryDate after OrderDate.
  Integer ListShippedOrders(String& ReturnMsg, CollectionRef& ocolQueryResultCol,
                            String& istrSeparator, Long& CustomerId);
  // The first basket row whose product is named ProductName (any order): n > 0 "Found n
  // records" and the row's name and quantity written into the out parameters that have a
  // value; 0 writes neither. ProductName goes into the query text as it is.
  Integer LookupOrderedProduct(String& ReturnMsg, String& ostrProductName, Long& olngQuantity,
                               String& ProductName);
  // Writes ilngQuantity (when given; trimmed in the caller's Variant) into the first basket row
  // of the order and product, in one transaction. 1 "Success"; 0 "No records found. Nothing to
  // update" (CompInfo); -1 stores nothing.
  Integer ModifyOrderQuantity(String& ReturnMsg, Long& OrderId, Long& ProductId,
                              Variant& ilngQuantity);
  Integer ModifyOrderQuantity(String& ReturnMsg, Long& OrderId, Long& ProductId);
  // The order's fields, each written into its out parameter only when it has a value.
  // n > 0 "Found n records"; 0 writes none of them.
  Integer OrderDetail(String& ReturnMsg, Long& olngCustomerId, String& ostrFirstName,
                      String& ostrLastName, Date& odtmOrderDate, Date& odtmDeliveryDate,
                      Integer& ointDelivery, String& ostrDescription, Long& OrderId);
  // Adds one basket row (order, product, quantity) in one transaction, with no look at the
  // rows already there. 0 "Success"; -1 stores nothing (e.g. an unknown order or product).
  Integer ProductToBuy(String& ReturnMsg, Long& ilngOrderId, Long& ilngProductId,
                       Long& ilngQuantity);
  // The quantity of the order's basket row of that product: n > 0 "Found n records" (n
  // distinct quantities) and olngQuantity written when it has a value; 0 leaves it alone.
  Integer QuantityOrdered(String& ReturnMsg, Long& olngQuantity, Long& OrderId,
                          Long& ProductId);
  // Deletes every basket row of the order and product in one statement; answers as
  // DeleteAnOrder.
  Integer RemoveFromBasket(String& ReturnMsg, Long& OrderId, Long& ProductId);
  // Adds an order of ilngCustomerId in one transaction and writes its new key into
  // olngOrderId (0 "Success"). Dates and the description are written when given (the
  // caller's Variants are trimmed); iintDelivery is always written and must be given: left
  // out, the call answers -1 "Type mismatch". On -1 nothing is stored, and olngOrderId may
  // hold a key that no stored order will ever carry.
  Integer StartNewOrder(String& ReturnMsg, Long& olngOrderId, Long& ilngCustomerId,
                        Variant& idtmOrderDate, Variant& idtmDeliveryDate, Variant& iintDelivery,
                        Variant& istrDescription);
  Integer StartNewOrder(String& ReturnMsg, Long& olngOrderId, Long& ilngCustomerId,
                        Variant& idtmOrderDate, Variant& idtmDeliveryDate, Variant& iintDelivery);
  Integer StartNewOrder(String& ReturnMsg, Long& olngOrderId, Long& ilngCustomerId,
                        Variant& idtmOrderDate, Variant& idtmDeliveryDate);
  Integer StartNewOrder(String& ReturnMsg, Long& olngOrderId, Long& ilngCustomerId,
                        Variant& idtmOrderDate);
  Integer StartNewOrder(String& ReturnMsg, Long& olngOrderId, Long& ilngCustomerId);

 private:
  friend struct BrindlewayTestAccess;

  BRINDLEWAY_HIDDEN void Class_Initialize();
  BRINDLEWAY_HIDDEN void Class_Terminate();
  BRINDLEWAY_HIDDEN String ReadDbPath();
  BRINDLEWAY_HIDDEN bool HasValue(Variant& vValue);
  BRINDLEWAY_HIDDEN String BuildWhere(String& sField, Variant& vValue, bool& bConnect,
                                      Variant& vConnector, Variant& vCompOp);
  BRINDLEWAY_HIDDEN void ClearCollection(CollectionRef& colTarget);
  BRINDLEWAY_HIDDEN String BuildReturnMsg(const String& sMethodName, Byte bLevel,
                                          const Variant& vText = Variant::Missing());

  DatabaseRef mDBase;
  WorkspaceRef mWSpace;
  String mDbFileName;
};

}  // namespace brindlewayProj
