// Binding of late-bound arguments to a method's typed parameters: each Variant is converted
// to the parameter's C++ type by the platform's conversions, the method runs on the bound
// values, and every value is written back into its Variant afterwards (through a reference to
// the caller's variable, or by replacing a plain Variant).
#pragma once

#include <memory>
#include <span>
#include <tuple>
#include <utility>

#include "server/type_library.h"
#include <brindleway/collection.h>
#include <brindleway/dao.h>

namespace brindlewayProj::server {

// An object parameter takes Nothing or an object of its class; anything else raises 13.
template <class T>
std::shared_ptr<T> BindObject(const Variant& argument) {
  if (!IsObject(argument)) platform::Raise(platform::errTypeMismatch);
  const std::shared_ptr<Object>& object = argument.AsObject();
  if (!object) return nullptr;
  std::shared_ptr<T> typed = std::dynamic_pointer_cast<T>(object);
  if (!typed) platform::Raise(platform::errTypeMismatch);
  return typed;
}

template <class T, auto Convert>
struct ValueBinding {
  using Type = T;
  static T Bind(Variant& argument) { return Convert(argument); }
  static void WriteBack(Variant& argument, const T& value) { argument.Assign(Variant(value)); }
};

template <class T>
struct ObjectBinding {
  using Type = std::shared_ptr<T>;
  static Type Bind(Variant& argument) { return BindObject<T>(argument); }
  static void WriteBack(Variant& argument, const Type& value) { argument.Assign(Variant(value)); }
};

template <TypeKind K>
struct Binding;
template <>
struct Binding<TypeKind::Integer> : ValueBinding<Integer, CInt> {};
template <>
struct Binding<TypeKind::Long> : ValueBinding<Long, CLng> {};
template <>
struct Binding<TypeKind::String> : ValueBinding<String, CStr> {};
template <>
struct Binding<TypeKind::Date> : ValueBinding<Date, CDate> {};
template <>
struct Binding<TypeKind::Boolean> : ValueBinding<bool, CBool> {};
template <>
struct Binding<TypeKind::Collection> : ObjectBinding<Collection> {};
template <>
struct Binding<TypeKind::Recordset> : ObjectBinding<dao::Recordset> {};
template <>
struct Binding<TypeKind::Workspace> : ObjectBinding<dao::Workspace> {};
template <>
struct Binding<TypeKind::Database> : ObjectBinding<dao::Database> {};
// A Variant parameter is the argument itself: the method reads and assigns it directly.
template <>
struct Binding<TypeKind::Variant> {
  using Type = Variant&;
  static Variant& Bind(Variant& argument) { return argument; }
  static void WriteBack(Variant&, const Variant&) {}
};

// Binds `arguments` (one per parameter, in order) to `Params`, calls `Call{}(object, ...)` and
// writes every bound value back, also when the call fails, so that a ReturnMsg written before
// the failure reaches the caller.
template <const auto& Params, class Call, std::size_t... I>
Variant InvokeBound(brindleway& object, std::span<Variant> arguments, std::index_sequence<I...>) {
  std::tuple<typename Binding<Params[I].type>::Type...> bound{
      Binding<Params[I].type>::Bind(arguments[I])...};
  auto writeBack = [&] {
    (Binding<Params[I].type>::WriteBack(arguments[I], std::get<I>(bound)), ...);
  };
  try {
    Variant result(std::apply([&](auto&... values) { return Call{}(object, values...); }, bound));
    writeBack();
    return result;
  } catch (...) {
    writeBack();
    throw;
  }
}

template <const auto& Params, class Call>
Variant Invoke(brindleway& object, std::span<Variant> arguments) {
  return InvokeBound<Params, Call>(object, arguments,
                                   std::make_index_sequence<std::size(Params)>());
}

// The Invoker of a method with parameters `Params`, whose call is the lambda `call`.
template <const auto& Params, class Call>
constexpr Invoker MakeInvoker(Call) {
  return &Invoke<Params, Call>;
}

}  // namespace brindlewayProj::server
