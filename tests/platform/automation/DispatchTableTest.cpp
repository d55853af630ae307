#include <gtest/gtest.h>

#include "TestObject.h"

namespace tarn::test {
namespace {

std::string Show(const Variant& value) {
  switch (value.GetKind()) {
    case Variant::Kind::Empty:
      return "empty";
    case Variant::Kind::Long:
      return std::to_string(value.AsLong());
    case Variant::Kind::Text:
      return value.AsText().value_or("null");
    case Variant::Kind::Object:
      return value.AsObject() ? "object" : "no object";
  }
  return "?";
}

std::string Call(IDispatch& object, DispatchId id, const std::vector<Variant>& arguments) {
  Variant result = std::string("left over");
  const DispatchResult outcome = object.Invoke(id, arguments, result);
  if (outcome) return Show(result);
  return "status " + std::to_string(static_cast<int>(outcome.status)) + ", " + outcome.text + ", " +
         std::to_string(outcome.argument) + ", " + Show(result);
}

TEST(Variant, BorrowsCharactersUntilItsTextOrACopyIsTaken) {
  std::string text = "a b";
  const Variant borrowing = Variant::Borrow(text);
  EXPECT_EQ(borrowing.GetKind(), Variant::Kind::Text);
  EXPECT_EQ(static_cast<const void*>(borrowing.AsCText()), text.c_str());
  const Variant copied = Variant::Borrow(text);
  const Variant copy = copied;
  const Variant taken = Variant::Borrow(text);
  EXPECT_EQ(taken.AsText(), "a b");
  text[0] = 'x';
  EXPECT_STREQ(borrowing.AsCText(), "x b");
  EXPECT_STREQ(copy.AsCText(), "a b");
  EXPECT_EQ(taken.AsText(), "a b");
  EXPECT_STREQ(taken.AsCText(), "a b");

  EXPECT_STREQ(Variant::Borrow(std::string_view(text).substr(0, 1)).AsCText(), "x");
  EXPECT_EQ(Variant::Borrow(std::string("a\0b", 3)).AsText(), std::string("a\0b", 3));
  EXPECT_EQ(Variant::Borrow(nullptr).AsText(), std::nullopt);
  EXPECT_EQ(Variant::Borrow(nullptr).AsCText(), nullptr);
  EXPECT_EQ(Variant::Borrow(NullableText("")).AsText(), "");
}

TEST(DispatchTable, EachShapeOfCallArrivesOrIsRefused) {
  const DispatchPtr object = DispatchPtr::Adopt(new TestObject);
  const struct {
    const char* name;
    DispatchId id;
    std::vector<Variant> arguments;
    const char* expected;
  } rows[] = {
      {"text and number", 1, {"a b", -5}, "'a b'+-5"},
      {"empty text stays empty", 1, {"", 0}, "''+0"},
      {"null text stays null", 1, {static_cast<const char*>(nullptr), 0}, "null+0"},
      {"high bit of an unsigned", 2, {-1}, "1"},
      {"object", 3, {object}, "1"},
      {"no object", 3, {Variant()}, "0"},
      {"object result", 4, {}, "object"},
      {"no result", 5, {}, "empty"},
      {"gap in the numbers", 6, {}, "status 2, no method with the number 6, -1, empty"},
      {"number behind the end", 10, {}, "status 2, no method with the number 10, -1, empty"},
      {"too few", 1, {"a"}, "status 3, Join takes 2 arguments, 1 were given, -1, empty"},
      {"too many", 5, {1}, "status 3, Nothing takes 0 arguments, 1 were given, -1, empty"},
      {"number for a text", 1, {1, 1}, "status 4, argument 1 has the wrong type, 0, empty"},
      {"text for a number", 1, {"", "1"}, "status 4, argument 2 has the wrong type, 1, empty"},
      {"text for an object", 3, {""}, "status 4, argument 1 has the wrong type, 0, empty"},
      {"not implemented", 7, {1}, "status 5, later, -1, empty"},
      {"exception", 8, {0}, "status 6, broken, -1, empty"},
      {"exception of no known type", 8, {1}, "status 6, Throw failed, -1, empty"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Call(*object.Get(), row.id, row.arguments), row.expected) << row.name;
  }
}

TEST(DispatchTable, NamesAreFoundInAnyCaseAndUnknownOnesRefused) {
  const DispatchPtr object = DispatchPtr::Adopt(new TestObject);
  DispatchId id = 0;
  EXPECT_TRUE(object->GetIDsOfNames("unsigned", id));
  EXPECT_EQ(id, 2);
  const DispatchResult unknown = object->GetIDsOfNames("Joi", id);
  EXPECT_EQ(unknown.status, DispatchStatus::UnknownMember);
  EXPECT_EQ(unknown.text, "no method named \"Joi\"");
}

TEST(DispatchObject, EndsOnceAlsoWhenItHandsItselfOutInItsDestructor) {
  TestObject::alive = 0;
  DispatchPtr first = DispatchPtr::Adopt(new TestObject);
  DispatchPtr second = first;
  first.Reset();
  EXPECT_EQ(TestObject::alive, 1);
  const DispatchPtr third = std::move(second);
  EXPECT_FALSE(second);
  EXPECT_EQ(third->AddRef(), 2u);
  EXPECT_EQ(third->Release(), 1u);
  const_cast<DispatchPtr&>(third).Reset();
  EXPECT_EQ(TestObject::alive, 0);
}

}  // namespace
}  // namespace tarn::test
