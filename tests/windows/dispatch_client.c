/* Calls the instrument interface by name with what clients in other languages send: variants by value and by reference,
 * every type of number, the system's own arrays, named arguments, and arguments that are wrong. */

#include <stdio.h>
#include <string.h>

#define WIN32_LEAN_AND_MEAN
#define COBJMACROS
#include <windows.h>
/* These need windows.h. */
#include <oleauto.h>

static const GUID IidDispatchOf = {0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}}, IidNull;

static int checks, faults;

#define CHECK(RIGHT)                                              \
  do {                                                            \
    ++checks;                                                     \
    if (RIGHT) break;                                             \
    ++faults;                                                     \
    printf("FAULT: line %d: " #RIGHT " does not hold\n", __LINE__); \
  } while (0)

/* What a call left behind. */
static VARIANT result;
static EXCEPINFO failure;
static UINT place;

#define MOST 6

/* Arguments stand last one first, and named ones before all others. */
static HRESULT CallNamed(IDispatch *object, const wchar_t *name, WORD use, const VARIANT *arguments, UINT count,
                         DISPID *named, UINT names) {
  LPOLESTR text = (LPOLESTR)name;
  DISPID id = 0;
  DISPPARAMS params;
  VARIANT reversed[MOST];
  HRESULT status = IDispatch_GetIDsOfNames(object, &IidNull, &text, 1, 0, &id);
  if (FAILED(status)) return status;
  for (UINT i = 0; i < names; ++i) reversed[i] = arguments[i];
  for (UINT i = names; i < count; ++i) reversed[i] = arguments[count - 1 - i + names];
  params.rgvarg = reversed;
  params.cArgs = count;
  params.rgdispidNamedArgs = named;
  params.cNamedArgs = names;
  SysFreeString(failure.bstrDescription);
  SysFreeString(failure.bstrSource);
  memset(&failure, 0, sizeof failure);
  place = 99;
  VariantInit(&result);
  return IDispatch_Invoke(object, id, &IidNull, 0, use, &params, &result, &failure, &place);
}

static HRESULT Call(IDispatch *object, const wchar_t *name, const VARIANT *arguments, UINT count) {
  return CallNamed(object, name, DISPATCH_METHOD, arguments, count, NULL, 0);
}
static HRESULT Get(IDispatch *object, const wchar_t *name) {
  return CallNamed(object, name, DISPATCH_PROPERTYGET, NULL, 0, NULL, 0);
}
static HRESULT Put(IDispatch *object, const wchar_t *name, VARIANT value) {
  DISPID put = DISPID_PROPERTYPUT;
  return CallNamed(object, name, DISPATCH_PROPERTYPUT, &value, 1, &put, 1);
}

/* An operation that answers True or False. */
static int Truth(IDispatch *object, const wchar_t *name, const VARIANT *arguments, UINT count) {
  return Call(object, name, arguments, count) == S_OK && result.vt == VT_BOOL && result.boolVal == VARIANT_TRUE;
}

static VARIANT Of(VARTYPE type, const void *value, size_t size) {
  VARIANT v;
  VariantInit(&v);
  v.vt = type;
  memcpy(&v.llVal, value, size);
  return v;
}
static VARIANT At(VARTYPE type, void *value) {
  VARIANT v;
  VariantInit(&v);
  v.vt = (VARTYPE)(VT_BYREF | type);
  v.byref = value;
  return v;
}
static VARIANT Number(LONG value) { return Of(VT_I4, &value, sizeof value); }
static VARIANT Flag(int value) {
  const VARIANT_BOOL truth = value ? VARIANT_TRUE : VARIANT_FALSE;
  return Of(VT_BOOL, &truth, sizeof truth);
}
static VARIANT Empty(void) {
  VARIANT v;
  VariantInit(&v);
  return v;
}
static VARIANT Object(IDispatch *object) { return Of(VT_DISPATCH, &object, sizeof object); }
static VARIANT Text(BSTR text) { return Of(VT_BSTR, &text, sizeof text); }

static IDispatch *Record(IDispatch *face, const wchar_t *name) {
  BSTR text = SysAllocString(name);
  const VARIANT argument = Text(text);
  const HRESULT status = Call(face, L"NewRecord", &argument, 1);
  SysFreeString(text);
  CHECK(status == S_OK && result.vt == VT_DISPATCH && result.pdispVal);
  return result.pdispVal;
}

static void TryNumbers(IDispatch *face) {
  static const VARTYPE Types[] = {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT};
  IDispatch *mode = Record(face, L"udtModeInfo");
  LONGLONG seven = 7, many = 0x80000000LL;
  for (size_t i = 0; i < sizeof Types / sizeof *Types; ++i) {
    CHECK(Put(mode, L"BurstLength", Number(0)) == S_OK);
    CHECK(Put(mode, L"BurstLength", Of(Types[i], &seven, sizeof seven)) == S_OK);
    CHECK(Get(mode, L"BurstLength") == S_OK && result.vt == VT_I4 && result.lVal == 7);
    CHECK(Put(mode, L"BurstLength", Number(0)) == S_OK);
    CHECK(Put(mode, L"BurstLength", At(Types[i], &seven)) == S_OK);
    CHECK(Get(mode, L"BurstLength") == S_OK && result.lVal == 7);
  }
  CHECK(Put(mode, L"BurstLength", Of(VT_I8, &many, sizeof many)) == DISP_E_OVERFLOW && place == 0);
  CHECK(Put(mode, L"BurstLength", Empty()) == S_OK);
  CHECK(Get(mode, L"BurstLength") == S_OK && result.lVal == 0);
  IDispatch_Release(mode);
}

static void Open(IDispatch *face) {
  IDispatch *info = Record(face, L"viInfo"), *other = Record(face, L"viInfo");
  VARIANT name = Empty(), arguments[3];
  SAFEARRAY *few = SafeArrayCreateVector(VT_UI1, 0, 27);
  VARIANT bytes;
  CHECK(Truth(face, L"Connect", NULL, 0));
  arguments[0] = Number(1), arguments[1] = Object(info), arguments[2] = At(VT_VARIANT, &name);
  CHECK(Truth(face, L"GetViInfo", arguments, 3));
  CHECK(name.vt == VT_BSTR && wcscmp(name.bstrVal, L"VP-210") == 0);

  CHECK(Get(info, L"Bytes") == S_OK);
  bytes = result;
  CHECK(bytes.vt == (VT_ARRAY | VT_UI1) && bytes.parray->rgsabound[0].cElements == 28);
  CHECK(((const unsigned char *)bytes.parray->pvData)[22] == 3);
  CHECK(Put(other, L"Bytes", bytes) == S_OK);
  CHECK(Get(other, L"Slot") == S_OK && result.iVal == 3);
  CHECK(Get(other, L"ModelCode") == S_OK && result.iVal == 0x0210);
  CHECK(Put(other, L"Bytes", Of(VT_ARRAY | VT_UI1, &few, sizeof few)) == DISP_E_EXCEPTION);
  VariantClear(&bytes);
  SafeArrayDestroy(few);

  /* By reference to a string this time. */
  arguments[0] = At(VT_BSTR, &name.bstrVal);
  CHECK(Truth(face, L"OpenInstrument", arguments, 1));
  VariantClear(&name);
  IDispatch_Release(info);
  IDispatch_Release(other);
}

/* An array that its owner has locked or fixed is filled where it is. */
static void TryArrays(IDispatch *face) {
  static const unsigned char Sent[] = {0xA5, 0x3C, 0x96};
  SAFEARRAY *sent = SafeArrayCreateVector(VT_UI1, 0, 2), *read = SafeArrayCreateVector(VT_UI1, 0, 2);
  SAFEARRAY *longer = SafeArrayCreateVector(VT_UI1, 0, 3), *before = read;
  void *const data = read->pvData;
  LONG length = 0;
  VARIANT arguments[3], whole = Empty();
  memcpy(sent->pvData, Sent, 2);
  memcpy(longer->pvData, Sent, 3);
  arguments[0] = Number(1), arguments[1] = Of(VT_ARRAY | VT_UI1, &sent, sizeof sent), arguments[2] = Number(16);
  CHECK(Truth(face, L"SetPatternArray", arguments, 3));
  arguments[1] = At(VT_ARRAY | VT_UI1, &read), arguments[2] = At(VT_I4, &length);
  for (int fixed = 0; fixed < 2; ++fixed) {
    memset(data, 0, 2);
    if (fixed)
      read->fFeatures |= FADF_FIXEDSIZE;
    else
      SafeArrayLock(read);
    CHECK(Truth(face, L"GetPatternArray", arguments, 3));
    CHECK(read == before && read->pvData == data && memcmp(data, Sent, 2) == 0 && length == 16);
    if (!fixed) SafeArrayUnlock(read);
  }
  /* Another length would need another array. */
  arguments[1] = At(VT_ARRAY | VT_UI1, &longer), arguments[2] = Number(24);
  CHECK(Truth(face, L"SetPatternArray", arguments, 3));
  arguments[1] = At(VT_ARRAY | VT_UI1, &read), arguments[2] = At(VT_I4, &length);
  CHECK(Call(face, L"GetPatternArray", arguments, 3) == DISP_E_EXCEPTION && failure.scode == (SCODE)0x800A000A);
  CHECK(read == before && memcmp(data, Sent, 2) == 0);
  read->fFeatures &= (USHORT)~FADF_FIXEDSIZE;
  CHECK(Truth(face, L"GetPatternArray", arguments, 3) && length == 24);
  CHECK(read->rgsabound[0].cElements == 3 && memcmp(read->pvData, Sent, 3) == 0);
  /* An empty variant is filled with an array. */
  arguments[1] = At(VT_VARIANT, &whole);
  CHECK(Truth(face, L"GetPatternArray", arguments, 3));
  CHECK(whole.vt == (VT_ARRAY | VT_UI1) && memcmp(whole.parray->pvData, Sent, 3) == 0);
  VariantClear(&whole);
  SafeArrayDestroy(sent);
  SafeArrayDestroy(read);
  SafeArrayDestroy(longer);
}

static int LogHolds(const char *text) {
  static char log[65536];
  FILE *file = fopen("c:\\tarvikerr.txt", "rb");
  if (!file) return 0;
  log[fread(log, 1, sizeof log - 1, file)] = 0;
  fclose(file);
  return strstr(log, text) != NULL;
}

static void TryTwoDimensions(IDispatch *face) {
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  SAFEARRAY *bytes = SafeArrayCreate(VT_UI1, 2, bounds), *truths = SafeArrayCreate(VT_BOOL, 2, bounds);
  SAFEARRAY *const before = bytes;
  VARIANT arguments[3];
  arguments[0] = At(VT_ARRAY | VT_BOOL, &truths);
  CHECK(Call(face, L"SetRz", arguments, 1) == S_OK && result.boolVal == VARIANT_FALSE);
  CHECK(LogHolds("Error: 9 Subscript out of range\r\n  Mod: clsInstrInterface; Proc: SetRz\r\n"));
  CHECK(Call(face, L"GetRz", arguments, 1) == S_OK && result.boolVal == VARIANT_FALSE);
  CHECK(LogHolds("Error: 9 Subscript out of range\r\n  Mod: clsInstrInterface; Proc: GetRz\r\n"));
  arguments[0] = Number(1), arguments[1] = At(VT_ARRAY | VT_UI1, &bytes), arguments[2] = Number(8);
  CHECK(Call(face, L"SetPatternArray", arguments, 3) == S_OK && result.boolVal == VARIANT_FALSE);
  CHECK(LogHolds("Error: 9 Subscript out of range\r\n  Mod: clsInstrInterface; Proc: SetPatternArray\r\n"));
  CHECK(bytes == before && bytes->cDims == 2);
  SafeArrayDestroy(bytes);
  SafeArrayDestroy(truths);
}

static void TryNamed(IDispatch *face) {
  LPOLESTR names[] = {(LPOLESTR)L"Output", (LPOLESTR)L"fState", (LPOLESTR)L"INTCHAN"};
  DISPID ids[3], put[2], unknown[] = {7}, first[] = {0};
  IDispatch *levels = Record(face, L"udtLevelInfo");
  VARIANT arguments[3], channel = Number(2);
  DISPID none = 0;
  CHECK(IDispatch_GetIDsOfNames(face, &IidNull, names, 3, 0, ids) == S_OK && ids[1] == 1 && ids[2] == 0);
  put[0] = ids[1], put[1] = ids[2];
  arguments[0] = Flag(1), arguments[1] = Number(2);
  CHECK(CallNamed(face, L"Output", DISPATCH_METHOD, arguments, 2, put, 2) == S_OK && result.boolVal == VARIANT_TRUE);
  arguments[0] = Object(levels);
  CHECK(Truth(face, L"GetLevels", arguments, 1));
  CHECK(CallNamed(levels, L"fChannelOutputOn", DISPATCH_PROPERTYGET, &channel, 1, &none, 0) == S_OK &&
        result.boolVal == VARIANT_TRUE);
  arguments[0] = Flag(0), arguments[1] = Number(2);
  CHECK(CallNamed(face, L"Output", DISPATCH_METHOD, arguments, 2, unknown, 1) == DISP_E_PARAMNOTFOUND && place == 0);
  /* The channel by name and by its place. */
  arguments[0] = Number(2), arguments[1] = Number(2), arguments[2] = Flag(0);
  CHECK(CallNamed(face, L"Output", DISPATCH_METHOD, arguments, 3, first, 1) == DISP_E_PARAMNOTFOUND && place == 0);
  IDispatch_Release(levels);
}

/* The place is that in the call's own array, where the last argument stands first. */
static void TryWrong(IDispatch *face) {
  BSTR text = SysAllocString(L"one");
  VARIANT arguments[4], null = Empty();
  LONG number = 0;
  null.vt = VT_NULL;
  arguments[0] = Text(text), arguments[1] = Flag(1);
  CHECK(Call(face, L"Output", arguments, 2) == DISP_E_TYPEMISMATCH && place == 1);
  arguments[0] = null;
  CHECK(Call(face, L"Output", arguments, 2) == DISP_E_TYPEMISMATCH && place == 1);
  arguments[0] = Number(40000);
  CHECK(Call(face, L"Output", arguments, 2) == DISP_E_OVERFLOW && place == 1);
  arguments[0] = Number(1), arguments[1] = Text(text), arguments[2] = arguments[3] = Flag(1);
  CHECK(Call(face, L"Output", arguments, 2) == DISP_E_TYPEMISMATCH && place == 0);
  CHECK(Call(face, L"Output", arguments, 1) == DISP_E_BADPARAMCOUNT);
  CHECK(Call(face, L"Output", arguments, 4) == DISP_E_BADPARAMCOUNT);
  arguments[0] = At(VT_I4, &number);
  CHECK(Call(face, L"OpenInstrument", arguments, 1) == DISP_E_TYPEMISMATCH && place == 0);
  arguments[0] = Number(1);
  CHECK(Call(face, L"SetRz", arguments, 1) == DISP_E_TYPEMISMATCH && place == 0);
  CHECK(Call(face, L"Nothing", NULL, 0) == DISP_E_UNKNOWNNAME);
  SysFreeString(text);
}

int main(void) {
  CLSID clsid;
  IDispatch *face = NULL;
  CoInitialize(NULL);
  HRESULT status = CLSIDFromProgID(L"TarvikVI.clsInstrInterface", &clsid);
  if (SUCCEEDED(status)) status = CoCreateInstance(&clsid, NULL, CLSCTX_INPROC_SERVER, &IidDispatchOf, (void **)&face);
  if (FAILED(status)) {
    printf("TarvikVI.clsInstrInterface cannot be created: %08lX\n", (unsigned long)status);
    return 1;
  }
  TryNumbers(face);
  Open(face);
  TryArrays(face);
  TryTwoDimensions(face);
  TryNamed(face);
  TryWrong(face);
  Call(face, L"CloseInstrument", NULL, 0);
  IDispatch_Release(face);
  printf("%d checks of calls by name, %d faults\n", checks, faults);
  return faults != 0;
}
