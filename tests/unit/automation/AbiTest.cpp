#include "automation/Abi.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

namespace tarvik::automation {
namespace {

/// The sixteen bytes of an identifier as they stand in memory.
std::string Bytes(const Guid &guid) {
  std::string strText;
  unsigned char bytes[16];
  static_assert(sizeof bytes == sizeof guid);
  std::memcpy(bytes, &guid, sizeof guid);
  for (const unsigned char byte : bytes) {
    strText += "0123456789ABCDEF"[byte / 16];
    strText += "0123456789ABCDEF"[byte % 16];
  }
  return strText;
}

// Clients and drivers of other makers hold these values compiled in.
TEST(Abi, InterfacesOfTheSystemHaveTheirWellKnownIdentifiers) {
  EXPECT_EQ(Bytes(IidUnknown), "0000000000000000C000000000000046");
  EXPECT_EQ(Bytes(IidClassFactory), "0100000000000000C000000000000046");
  EXPECT_EQ(Bytes(IidDispatch), "0004020000000000C000000000000046");
  EXPECT_EQ(Bytes(GuidNull), std::string(32, '0'));
}

TEST(Abi, StatusCodesHaveTheirWellKnownValues) {
  const std::pair<Status, std::uint32_t> arrCodes[] = {
      {StatusOk, 0},
      {StatusFalse, 1},
      {StatusNotImplemented, 0x80004001},
      {StatusNoInterface, 0x80004002},
      {StatusPointer, 0x80004003},
      {StatusFail, 0x80004005},
      {StatusUnexpected, 0x8000FFFF},
      {StatusAccessDenied, 0x80070005},
      {StatusOutOfMemory, 0x8007000E},
      {StatusInvalidArgument, 0x80070057},
      {StatusUnknownInterface, 0x80020001},
      {StatusMemberNotFound, 0x80020003},
      {StatusParamNotFound, 0x80020004},
      {StatusTypeMismatch, 0x80020005},
      {StatusUnknownName, 0x80020006},
      {StatusNoNamedArgs, 0x80020007},
      {StatusException, 0x80020009},
      {StatusOverflow, 0x8002000A},
      {StatusBadIndex, 0x8002000B},
      {StatusBadParamCount, 0x8002000E},
      {StatusParamNotOptional, 0x8002000F},
      {StatusNoAggregation, 0x80040110},
      {StatusClassNotAvailable, 0x80040111},
      {StatusClassNotRegistered, 0x80040154},
  };
  for (const auto &[status, lngValue] : arrCodes) {
    EXPECT_EQ(static_cast<std::uint32_t>(status), lngValue);
    EXPECT_EQ(Failed(status), lngValue > 1) << std::hex << lngValue;
  }
}

TEST(Abi, TypesOfVariantsHaveTheirWellKnownNumbers) {
  const std::pair<VariantType, int> arrTypes[] = {
      {VtEmpty, 0},
      {VtInteger, 2},
      {VtLong, 3},
      {VtSingle, 4},
      {VtDouble, 5},
      {VtString, 8},
      {VtDispatch, 9},
      {VtError, 10},
      {VtBoolean, 11},
      {VtVariant, 12},
      {VtUnknown, 13},
      {VtSignedByte, 16},
      {VtByte, 17},
      {VtUnsignedInteger, 18},
      {VtUnsignedLong, 19},
      {VtHuge, 20},
      {VtUnsignedHuge, 21},
      {VtMachineInteger, 22},
      {VtMachineUnsigned, 23},
      {VtArray, 0x2000},
      {VtByRef, 0x4000},
  };
  for (const auto &[eType, intNumber] : arrTypes) EXPECT_EQ(static_cast<int>(eType), intNumber);
  EXPECT_EQ(ArrayBoundFeatures, 0x0017);
}

TEST(Abi, RecordsAreAsWideAsTheOnesOfThePlatform) {
  EXPECT_EQ(sizeof(AutomationVariant), 24u);
  EXPECT_EQ(offsetof(AutomationVariant, dblVal), 8u);
  EXPECT_EQ(sizeof(AutomationArray), 32u);
  EXPECT_EQ(offsetof(AutomationArray, pvData), 16u);
  EXPECT_EQ(offsetof(AutomationArray, rgsabound), 24u);
  EXPECT_EQ(sizeof(AutomationDispParams), 24u);
  EXPECT_EQ(offsetof(AutomationDispParams, cArgs), 16u);
  EXPECT_EQ(sizeof(AutomationExcepInfo), 64u);
  EXPECT_EQ(offsetof(AutomationExcepInfo, bstrSource), 8u);
}

}  // namespace
}  // namespace tarvik::automation
