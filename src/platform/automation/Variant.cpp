#include "platform/automation/Variant.h"

#include "platform/automation/Dispatch.h"

namespace tarn {

DispatchPtr::DispatchPtr(IDispatch* referenced) : object(referenced) {
  if (object != nullptr) object->AddRef();
}

DispatchPtr::~DispatchPtr() {
  if (object != nullptr) object->Release();
}

DispatchPtr DispatchPtr::Adopt(IDispatch* referenced) {
  DispatchPtr pointer;
  pointer.object = referenced;
  return pointer;
}

Variant::Variant(TextArgument value) : kind(Kind::Text) {
  if (!value.IsNull()) text.emplace(value.View());
}

}  // namespace tarn
