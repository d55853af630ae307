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

}  // namespace tarn
