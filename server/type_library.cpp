// The type library of brindlewayProj: the method table of _brindleway and lookups over it.
#include "server/type_library.h"

#include <algorithm>
#include <array>

#include <brindleway/brindleway.h>

#include "platform/ascii.h"
#include "server/dispatch_binding.h"

namespace brindlewayProj::server {
namespace {

constexpr LibraryInfo kLibrary{
    .name = "brindlewayProj",
    .helpString = "Object to access data in tables similiar to the database brindleway",
    .majorVersion = 1,
    .minorVersion = 0,
    .localeId = 0x409,
    .libraryGuid = "{6B1D3F52-8C0E-4A47-9E21-5D7A0C4B9F13}",
    .interfaceName = "_brindleway",
    .interfaceGuid = "{A3E7C915-2F4B-4D86-B0C8-71E94D2A6F05}",
    .className = "brindleway",
    .classGuid = "{D0F45B8A-6C13-47E2-8A9D-3B52E1C07F64}",
};

// The parameter lists, named k<Method>.
namespace params {
using enum TypeKind;

constexpr ParamInfo Required(std::string_view name, TypeKind type) {
  return {name, type, false, {}};
}
constexpr ParamInfo Optional(std::string_view name, TypeKind type, DefaultValue byDefault = {}) {
  return {name, type, true, byDefault};
}

constexpr ParamInfo kDbConnect[] = {Required("ReturnMsg", String), Required("WSpace", Workspace),
                                    Required("DBase", Database), Optional("sDbFileName", Variant)};
constexpr ParamInfo kDbDisconnect[] = {Required("ReturnMsg", String)};
constexpr ParamInfo kBuildMultiCond[] = {
    Required("sField", String), Required("colCond", Collection),
    Optional("sCompOp", String, {DefaultValue::Kind::Text, " = "}),
    Optional("bQuote", Boolean, {DefaultValue::Kind::Boolean, {}, false})};
constexpr ParamInfo kBasketList[] = {Required("ReturnMsg", String),
                                     Required("ostrProductNameCol", Collection),
                                     Required("OrderId", Long)};
constexpr ParamInfo kBasketTable[] = {Required("ReturnMsg", String),
                                      Required("orsQueryResult", Recordset),
                                      Required("OrderId", Long)};
constexpr ParamInfo kBuyAnOrder[] = {Required("ReturnMsg", String), Required("OrderId", Long),
                                     Required("idtmDeliveryDate", Date),
                                     Required("iintDelivery", Integer)};
constexpr ParamInfo kDeleteAnOrder[] = {Required("ReturnMsg", String), Required("OrderId", Long)};
constexpr ParamInfo kGetOrderedProducts[] = {Required("ReturnMsg", String),
                                             Required("ostrProductNameCol", Collection),
                                             Required("OrderId", Long)};
constexpr ParamInfo kListOfOrders[] = {
    Required("ReturnMsg", String), Required("ocolQueryResultCol", Collection),
    Required("istrSeparator", String), Required("CustomerId", Long)};
constexpr ParamInfo kListOpenOrders[] = {
    Required("ReturnMsg", String), Required("ocolQueryResultCol", Collection),
    Required("istrSeparator", String), Required("CustomerId", Long), Required("Delivery", Integer)};
constexpr ParamInfo kListShippedOrders[] = {
    Required("ReturnMsg", String), Required("ocolQueryResultCol", Collection),
    Required("istrSeparator", String), Required("CustomerId", Long)};
constexpr ParamInfo kLookupOrderedProduct[] = {
    Required("ReturnMsg", String), Required("ostrProductName", String),
    Required("olngQuantity", Long), Required("ProductName", String)};
constexpr ParamInfo kModifyOrderQuantity[] = {
    Required("ReturnMsg", String), Required("OrderId", Long), Required("ProductId", Long),
    Optional("ilngQuantity", Variant)};
constexpr ParamInfo kOrderDetail[] = {
    Required("ReturnMsg", String),     Required("olngCustomerId", Long),
    Required("ostrFirstName", String), Required("ostrLastName", String),
    Required("odtmOrderDate", Date),   Required("odtmDeliveryDate", Date),
    Required("ointDelivery", Integer), Required("ostrDescription", String),
    Required("OrderId", Long)};
constexpr ParamInfo kProductToBuy[] = {Required("ReturnMsg", String), Required("ilngOrderId", Long),
                                       Required("ilngProductId", Long),
                                       Required("ilngQuantity", Long)};
constexpr ParamInfo kQuantityOrdered[] = {Required("ReturnMsg", String),
                                          Required("olngQuantity", Long), Required("OrderId", Long),
                                          Required("ProductId", Long)};
constexpr ParamInfo kRemoveFromBasket[] = {Required("ReturnMsg", String), Required("OrderId", Long),
                                           Required("ProductId", Long)};
constexpr ParamInfo kStartNewOrder[] = {
    Required("ReturnMsg", String),         Required("olngOrderId", Long),
    Required("ilngCustomerId", Long),      Optional("idtmOrderDate", Variant),
    Optional("idtmDeliveryDate", Variant), Optional("iintDelivery", Variant),
    Optional("istrDescription", Variant)};

}  // namespace params

// The dispatch id of the method at `place` in the class's method table.
constexpr Long DispIdAt(Integer place) { return 0x60030000 | place; }

// One entry: the parameter list k<Name> and a call of the overload that takes all of them,
// so that a parameter type that disagrees with the class does not compile.
// clang-format off
#define BRINDLEWAY_METHOD(place, Name, resultType)                                   \
  MethodInfo{#Name, DispIdAt(place), TypeKind::resultType, params::k##Name,          \
             MakeInvoker<params::k##Name>(                                           \
                 [](brindleway& object, auto&... values) { return object.Name(values...); })}
// clang-format on

const std::array<MethodInfo, 18> kMethods = {
    BRINDLEWAY_METHOD(2, DbConnect, Integer),
    BRINDLEWAY_METHOD(3, DbDisconnect, Integer),
    BRINDLEWAY_METHOD(6, BuildMultiCond, String),
    BRINDLEWAY_METHOD(10, BasketList, Integer),
    BRINDLEWAY_METHOD(11, BasketTable, Integer),
    BRINDLEWAY_METHOD(12, BuyAnOrder, Integer),
    BRINDLEWAY_METHOD(13, DeleteAnOrder, Integer),
    BRINDLEWAY_METHOD(14, GetOrderedProducts, Integer),
    BRINDLEWAY_METHOD(15, ListOfOrders, Integer),
    BRINDLEWAY_METHOD(16, ListOpenOrders, Integer),
    BRINDLEWAY_METHOD(17, ListShippedOrders, Integer),
    BRINDLEWAY_METHOD(18, LookupOrderedProduct, Integer),
    BRINDLEWAY_METHOD(19, ModifyOrderQuantity, Integer),
    BRINDLEWAY_METHOD(20, OrderDetail, Integer),
    BRINDLEWAY_METHOD(21, ProductToBuy, Integer),
    BRINDLEWAY_METHOD(22, QuantityOrdered, Integer),
    BRINDLEWAY_METHOD(23, RemoveFromBasket, Integer),
    BRINDLEWAY_METHOD(24, StartNewOrder, Integer),
};

#undef BRINDLEWAY_METHOD

String DefaultText(const DefaultValue& byDefault) {
  switch (byDefault.kind) {
    case DefaultValue::Kind::Text: {
      String quoted(1, '"');
      quoted += byDefault.text;
      quoted += '"';
      return quoted;
    }
    case DefaultValue::Kind::Boolean:
      return byDefault.flag ? "True" : "False";
    case DefaultValue::Kind::None:
      break;
  }
  return {};
}

}  // namespace

const LibraryInfo& Library() { return kLibrary; }

String ProgId() { return String(kLibrary.name) + "." + String(kLibrary.className); }

std::span<const MethodInfo> Methods() { return kMethods; }

const MethodInfo* FindMethod(std::string_view name) {
  auto found = std::ranges::find_if(kMethods, [name](const MethodInfo& method) {
    return platform::EqualsIgnoringAsciiCase(method.name, name);
  });
  return found == kMethods.end() ? nullptr : &*found;
}

const MethodInfo* FindMethod(Long dispId) {
  auto found = std::ranges::find(kMethods, dispId, &MethodInfo::dispId);
  return found == kMethods.end() ? nullptr : &*found;
}

int FindParam(const MethodInfo& method, std::string_view name) {
  auto found = std::ranges::find_if(method.params, [name](const ParamInfo& param) {
    return platform::EqualsIgnoringAsciiCase(param.name, name);
  });
  return found == method.params.end() ? -1 : static_cast<int>(found - method.params.begin());
}

std::string_view TypeName(TypeKind type) {
  switch (type) {
    case TypeKind::Integer:
      return "Integer";
    case TypeKind::Long:
      return "Long";
    case TypeKind::String:
      return "String";
    case TypeKind::Date:
      return "Date";
    case TypeKind::Boolean:
      return "Boolean";
    case TypeKind::Variant:
      return "Variant";
    case TypeKind::Collection:
      return "Collection";
    case TypeKind::Recordset:
      return "Recordset";
    case TypeKind::Workspace:
      return "Workspace";
    case TypeKind::Database:
      return "Database";
  }
  return "?";
}

Variant LeftOutValue(const ParamInfo& param) {
  switch (param.byDefault.kind) {
    case DefaultValue::Kind::Text:
      return String(param.byDefault.text);
    case DefaultValue::Kind::Boolean:
      return param.byDefault.flag;
    case DefaultValue::Kind::None:
      break;
  }
  return Variant::Missing();
}

String Signature(const MethodInfo& method) {
  String text = String(method.name) + "(";
  for (std::size_t i = 0; i < method.params.size(); ++i) {
    const ParamInfo& param = method.params[i];
    String one = String(param.name) + " As " + String(TypeName(param.type));
    if (param.byDefault.kind != DefaultValue::Kind::None)
      one += " = " + DefaultText(param.byDefault);
    text += (i ? ", " : "") + (param.optional ? "[" + one + "]" : one);
  }
  return text + ") As " + String(TypeName(method.result));
}

}  // namespace brindlewayProj::server
