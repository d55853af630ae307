#include "hosts/serve/ArgumentBinding.h"

#include <gtest/gtest.h>

namespace tarn::host {
namespace {

using nlohmann::json;

std::string Describe(const Variant& value) {
  if (value.GetKind() == Variant::Kind::Long) return std::to_string(value.AsLong());
  if (value.GetKind() != Variant::Kind::Text) return "?";
  return value.AsText() ? "'" + *value.AsText() + "'" : "null";
}

std::string Bind(const std::string& params) {
  const MethodInfo method{"Save", 1, {"key", "value"}};
  std::vector<Variant> arguments;
  const CallProblem problem =
      BindArguments(method, params.empty() ? json() : json::parse(params), arguments);
  if (problem.code != 0) return std::to_string(problem.code) + " " + problem.text;
  std::string text;
  for (const Variant& each : arguments) text += Describe(each) + " ";
  return text;
}

TEST(ArgumentBinding, ParamsBecomeArgumentsOrAnErrorThatSaysWhichOneIsWrong) {
  const std::pair<const char*, const char*> rows[] = {
      {R"(["a", "b"])", "'a' 'b' "},
      {R"({"value": "", "key": null})", "null '' "},
      {R"([33042, -1])", "33042 -1 "},
      {R"([2147483648, 4294967295])", "-2147483648 -1 "},
      {R"([1.0, -2147483648])", "1 -2147483648 "},
      {R"([1.5, 0])", "-32602 Save: key is not a 32-bit integer"},
      {R"([0, 4294967296])", "-32602 Save: value is not a 32-bit integer"},
      {R"([1e300, 0])", "-32602 Save: key is not a 32-bit integer"},
      {R"([-2147483649, 0])", "-32602 Save: key is not a 32-bit integer"},
      {R"([true, 0])", "-32602 Save: key is neither a string nor a number"},
      {R"([0, ["x"]])", "-32602 Save: value is neither a string nor a number"},
      {R"(["a\u0000b", 0])", "-32602 Save: key contains a zero byte"},
      {R"(["a"])", "-32602 Save takes key, value; got 1"},
      {R"(["a", "b", "c"])", "-32602 Save takes key, value; got 3"},
      {"", "-32602 Save takes key, value; got 0"},
      {R"({"key": "a"})", "-32602 Save takes key, value; \"value\" is missing"},
      {R"({"key": "a", "value": 1, "more": 2})",
       "-32602 Save takes key, value; unknown argument \"more\""},
      {R"({"Key": "a", "value": 1})",
       "-32602 Save takes key, value; unknown argument \"Key\". Did you mean \"key\"?"},
  };
  for (const auto& [params, expected] : rows) EXPECT_EQ(Bind(params), expected) << params;
}

}  // namespace
}  // namespace tarn::host
