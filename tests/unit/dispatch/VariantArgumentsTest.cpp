#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "InstrumentFace.h"
#include "automation/AutomationArray.h"

namespace tarvik::test {

using testing::HasSubstr;

/// A variant that refers to another value.
AutomationVariant ByReference(std::uint16_t vt, void *pPlace) {
  AutomationVariant v{};
  v.vt = static_cast<std::uint16_t>(VtByRef | vt);
  v.byref = pPlace;
  return v;
}

template <class T>
AutomationVariant Of(std::uint16_t vt, T value) {
  AutomationVariant v{};
  v.vt = vt;
  std::memcpy(&v.llVal, &value, sizeof value);
  return v;
}

TEST_F(InstrumentFace, TakesEveryWholeNumberTypeByValueAndByReference) {
  const Client record = NewFace().NewRecord("udtModeInfo");
  const AutomationVariant numbers[] = {
      Of<std::int8_t>(VtSignedByte, 7),      Of<std::uint8_t>(VtByte, 7),
      Of<std::int16_t>(VtInteger, 7),        Of<std::uint16_t>(VtUnsignedInteger, 7),
      Of<std::int32_t>(VtLong, 7),           Of<std::uint32_t>(VtUnsignedLong, 7),
      Of<std::int64_t>(VtHuge, 7),           Of<std::uint64_t>(VtUnsignedHuge, 7),
      Of<std::int32_t>(VtMachineInteger, 7), Of<std::uint32_t>(VtMachineUnsigned, 7),
  };
  for (const AutomationVariant &vNumber : numbers) {
    SCOPED_TRACE(vNumber.vt);
    AutomationVariant vCopy = vNumber;
    for (const AutomationVariant &vSent : {vNumber, ByReference(vNumber.vt, &vCopy.llVal)}) {
      EXPECT_EQ(record.Invoke("BurstLength", AsPut, {Number(0)}), StatusOk);
      EXPECT_EQ(record.Invoke("BurstLength", AsPut, {vSent}), StatusOk);
      EXPECT_EQ(record.Call("BurstLength", {}, AsGet).lVal, 7);
    }
  }
  std::uint32_t lngWhich = 99;
  EXPECT_EQ(record.Invoke("BurstLength", AsPut, {Of<std::uint32_t>(VtUnsignedLong, 0x80000000u)}, nullptr, nullptr,
                          &lngWhich),
            StatusOverflow);
  EXPECT_EQ(lngWhich, 0u);
  EXPECT_EQ(record.Invoke("BurstLength", AsPut, {Of<std::int64_t>(VtHuge, -0x80000001LL)}), StatusOverflow);
}

TEST_F(InstrumentFace, AnEmptyVariantIsZeroFalseAndTheEmptyText) {
  const Client face = NewFace(), record = face.NewRecord("udtInstrInfo");
  record.Invoke("lngNumChannels", AsPut, {Number(5)});
  record.Invoke("strProductId", AsPut, {Text("something")});
  EXPECT_EQ(record.Invoke("lngNumChannels", AsPut, {AutomationVariant{}}), StatusOk);
  EXPECT_EQ(record.Invoke("strProductId", AsPut, {AutomationVariant{}}), StatusOk);
  EXPECT_EQ(record.Call("lngNumChannels", {}, AsGet).lVal, 0);
  const AutomationVariant vProduct = record.Call("strProductId", {}, AsGet);
  EXPECT_EQ(ToText(vProduct.bstrVal), "");
  FreeString(vProduct.bstrVal);
  AutomationVariant vNull{};
  vNull.vt = 1;
  EXPECT_EQ(record.Invoke("lngNumChannels", AsPut, {vNull}), StatusTypeMismatch);
}

TEST_F(InstrumentFace, FillsAnEmptyVariantByReference) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  AutomationVariant vArray{}, vLength{};
  ASSERT_TRUE(
      face.Truth("GetPatternArray", {Number(1), ByReference(VtVariant, &vArray), ByReference(VtVariant, &vLength)}));
  EXPECT_EQ(vLength.vt, VtLong);
  ASSERT_EQ(vArray.vt, VtArray | VtByte);
  EXPECT_EQ(vArray.parray->rgsabound[0].cElements, static_cast<std::uint32_t>((vLength.lVal + 7) / 8));
  FreeArray(vArray.parray);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, ANumberByReferenceComesBackInTheCallersType) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  float sngFreq = 0;
  std::int16_t intSource = 9;
  EXPECT_TRUE(
      face.Truth("PllRefSource", {ByReference(VtSingle, &sngFreq), ByReference(VtInteger, &intSource), Flag(true)}));
  EXPECT_EQ(sngFreq, 5e6f);
  EXPECT_EQ(intSource, 1);
  // Five million does not fit into 16 bits.
  std::int16_t intFreq = 0;
  AutomationExcepInfo info{};
  EXPECT_EQ(
      face.Invoke("PllRefSource", AsMethod,
                  {ByReference(VtInteger, &intFreq), ByReference(VtInteger, &intSource), Flag(true)}, nullptr, &info),
      StatusException);
  EXPECT_EQ(static_cast<std::uint32_t>(info.scode), 0x800A0006u);
  FreeString(info.bstrDescription);
  FreeString(info.bstrSource);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, AFixedOrLockedArrayIsFilledWhereItIs) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  const std::uint8_t bytes[] = {0xA5, 0x3C};
  AutomationArray *sent = AllocByteArray(0, bytes, 2), *read = AllocByteArray(0, nullptr, 2);
  ASSERT_TRUE(face.Truth("SetPatternArray", {Number(1), ByReference(VtArray | VtByte, &sent), Number(16)}));
  AutomationArray *const before = read;
  void *const data = read->pvData;
  std::int32_t lngLength = 0;
  for (const bool fLocked : {true, false}) {
    SCOPED_TRACE(fLocked);
    std::memset(read->pvData, 0, 2);
    read->cLocks = fLocked ? 1 : 0;
    read->fFeatures = fLocked ? 0 : 0x0010;
    ASSERT_TRUE(face.Truth("GetPatternArray",
                           {Number(1), ByReference(VtArray | VtByte, &read), ByReference(VtLong, &lngLength)}));
    EXPECT_EQ(read, before);
    EXPECT_EQ(read->pvData, data);
    EXPECT_EQ(std::memcmp(read->pvData, bytes, 2), 0);
  }
  // Another length would need another array.
  const std::uint8_t more[] = {1, 2, 3};
  AutomationArray *longer = AllocByteArray(0, more, 3);
  ASSERT_TRUE(face.Truth("SetPatternArray", {Number(1), ByReference(VtArray | VtByte, &longer), Number(24)}));
  AutomationExcepInfo info{};
  EXPECT_EQ(
      face.Invoke("GetPatternArray", AsMethod,
                  {Number(1), ByReference(VtArray | VtByte, &read), ByReference(VtLong, &lngLength)}, nullptr, &info),
      StatusException);
  EXPECT_EQ(static_cast<std::uint32_t>(info.scode), 0x800A000Au);
  EXPECT_EQ(ToText(info.bstrDescription), "This array is fixed or temporarily locked");
  EXPECT_EQ(std::memcmp(read->pvData, bytes, 2), 0);
  FreeString(info.bstrDescription);
  FreeString(info.bstrSource);
  read->fFeatures = 0;
  for (AutomationArray *pArray : {sent, read, longer}) FreeArray(pArray);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, TakesAndFillsArraysOfVariantsAsScriptsHaveThem) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  AutomationVariant vFormats{};
  vFormats.vt = VtArray | VtVariant;
  vFormats.parray = AllocArray(VtVariant, 0, 3);
  auto *formats = static_cast<AutomationVariant *>(vFormats.parray->pvData);
  formats[1] = Flag(false);
  formats[2] = Number(5);
  ASSERT_TRUE(face.Truth("SetRz", {ByReference(VtVariant, &vFormats)}));
  formats[1] = formats[2] = AutomationVariant{};
  ASSERT_TRUE(face.Truth("GetRz", {ByReference(VtVariant, &vFormats)}));
  EXPECT_EQ(formats[1].vt, VtBoolean);
  EXPECT_EQ(formats[1].boolVal, 0);
  EXPECT_EQ(formats[2].boolVal, -1);
  formats[1] = Text("no number");
  EXPECT_EQ(face.Invoke("SetRz", AsMethod, {ByReference(VtVariant, &vFormats)}), StatusTypeMismatch);
  formats[1] = {};
  FreeArray(vFormats.parray);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, AnArrayOfTwoDimensionsFailsInTheOperationAndStaysAsItIs) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  const std::uint8_t four[] = {1, 2, 3, 4};
  AutomationArray *bytes = AllocByteArray(0, four, 4), *truths = AllocArray(VtBoolean, 0, 4);
  AutomationArray *const bytesBefore = bytes, *const truthsBefore = truths;
  bytes->cDims = truths->cDims = 2;
  const AutomationVariant vBytes = ByReference(VtArray | VtByte, &bytes),
                          vTruths = ByReference(VtArray | VtBoolean, &truths);
  EXPECT_FALSE(face.Truth("SetRz", {vTruths}));
  EXPECT_FALSE(face.Truth("GetRz", {vTruths}));
  EXPECT_FALSE(face.Truth("SetPatternArray", {Number(1), vBytes, Number(8)}));
  std::int32_t lngLength = 5;
  EXPECT_FALSE(face.Truth("GetPatternArray", {Number(1), vBytes, ByReference(VtLong, &lngLength)}));
  EXPECT_EQ(lngLength, 5);
  EXPECT_FALSE(face.Truth("CalcPRBS", {Number(1), Number(8), Number(7), vBytes}));
  for (const char *strOperation : {"SetRz", "GetRz", "SetPatternArray", "GetPatternArray", "CalcPRBS"})
    EXPECT_THAT(Log(), HasSubstr(std::string("  Error: 9 Subscript out of range\r\n  Mod: clsInstrInterface; Proc: ") +
                                 strOperation + "\r\n"));
  EXPECT_EQ(bytes, bytesBefore);
  EXPECT_EQ(truths, truthsBefore);
  EXPECT_EQ(bytes->cDims, 2);
  EXPECT_EQ(std::memcmp(bytes->pvData, four, 4), 0);
  bytes->cDims = truths->cDims = 1;
  FreeArray(bytes);
  FreeArray(truths);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, TheRecordOfAnInstrumentIsItsBytesAndTheirReadings) {
  const Client face = NewFace(), record = face.NewRecord("viInfo");
  ASSERT_TRUE(face.Truth("Connect"));
  AutomationVariant vName{};
  ASSERT_TRUE(face.Truth("GetViInfo", {Number(1), Object(record.Get()), ByReference(VtVariant, &vName)}));
  const AutomationVariant vBytes = record.Call("Bytes", {}, AsGet);
  ASSERT_EQ(vBytes.vt, VtArray | VtByte);
  ASSERT_EQ(vBytes.parray->rgsabound[0].cElements, 28u);
  EXPECT_EQ(vBytes.parray->rgsabound[0].lLbound, 0);
  EXPECT_EQ(static_cast<std::uint8_t *>(vBytes.parray->pvData)[22], record.Call("Slot", {}, AsGet).iVal);

  const Client other = face.NewRecord("viInfo");
  EXPECT_EQ(other.Invoke("Bytes", AsPut, {vBytes}), StatusOk);
  EXPECT_EQ(other.Call("ModelCode", {}, AsGet).iVal, 0x0210);
  AutomationVariant vShort{};
  vShort.vt = VtArray | VtByte;
  vShort.parray = AllocByteArray(0, nullptr, 27);
  EXPECT_EQ(other.Invoke("Bytes", AsPut, {vShort}), StatusException);
  FreeArray(vShort.parray);
  FreeArray(vBytes.parray);
  FreeString(vName.bstrVal);
}

}  // namespace tarvik::test
