// The brindleway component: one object through which clients open orders, fill and change
// baskets, place orders for delivery, list and read orders, and delete them.
//
// Every public method but BuildMultiCond answers an Integer status (-1 failure; 0 nothing
// found, or plain success for DbConnect, DbDisconnect, ProductToBuy and StartNewOrder; above
// 0 a row count of at most 32767) and writes a message into ReturnMsg of the form
// "<CompInfo: brindleway.Method> text". A failure never leaves a method as an exception,
// unless the rollback on its failure path fails too; then ReturnMsg already holds the text.
#pragma once

#include <memory>

#include <brindleway/collection.h>
#include <brindleway/dao.h>
#include <brindleway/error.h>
#include <brindleway/hooks.h>
#include <brindleway/variant.h>

namespace brindlewayProj {

struct BrindlewayTestAccess;  // test-only window on the private methods

class brindleway {
 public:
  using WorkspaceRef = std::shared_ptr<dao::Workspace>;
  using DatabaseRef = std::shared_ptr<dao::Database>;
  using RecordsetRef = std::shared_ptr<dao::Recordset>;
  using CollectionRef = std::shared_ptr<Collection>;

  // Message levels of ReturnMsg.
  static constexpr Byte CompError = 0;
  static constexpr Byte CompWarning = 1;
  static constexpr Byte CompInfo = 2;

  // Connects to the store named by brindlewayProj.ini beside the component, or else to
  // brindleway.mdb there; a failed connection shows one message box and leaves a live object.
  brindleway();
  // Disconnects; a failed disconnection shows one message box.
  ~brindleway();
  brindleway(const brindleway&) = delete;
  brindleway& operator=(const brindleway&) = delete;

  // Takes WSpace (or the engine's first workspace) and opens sDbFileName (or the file settled
  // at creation) unless DBase is given; fills the caller's WSpace and DBase.
  Integer DbConnect(String& ReturnMsg, WorkspaceRef& WSpace, DatabaseRef& DBase,
                    Variant& sDbFileName);
  Integer DbConnect(String& ReturnMsg, WorkspaceRef& WSpace, DatabaseRef& DBase);
  // Gives up the object's workspace and database references; closes nothing.
  Integer DbDisconnect(String& ReturnMsg);

  // "((field op value) OR|AND ...)" over the values of colCond; no failure path.
  String BuildMultiCond(String& sField, CollectionRef& colCond, String& sCompOp, bool& bQuote);
  String BuildMultiCond(String& sField, CollectionRef& colCond, String& sCompOp);
  String BuildMultiCond(String& sField, CollectionRef& colCond);

  Integer BasketList(String& ReturnMsg, CollectionRef& ostrProductNameCol, Long& OrderId);
  Integer BasketTable(String& ReturnMsg, RecordsetRef& orsQueryResult, Long& OrderId);
  Integer BuyAnOrder(String& ReturnMsg, Long& OrderId, Date& idtmDeliveryDate,
                     Integer& iintDelivery);
  Integer DeleteAnOrder(String& ReturnMsg, Long& OrderId);
  Integer GetOrderedProducts(String& ReturnMsg, CollectionRef& ostrProductNameCol,
                             Long& OrderId);
  Integer ListOfOrders(String& ReturnMsg, CollectionRef& ocolQueryResultCol,
                       String& istrSeparator, Long& CustomerId);
  Integer ListOpenOrders(String& ReturnMsg, CollectionRef& ocolQueryResultCol,
                         String& istrSeparator, Long& CustomerId, Integer& Delivery);
  Integer ListShippedOrders(String& ReturnMsg, CollectionRef& ocolQueryResultCol,
                            String& istrSeparator, Long& CustomerId);
  Integer LookupOrderedProduct(String& ReturnMsg, String& ostrProductName, Long& olngQuantity,
                               String& ProductName);
  Integer ModifyOrderQuantity(String& ReturnMsg, Long& OrderId, Long& ProductId,
                              Variant& ilngQuantity);
  Integer ModifyOrderQuantity(String& ReturnMsg, Long& OrderId, Long& ProductId);
  Integer OrderDetail(String& ReturnMsg, Long& olngCustomerId, String& ostrFirstName,
                      String& ostrLastName, Date& odtmOrderDate, Date& odtmDeliveryDate,
                      Integer& ointDelivery, String& ostrDescription, Long& OrderId);
  Integer ProductToBuy(String& ReturnMsg, Long& ilngOrderId, Long& ilngProductId,
                       Long& ilngQuantity);
  Integer QuantityOrdered(String& ReturnMsg, Long& olngQuantity, Long& OrderId,
                          Long& ProductId);
  Integer RemoveFromBasket(String& ReturnMsg, Long& OrderId, Long& ProductId);
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

  void Class_Initialize();
  void Class_Terminate();
  String ReadDbPath();
  bool HasValue(Variant& vValue);
  String BuildWhere(String& sField, Variant& vValue, bool& bConnect, Variant& vConnector,
                    Variant& vCompOp);
  void ClearCollection(CollectionRef& colTarget);
  String BuildReturnMsg(const String& sMethodName, Byte bLevel,
                        const Variant& vText = Variant::Missing());

  DatabaseRef mDBase;
  WorkspaceRef mWSpace;
  String mDbFileName;
};

}  // namespace brindlewayProj
