#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "LoopbackServer.h"
#include "automation/ErrorInfo.h"
#include "remote/Proxy.h"
#include "remote/Stub.h"

namespace tarvik::remote {
namespace {

using automation::AutomationArray;
using automation::String;

/// What one call handed in, written down the same way on both sides.
std::string Shown(AutomationString bstr) { return bstr ? "'" + automation::ToText(bstr) + "'" : "no string"; }
std::string Shown(const AutomationArray *pArray) {
  if (!pArray) return "no array";
  std::string strText = std::to_string(pArray->rgsabound[0].lLbound) + ":";
  for (std::uint32_t i = 0; i < pArray->rgsabound[0].cElements; ++i)
    strText += " " + std::to_string(static_cast<const std::uint8_t *>(pArray->pvData)[i]);
  return strText;
}
std::string Shown(const AutomationVariant &variant) {
  return std::to_string(variant.vt) + " " +
         (variant.vt == automation::VtString ? Shown(variant.bstrVal) : std::to_string(variant.iVal));
}
template <class T>
requires std::is_arithmetic_v<T> std::string Shown(T value) { return std::to_string(value); }
template <class T>
requires std::is_arithmetic_v<T> std::string Shown(T *pValue) { return std::to_string(*pValue); }
std::string Shown(AutomationString *pValue) { return Shown(*pValue); }
std::string Shown(AutomationArray **ppArray) { return Shown(*ppArray); }
template <class T>
requires std::derived_from<T, IUnknown> std::string Shown(T **) { return "object"; }

/// What the driver is to see of it. A string's place arrives empty, whatever the caller held there.
template <class T>
std::string Arriving(T value) {
  if constexpr (std::is_same_v<T, AutomationString *>)
    return "no string";
  else
    return Shown(value);
}

/// Values to hand in, and other ones to come back; each argument of a call gets its own.
struct Values {
  int intSeed;
  int Next() { return ++intSeed; }
};
template <class T>
struct Sample;
template <class T>
requires std::is_arithmetic_v<T>
struct Sample<T> {
  explicit Sample(Values &values) : value(static_cast<T>(values.Next())) {}
  T Pass() { return value; }
  T value;
};
template <class T>
requires std::is_arithmetic_v<T>
struct Sample<T *> {
  explicit Sample(Values &values) : value(static_cast<T>(values.Next())) {}
  T *Pass() { return &value; }
  T value;
};
template <>
struct Sample<AutomationString *> {
  explicit Sample(Values &values) : text("in \xE2\x82\xAC " + std::to_string(values.Next())), bstr(text.Detach()) {}
  ~Sample() { automation::FreeString(bstr); }
  AutomationString *Pass() { return &bstr; }
  String text;
  AutomationString bstr;
};
template <>
struct Sample<AutomationArray **> {
  explicit Sample(Values &values) : array(ByteArray(values.Next(), {1, 2, 255})) {}
  AutomationArray **Pass() { return array.InOut(); }
  automation::ArrayOwner array;
};
template <>
struct Sample<AutomationVariant> {
  explicit Sample(Values &values) : text("key " + std::to_string(values.Next())) {
    variant.vt = automation::VtString;
    variant.bstrVal = text.Get();
  }
  AutomationVariant Pass() { return variant; }
  String text;
  AutomationVariant variant{};
};
template <class T>
requires std::derived_from<T, IUnknown>
struct Sample<T **> {
  explicit Sample(Values &) {}
  T **Pass() { return object.Out(); }
  Ref<T> object;
};

template <class T>
void Change(T, Values &) {}
template <class T>
requires std::is_arithmetic_v<T>
void Change(T *pValue, Values &values) { *pValue = static_cast<T>(values.Next() + 1000); }
void Change(AutomationString *pValue, Values &values) {
  automation::FreeString(*pValue);
  *pValue = automation::AllocString("out " + std::to_string(values.Next()));
}
void Change(AutomationArray **ppArray, Values &values) {
  automation::FreeArray(*ppArray);
  const Byte arrBytes[] = {static_cast<Byte>(values.Next()), 0, 128, 7};
  *ppArray = automation::AllocByteArray(3, arrBytes, 4);
}

template <class... Args>
std::string ShownAll(Args... args) {
  std::string strText;
  ((strText += Shown(args) + "; "), ...);
  return strText;
}

/// Makes one call through the wire's two halves with no driver but `driver`, and compares both ends.
template <class Interface, class... Args>
void RoundTrip(const char *strName, Status (TARVIK_CALL Interface::*)(Args...)) {
  SCOPED_TRACE(strName);
  const auto driver = [](std::string &strSeen, Args... args) {
    strSeen = ShownAll(args...);
    [[maybe_unused]] Values back{500};
    (Change(args, back), ...);
    return ShownAll(args...);
  };
  const auto call = [&]<std::size_t... i>(std::index_sequence<i...>) {
    [[maybe_unused]] Values values{10};
    std::tuple<std::unique_ptr<Sample<Args>>...> samples;
    ((std::get<i>(samples) = std::make_unique<Sample<Args>>(values)), ...);
    std::string strSent;
    ((strSent += Arriving<Args>(std::get<i>(samples)->Pass()) + "; "), ...);

    Writer request;
    (Outgoing<Args>::Send(request, std::get<i>(samples)->Pass()), ...);
    Reader in(request.Bytes());
    Arguments<Args...> arguments(in);
    EXPECT_TRUE(in.AtEnd()) << "bytes are left over";
    std::string strSeen, strLeft;
    arguments.Apply([&](Args... args) {
      strLeft = driver(strSeen, args...);
      return automation::StatusOk;
    });
    EXPECT_EQ(strSeen, strSent) << "what the driver sees";

    Outcome outcome;
    arguments.Return(outcome);
    Reader back(outcome.filled.Bytes());
    (Outgoing<Args>::Store(back, std::get<i>(samples)->Pass()), ...);
    EXPECT_TRUE(back.AtEnd()) << "bytes of the answer are left over";
    EXPECT_EQ(ShownAll(std::get<i>(samples)->Pass()...), strLeft) << "what the caller gets";
  };
  call(std::index_sequence_for<Args...>{});
}

TEST(ContractRoundTrip, EveryOperationsArgumentsArriveAndComeBack) {
#define OPERATION(Interface, Name) RoundTrip(#Interface "." #Name, &kolven::Interface::Name);
#include "remote/OperationList.inc"
#undef OPERATION
}

TEST(ContractRoundTrip, TheTableHasEveryOperationInItsPlace) {
  std::vector<std::string> arrDeclared, arrTable;
#define OPERATION(Interface, Name) arrDeclared.push_back(#Interface "." #Name);
#include "remote/OperationList.inc"
#undef OPERATION
  for (const InterfaceTable &table : Contract())
    for (const Operation &operation : table.operations)
      arrTable.push_back(std::string(table.strName) + "." + std::string(operation.strName));
  EXPECT_EQ(arrTable, arrDeclared);
  EXPECT_EQ(arrDeclared.size(), 195u);
  EXPECT_EQ(Contract().size(), 22u);
}

TEST(ContractRoundTrip, OnlyTheLookUpByKeyWaitsForItsObject) {
  for (const InterfaceTable &table : Contract())
    for (const Operation &operation : table.operations) {
      const std::string strName = std::string(table.strName) + "." + std::string(operation.strName);
      const bool fGivesObject = operation.intResultKind != KindNothing;
      EXPECT_EQ(operation.fDeferred, fGivesObject && strName != "IInstrumentList.GetItem") << strName;
    }
}

TEST(Marshalling, TextKeepsLoneSurrogatesAndZeroUnits) {
  const char16_t arrUnits[] = {u'a', 0xD800, 0, 0xDFFF};
  String text("1234");
  std::memcpy(text.Get(), arrUnits, sizeof arrUnits);
  Writer out;
  PutString(out, text.Get());
  Reader in(out.Bytes());
  const String back = GetString(in);
  ASSERT_EQ(automation::StringLength(back.Get()), 4u);
  EXPECT_EQ(std::memcmp(back.Get(), arrUnits, sizeof arrUnits), 0);
}

TEST(Marshalling, StringThatTheDriverDoesNotFillStaysTheCallers) {
  Writer request, answer;
  AutomationString bstr = automation::AllocString("mine");
  Outgoing<AutomationString *>::Send(request, &bstr);
  Reader in(request.Bytes());
  Incoming<AutomationString *> argument(in);
  argument.Return(answer);
  Reader back(answer.Bytes());
  Outgoing<AutomationString *>::Store(back, &bstr);
  EXPECT_TRUE(back.AtEnd());
  EXPECT_EQ(Shown(bstr), "'mine'");
  automation::FreeString(bstr);
}

TEST(Marshalling, NoStringIsNotTheEmptyString) {
  Writer out;
  PutString(out, nullptr);
  PutString(out, String("").Get());
  Reader in(out.Bytes());
  EXPECT_EQ(GetString(in).Get(), nullptr);
  const String empty = GetString(in);
  ASSERT_NE(empty.Get(), nullptr);
  EXPECT_EQ(automation::StringLength(empty.Get()), 0u);
}

TEST(Marshalling, ArrayOfTheSameBoundsIsFilledInPlace) {
  automation::ArrayOwner mine(ByteArray(1, {1, 2, 3})), theirs(ByteArray(1, {7, 8, 9}));
  const void *pMemory = mine.Get()->pvData;
  Writer out;
  out.Put<std::uint8_t>(1);
  PutArray(out, theirs.Get());
  Reader in(out.Bytes());
  StoreArray(in, mine.InOut());
  EXPECT_EQ(mine.Get()->pvData, pMemory);
  EXPECT_EQ(Shown(mine.Get()), "1: 7 8 9");
}

TEST(Marshalling, ArrayThatTheDriverOnlyReadDoesNotTravelBack) {
  automation::ArrayOwner array(ByteArray(0, {1, 2, 3}));
  Writer out;
  PutArray(out, array.Get());
  Reader in(out.Bytes());
  Incoming<AutomationArray **> incoming(in);
  Writer back;
  incoming.Return(back, false);
  EXPECT_EQ(back.Size(), 1u);
}

}  // namespace
}  // namespace tarvik::remote
