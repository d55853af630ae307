#pragma once

#include <algorithm>
#include <atomic>
#include <exception>
#include <initializer_list>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/automation/Dispatch.h"
#include "platform/text/Text.h"

// Dispatch interface generated from typed member functions:
//
//   const DispatchTable<CThing>& CThing::Table() {
//     static const DispatchTable<CThing> table({
//         Method<&CThing::Open>("Open", 1, {"path"}),
//         Method<&CThing::Close>("Close", 2, {}),
//     });
//     return table;
//   }
//
// Argument types: const char* (null if the caller passed null), std::int32_t, std::uint32_t or
// IDispatch*. Result types: std::int32_t, std::string, DispatchPtr, DispatchResult or void. A
// number accepts any 32-bit long; an empty variant is passed as a null string, 0 or no object.
namespace tarn {

namespace dispatch_detail {

inline bool Convert(const Variant& from, const char*& to) {
  if (from.GetKind() == Variant::Kind::Empty) return to = nullptr, true;
  if (from.GetKind() != Variant::Kind::Text) return false;
  to = from.AsCText();
  return true;
}

inline bool Convert(const Variant& from, std::int32_t& to) {
  if (from.GetKind() == Variant::Kind::Empty) return to = 0, true;
  if (from.GetKind() != Variant::Kind::Long) return false;
  to = from.AsLong();
  return true;
}

inline bool Convert(const Variant& from, std::uint32_t& to) {
  std::int32_t number = 0;
  if (!Convert(from, number)) return false;
  to = static_cast<std::uint32_t>(number);
  return true;
}

inline bool Convert(const Variant& from, IDispatch*& to) {
  if (from.GetKind() == Variant::Kind::Empty) return to = nullptr, true;
  if (from.GetKind() != Variant::Kind::Object) return false;
  to = from.AsObject().Get();
  return true;
}

// Automation type that corresponds to a C++ type.
template <class T>
constexpr ValueType TypeOf() {
  if constexpr (std::is_same_v<T, std::int32_t>) return ValueType::Long;
  if constexpr (std::is_same_v<T, std::uint32_t>) return ValueType::UnsignedLong;
  if constexpr (std::is_same_v<T, const char*> || std::is_same_v<T, std::string>) {
    return ValueType::Text;
  }
  if constexpr (std::is_same_v<T, IDispatch*> || std::is_same_v<T, DispatchPtr>) {
    return ValueType::Object;
  }
  return ValueType::None;
}

template <class Tuple>
struct TypesOf;
template <class... A>
struct TypesOf<std::tuple<A...>> {
  static std::vector<ValueType> List() { return {TypeOf<A>()...}; }
};

// Class, result type and decayed argument types of a member function.
template <class Member>
struct MemberTraits;
template <class T, class R, class... A>
struct MemberTraits<R (T::*)(A...)> {
  using Class = T;
  using Returned = R;
  using Arguments = std::tuple<std::decay_t<A>...>;
};
template <class T, class R, class... A>
struct MemberTraits<R (T::*)(A...) const> : MemberTraits<R (T::*)(A...)> {};
template <class T, class R, class... A>
struct MemberTraits<R (T::*)(A...) noexcept> : MemberTraits<R (T::*)(A...)> {};
template <class T, class R, class... A>
struct MemberTraits<R (T::*)(A...) const noexcept> : MemberTraits<R (T::*)(A...)> {};

// Converts the arguments from index I on. Returns false, with the index in `wrong`, at the first
// one of a wrong type.
template <std::size_t I, class Tuple>
bool ConvertFrom(std::span<const Variant> from, Tuple& to, int& wrong) {
  if constexpr (I == std::tuple_size_v<Tuple>) {
    return true;
  } else {
    if (!Convert(from[I], std::get<I>(to))) {
      wrong = static_cast<int>(I);
      return false;
    }
    return ConvertFrom<I + 1>(from, to, wrong);
  }
}

}  // namespace dispatch_detail

// Entry of a DispatchTable: the signature of a method, and the function that converts the arguments
// and calls it.
template <class T>
struct DispatchMethod {
  using Invoker = DispatchResult (*)(T&, std::span<const Variant>, Variant&);
  MethodInfo info;
  std::size_t argumentCount = 0;
  Invoker invoke = nullptr;
};

// Creates the entry of a member function; argument and result types are derived from its signature.
// `names` are the names of the arguments.
template <auto Member>
auto Method(std::string_view name, DispatchId id, std::initializer_list<std::string_view> names) {
  using Traits = dispatch_detail::MemberTraits<decltype(Member)>;
  using T = typename Traits::Class;
  DispatchMethod<T> method;
  method.info = {name, id, std::vector<std::string_view>(names),
                 dispatch_detail::TypesOf<typename Traits::Arguments>::List(),
                 dispatch_detail::TypeOf<typename Traits::Returned>()};
  method.argumentCount = std::tuple_size_v<typename Traits::Arguments>;
  method.invoke = [](T& object, std::span<const Variant> given, Variant& result) {
    typename Traits::Arguments arguments{};
    int wrong = -1;
    if (!dispatch_detail::ConvertFrom<0>(given, arguments, wrong)) {
      return DispatchResult{DispatchStatus::WrongType,
                            "argument " + std::to_string(wrong + 1) + " has the wrong type", wrong};
    }
    auto call = [&object](auto&&... each) -> decltype(auto) { return (object.*Member)(each...); };
    using Returned = typename Traits::Returned;
    if constexpr (std::is_void_v<Returned>) {
      std::apply(call, arguments);
      result = Variant();
      return DispatchResult{};
    } else if constexpr (std::is_same_v<Returned, DispatchResult>) {
      return std::apply(call, arguments);
    } else {
      result = Variant(std::apply(call, arguments));
      return DispatchResult{};
    }
  };
  return method;
}

// The methods of a class, by number and by name. Numbers are small and non-negative. Immutable
// after construction, so it may be read from any thread. Lookup by number is an array access,
// lookup by name a linear search.
template <class T>
class DispatchTable {
 public:
  explicit DispatchTable(std::vector<DispatchMethod<T>> list) : methods_(std::move(list)) {
    DispatchId last = 0;
    for (const auto& method : methods_) last = std::max(last, method.info.id);
    byId_.assign(static_cast<std::size_t>(last) + 1, nullptr);
    for (const auto& method : methods_) {
      if (method.info.id >= 0) byId_[static_cast<std::size_t>(method.info.id)] = &method;
    }
  }
  DispatchTable(const DispatchTable&) = delete;
  DispatchTable& operator=(const DispatchTable&) = delete;

  const DispatchMethod<T>* Find(DispatchId id) const {
    const auto index = static_cast<std::size_t>(id);
    return id >= 0 && index < byId_.size() ? byId_[index] : nullptr;
  }
  const DispatchMethod<T>* Find(std::string_view name) const {
    for (const auto& method : methods_) {
      if (EqualNoCase(method.info.name, name)) return &method;
    }
    return nullptr;
  }
  const std::vector<DispatchMethod<T>>& Methods() const { return methods_; }

 private:
  std::vector<DispatchMethod<T>> methods_;
  std::vector<const DispatchMethod<T>*> byId_;
};

// Base of a reference-counted object with a dispatch table. `T` derives from it and has
//   static const DispatchTable<T>& Table();
// An object starts with one reference and is deleted by its final Release.
template <class T>
class DispatchObject : public IDispatch {
 public:
  std::uint32_t AddRef() override { return ++references_; }

  std::uint32_t Release() override {
    const std::uint32_t left = --references_;
    if (left != 0) return left;
    // A temporary reference taken during destruction must not destroy the object a second time.
    references_ = 0x40000000;
    OnFinalRelease();
    return 0;
  }

  DispatchResult GetIDsOfNames(std::string_view name, DispatchId& id) override {
    const auto* method = T::Table().Find(name);
    if (method == nullptr) {
      return {DispatchStatus::UnknownMember, "no method named \"" + std::string(name) + "\"", -1};
    }
    id = method->info.id;
    return {};
  }

  DispatchResult Invoke(DispatchId id, std::span<const Variant> arguments,
                        Variant& result) override {
    result = Variant();
    const auto* method = T::Table().Find(id);
    if (method == nullptr) {
      return {DispatchStatus::UnknownMember, "no method with the number " + std::to_string(id), -1};
    }
    if (arguments.size() != method->argumentCount) {
      return {DispatchStatus::WrongCount,
              std::string(method->info.name) + " takes " + std::to_string(method->argumentCount) +
                  " arguments, " + std::to_string(arguments.size()) + " were given",
              -1};
    }
    try {
      return method->invoke(static_cast<T&>(*this), arguments, result);
    } catch (const std::exception& failure) {
      return {DispatchStatus::Failed, failure.what(), -1};
    } catch (...) {
      return {DispatchStatus::Failed, std::string(method->info.name) + " failed", -1};
    }
  }

  std::vector<MethodInfo> GetMethods() override {
    std::vector<MethodInfo> list;
    for (const auto& method : T::Table().Methods()) list.push_back(method.info);
    return list;
  }

 protected:
  // Called when the last reference is released. An override may delay the deletion.
  virtual void OnFinalRelease() { delete this; }

 private:
  std::atomic<std::uint32_t> references_{1};
};

}  // namespace tarn
