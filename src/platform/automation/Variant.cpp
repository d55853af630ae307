#include "platform/automation/Variant.h"

#include "platform/automation/Dispatch.h"

namespace tarn {

DispatchPtr::DispatchPtr(IDispatch* referenced) : object_(referenced) {
  if (object_ != nullptr) object_->AddRef();
}

DispatchPtr::~DispatchPtr() {
  if (object_ != nullptr) object_->Release();
}

DispatchPtr DispatchPtr::Adopt(IDispatch* referenced) {
  DispatchPtr pointer;
  pointer.object_ = referenced;
  return pointer;
}

Variant::Variant(TextArgument value) : kind_(Kind::Text) {
  if (!value.IsNull()) text_.emplace(value.View());
}

Variant::Variant(const Variant& other)
    : kind_(other.kind_), number_(other.number_), object_(other.object_), text_(other.AsText()) {}

Variant Variant::Borrow(TextArgument value) {
  if (value.IsNull() || !value.IsTerminated()) return Variant(value);
  Variant borrowing;
  borrowing.kind_ = Kind::Text;
  borrowing.borrowed_ = value.View();
  return borrowing;
}

const NullableText& Variant::AsText() const {
  if (borrowed_.data() != nullptr) text_.emplace(std::exchange(borrowed_, {}));
  return text_;
}

}  // namespace tarn
