// Operations of tarn/automation.h: a thin layer over the automation classes that converts strings
// and references and keeps exceptions from crossing the C boundary.

#include <tarn/automation.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <utility>

#include "platform/automation/CInterfaceWindows.h"
#include "platform/automation/ClassRegistry.h"
#include "platform/automation/RunningObjects.h"

namespace tarn {

namespace {

static_assert(static_cast<int>(DispatchStatus::NoObject) == TARN_NO_OBJECT);
static_assert(static_cast<int>(DispatchStatus::UnknownMember) == TARN_UNKNOWN_MEMBER);
static_assert(static_cast<int>(DispatchStatus::WrongCount) == TARN_WRONG_COUNT);
static_assert(static_cast<int>(DispatchStatus::WrongType) == TARN_WRONG_TYPE);
static_assert(static_cast<int>(DispatchStatus::NotImplemented) == TARN_NOT_IMPLEMENTED);
static_assert(static_cast<int>(DispatchStatus::Failed) == TARN_FAILED);
static_assert(sizeof(TarnVariant) == 8 + 2 * sizeof(void*), "programs lay out their own");

// Fixed-size, so that reporting an error cannot fail for lack of memory.
struct LastOutcome {
  char text[1001] = "";
  TarnError error = {TARN_OK, -1, text};
};

LastOutcome& OutcomeOfThread() {
  static thread_local LastOutcome outcome;
  return outcome;
}

std::int32_t Report(std::int32_t status, const char* text = "", int argument = -1) noexcept {
  LastOutcome& outcome = OutcomeOfThread();
  std::snprintf(outcome.text, sizeof outcome.text, "%s", text);
  outcome.error.status = status;
  outcome.error.argument = argument;
  return status;
}

std::int32_t Report(const DispatchResult& result) noexcept {
  return Report(static_cast<std::int32_t>(result.status), result.text.c_str(), result.argument);
}

std::int32_t ReportNull() noexcept {
  return Report(TARN_BAD_CALL, "a null pointer was given");
}

template <class Work>
std::int32_t Guarded(Work&& work) noexcept {
  try {
    return work();
  } catch (const std::exception& failure) {
    return Report(TARN_FAILED, failure.what());
  } catch (...) {
    return Report(TARN_FAILED, "the call failed");
  }
}

IDispatch* ObjectOf(TarnObject* object) {
  return reinterpret_cast<IDispatch*>(object);
}

// Passes a reference to the caller.
TarnObject* HandOut(const DispatchPtr& object) {
  if (object) object->AddRef();
  return reinterpret_cast<TarnObject*>(object.Get());
}

// --- Values ---

bool ReadValue(const TarnVariant& from, Variant& to) {
  switch (from.kind) {
    case TARN_EMPTY:
      return true;
    case TARN_LONG:
      to = Variant(from.as.number);
      return true;
    case TARN_TEXT:
      to = from.as.text.data == nullptr
               ? Variant(NullableText())
               : Variant(std::string(from.as.text.data, from.as.text.length));
      return true;
    case TARN_OBJECT:
      to = Variant(DispatchPtr(ObjectOf(from.as.object)));
      return true;
    default:
      return false;
  }
}

TarnVariant WriteValue(const Variant& from) {
  switch (from.GetKind()) {
    case Variant::Kind::Long:
      return TarnLong(from.AsLong());
    case Variant::Kind::Object:
      return TarnObjectOf(HandOut(from.AsObject()));
    case Variant::Kind::Text:
      break;
    case Variant::Kind::Empty:
      return TarnEmpty();
  }
  TarnVariant value = TarnText(nullptr);
  if (!from.AsText()) return value;
  const std::string& text = *from.AsText();
  char* copy = new char[text.size() + 1];
  std::memcpy(copy, text.c_str(), text.size() + 1);
  value.as.text.data = copy;
  value.as.text.length = text.size();
  return value;
}

void ClearVariant(TarnVariant* result) {
  if (result == nullptr) return;
  const TarnVariant held = std::exchange(*result, TarnEmpty());
  if (held.kind == TARN_TEXT) delete[] held.as.text.data;
  if (held.kind == TARN_OBJECT)
    c_interface::Quietly([&] { DispatchPtr::Adopt(ObjectOf(held.as.object)); });
}

std::int32_t KindOf(ValueType type) {
  switch (type) {
    case ValueType::Long:
    case ValueType::UnsignedLong:
      return TARN_LONG;
    case ValueType::Text:
      return TARN_TEXT;
    case ValueType::Object:
      return TARN_OBJECT;
    case ValueType::None:
      break;
  }
  return TARN_EMPTY;
}

// --- Objects ---

std::int32_t CreateObject(const char* classId, TarnObject** object) {
  if (object != nullptr) *object = nullptr;
  if (classId == nullptr || object == nullptr) return ReportNull();
  return Guarded([&] {
    std::string reason;
    const DispatchPtr made = ClassRegistry::Native().CreateInstance(classId, &reason);
    *object = HandOut(made);
    return made ? Report(TARN_OK) : Report(TARN_NO_CLASS, reason.c_str());
  });
}

std::int32_t FindRunningObject(const char* classId, TarnObject** object) {
  if (object != nullptr) *object = nullptr;
  if (classId == nullptr || object == nullptr) return ReportNull();
  return Guarded([&] {
    const std::string id = ClassRegistry::Native().ClassIdOf(classId);
    const DispatchPtr found = RunningObjectTable::Native().GetActiveObject(id);
    *object = HandOut(found);
    if (found) return Report(TARN_OK);
    return Report(TARN_NO_OBJECT, ("no object of " + std::string(classId) + " is running").c_str());
  });
}

void AddReference(TarnObject* object) {
  if (object != nullptr) c_interface::Quietly([&] { ObjectOf(object)->AddRef(); });
}

void Release(TarnObject* object) {
  c_interface::Quietly([&] { DispatchPtr::Adopt(ObjectOf(object)); });
}

// --- Calls ---

DispatchResult Call(IDispatch& object, DispatchId id, const TarnVariant* arguments,
                    std::size_t count, TarnVariant* result) {
  std::vector<Variant> values(count);
  for (std::size_t i = 0; i < count; ++i) {
    if (ReadValue(arguments[i], values[i])) continue;
    return {DispatchStatus::WrongType, "argument " + std::to_string(i + 1) + " is of no known kind",
            static_cast<int>(i)};
  }
  Variant answer;
  DispatchResult outcome = object.Invoke(id, values, answer);
  if (outcome && result != nullptr) *result = WriteValue(answer);
  return outcome;
}

// `name` null: calls by number.
std::int32_t CallMethod(TarnObject* object, const char* name, DispatchId id,
                        const TarnVariant* arguments, std::size_t count, TarnVariant* result) {
  if (result != nullptr) *result = TarnEmpty();
  if (object == nullptr) return Report(TARN_NO_OBJECT, "no object was given");
  if (arguments == nullptr && count > 0) return ReportNull();
  return Guarded([&] {
    const DispatchPtr alive(ObjectOf(object));
    if (name != nullptr) {
      const DispatchResult found = alive->GetIDsOfNames(name, id);
      if (!found) return Report(found);
    }
    return Report(Call(*alive.Get(), id, arguments, count, result));
  });
}

std::int32_t GetId(TarnObject* object, const char* name, std::int32_t* id) {
  if (object == nullptr) return Report(TARN_NO_OBJECT, "no object was given");
  if (name == nullptr || id == nullptr) return ReportNull();
  return Guarded([&] { return Report(ObjectOf(object)->GetIDsOfNames(name, *id)); });
}

std::int32_t Invoke(TarnObject* object, std::int32_t id, const TarnVariant* arguments,
                    std::size_t count, TarnVariant* result) {
  return CallMethod(object, nullptr, id, arguments, count, result);
}

std::int32_t InvokeByName(TarnObject* object, const char* name, const TarnVariant* arguments,
                          std::size_t count, TarnVariant* result) {
  if (name == nullptr && result != nullptr) *result = TarnEmpty();
  if (name == nullptr) return ReportNull();
  return CallMethod(object, name, 0, arguments, count, result);
}

std::int32_t ListMethods(TarnObject* object, void (*visit)(void* context, const TarnMethod* method),
                         void* context) {
  if (object == nullptr) return Report(TARN_NO_OBJECT, "no object was given");
  if (visit == nullptr) return ReportNull();
  return Guarded([&] {
    for (const MethodInfo& each : ObjectOf(object)->GetMethods()) {
      const std::vector<std::string> texts(each.arguments.begin(), each.arguments.end());
      std::vector<const char*> names;
      names.reserve(texts.size());
      for (const std::string& text : texts) names.push_back(text.c_str());
      std::vector<std::int32_t> kinds(names.size(), TARN_EMPTY);
      const std::size_t known = std::min(names.size(), each.types.size());
      std::transform(each.types.begin(), each.types.begin() + static_cast<std::ptrdiff_t>(known),
                     kinds.begin(), KindOf);
      const std::string name(each.name);
      const TarnMethod method = {name.c_str(),        each.id,
                                 KindOf(each.result), static_cast<std::int32_t>(names.size()),
                                 names.data(),        kinds.data()};
      visit(context, &method);
    }
    return Report(TARN_OK);
  });
}

const TarnError* LastError() {
  return &OutcomeOfThread().error;
}

constexpr TarnAutomation kAutomation = {
    sizeof(TarnAutomation),
    TARN_AUTOMATION_VERSION,
    CreateObject,
    FindRunningObject,
    AddReference,
    Release,
    GetId,
    Invoke,
    InvokeByName,
    ListMethods,
    ClearVariant,
    LastError,
    c_interface::AddWindow,
    c_interface::RemoveWindow,
    c_interface::Pump,
    c_interface::PumpUntil,
    c_interface::SetWakeHandler,
    c_interface::UntilNextTimer,
};

}  // namespace

}  // namespace tarn

extern "C" const TarnAutomation* TarnGetAutomation(std::uint32_t version) {
  return version == TARN_AUTOMATION_VERSION ? &tarn::kAutomation : nullptr;
}
