/* Calls every slot of the driver's interfaces in C, through tables of functions that are written down here once more: a
 * slot that moves in the contract's header is found, as a driver or a client of another maker would find it.
 *
 * An operation that nobody calls has no known arguments; it has to answer "not implemented". */

#include <stdio.h>
#include <string.h>

#define WIN32_LEAN_AND_MEAN
#define COBJMACROS
#include <windows.h>
/* These need windows.h. */
#include <oleauto.h>

typedef int Long;
typedef short Integer;
typedef double Double;
typedef VARIANT_BOOL Boolean;
typedef struct Any Any;

/* The seven slots of a dual interface, of which the first three count references. */
#define DUAL(NAME)                                                                  \
  HRESULT (STDMETHODCALLTYPE * QueryInterface)(NAME *, const GUID *, void **);      \
  ULONG (STDMETHODCALLTYPE * AddRef)(NAME *);                                       \
  ULONG (STDMETHODCALLTYPE * Release)(NAME *);                                      \
  HRESULT (STDMETHODCALLTYPE * GetTypeInfoCount)(NAME *, UINT *);                   \
  HRESULT (STDMETHODCALLTYPE * GetTypeInfo)(NAME *, UINT, LCID, void **);           \
  HRESULT (STDMETHODCALLTYPE * GetIDsOfNames)(NAME *, const GUID *, OLECHAR **, UINT, LCID, DISPID *); \
  HRESULT (STDMETHODCALLTYPE * Invoke)(NAME *, DISPID, const GUID *, LCID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *);
#define OP(NAME, ...) HRESULT (STDMETHODCALLTYPE * NAME)(Any *, ##__VA_ARGS__);
#define OTHER(NAME) HRESULT (STDMETHODCALLTYPE * NAME)(Any *);

#define INTERFACE_OF(NAME, SLOTS)      \
  typedef struct NAME NAME;            \
  typedef struct {                     \
    DUAL(NAME)                         \
    SLOTS                              \
  } NAME##Table;                       \
  struct NAME {                        \
    const NAME##Table *table;          \
  };

INTERFACE_OF(Object, )
INTERFACE_OF(DriverRoot, OTHER(o1) OTHER(o2) OTHER(o3) OP(GetInstruments, Object **))
INTERFACE_OF(InstrumentList, OP(GetCount, Long *) OP(GetItem, VARIANT, Object **) OTHER(o1) OP(Refresh))
INTERFACE_OF(Instrument,
  OP(GetViInfo, SAFEARRAY **) OTHER(o1) OP(SetAutoDetectErrors, Boolean) OTHER(o2) OTHER(o3) OTHER(o4) OP(Calibrate)
  OP(GetChannelMath, Long *) OP(SetChannelMath, Long) OP(GetChannels, Object **) OP(Close) OTHER(o5)
  OP(GetErrorQueue, Object **) OTHER(o6) OTHER(o7) OP(GetIdentity, BSTR *) OTHER(o8) OTHER(o9)
  OP(GetTransactionState, Integer *, Boolean *) OTHER(o10) OTHER(o11) OP(GetModeSetup, Object **) OP(GetName, BSTR *)
  OP(Open, Boolean, Boolean, Boolean, Boolean *) OP(GetOptions, BSTR *) OTHER(o12) OP(GetPatternMemory, Object **)
  OTHER(o13) OTHER(o14) OP(GetPllReference, Object **) OP(GetPulseMode, Long *, Long *) OTHER(o15) OP(Reset)
  OP(GetRestrictions, Object **) OTHER(o16) OTHER(o17) OP(SelfTest, Integer *, BSTR *) OTHER(o18) OTHER(o19)
  OP(GetPnpTimeout, Long *) OP(SetPnpTimeout, Long) OP(Transaction, Long) OP(GetTriggerSystem, Object **))
INTERFACE_OF(Restrictions, OP(GetMask, Long *))
INTERFACE_OF(ErrorQueue,
  OTHER(o1) OTHER(o2) OP(GetErrors, BSTR *) OTHER(o3) OTHER(o4) OTHER(o5) OTHER(o6) OP(GetVerbose, Boolean *)
  OP(SetVerbose, Boolean) OP(GetWarnings, BSTR *))
INTERFACE_OF(ChannelList, OP(GetCount, Long *) OP(GetItem, Long, Object **))
INTERFACE_OF(Channel,
  OP(GetCurrentLimits, Object **) OTHER(o1) OTHER(o2) OTHER(o3) OP(GetLevels, Object **) OTHER(o4) OP(GetTiming, Object **)
  OP(GetSignalFormat, Long *) OP(SetSignalFormat, Long) OP(GetVoltageLimits, Object **))
INTERFACE_OF(LimitGroup, OTHER(o1) OTHER(o2) OTHER(o3) OTHER(o4) OP(GetLimits, Object **))
INTERFACE_OF(LimitPair,
  OP(GetEnabled, Boolean *) OP(SetEnabled, Boolean) OP(GetHigh, Double *) OP(SetHigh, Double) OP(GetLow, Double *)
  OP(SetLow, Double))
INTERFACE_OF(ChannelTiming,
  OP(GetSinglePulse, Object **) OP(GetDoublePulse, Object **) OTHER(o1) OTHER(o2) OP(GetFrequency, Double *)
  OP(SetFrequency, Double) OTHER(o3) OTHER(o4) OTHER(o5) OTHER(o6) OP(GetEdges, Object **) OP(GetPulseType, Long *)
  OP(SetPulseType, Long) OP(GetWidth, Double *) OP(SetWidth, Double))
INTERFACE_OF(Edges,
  OP(GetCoupling, Long *) OP(SetCoupling, Long) OTHER(o1) OTHER(o2) OTHER(o3) OTHER(o4) OP(GetLeading, Long *, Double *)
  OP(SetLeading, Long *, Double) OP(GetTrailing, Long *, Double *) OP(SetTrailing, Long *, Double))
INTERFACE_OF(SinglePulse,
  OTHER(o1) OTHER(o2) OTHER(o3) OTHER(o4) OP(GetDelay, Long *, Double *) OP(SetDelay, Long *, Double))
INTERFACE_OF(DoublePulse,
  OTHER(o1) OTHER(o2) OP(GetEnabled, Boolean *) OTHER(o3) OTHER(o4) OTHER(o5) OP(GetDelay, Long *, Double *)
  OP(SetDelay, Long *, Double))
INTERFACE_OF(ChannelLevels,
  OP(GetComplementOutput, Boolean *) OP(SetComplementOutput, Boolean) OTHER(o1) OTHER(o2) OP(GetLoadCompensation, Double *)
  OP(SetLoadCompensation, Double) OP(GetImpedance, Double *) OP(SetImpedance, Double) OP(GetOutput, Boolean *)
  OP(SetOutput, Boolean) OP(GetPolarity, Long *) OP(SetPolarity, Long) OP(GetLevel, Long, Long *, Double *, Double *)
  OP(SetLevel, Long, Long, Double, Double))
INTERFACE_OF(ModeSetup,
  OP(SetContinuousBurst, Long, Long, Long) OP(SetContinuousPattern, Long, Long) OP(SetContinuousPulses, Long, Long)
  OP(SetGatedBurst, Long, Long, Long, Long, Long) OP(SetGatedPattern, Long, Long, Long, Long)
  OP(SetGatedPulses, Long, Long, Long, Long) OP(SetTriggeredBurst, Long, Long, Long, Long, Long, Long, Double)
  OP(SetTriggeredPattern, Long, Long, Long, Long, Long, Double) OP(SetTriggeredPulses, Long, Long))
INTERFACE_OF(TriggerSystem,
  OP(GetArmSource, Object **) OP(GetClockInput, Object **) OP(GetBurstLength, Long *) OTHER(o1) OP(GetExtInput, Object **)
  OTHER(o2) OP(GetTriggerMode, Long *) OP(SetTriggerMode, Long) OP(GetAuxOutputs, Object **) OP(GetPeriodSource, Long *))
INTERFACE_OF(ArmSource,
  OP(GetPllFrequency, Double *) OTHER(o1) OTHER(o2) OTHER(o3) OTHER(o4) OTHER(o5) OP(GetSlope, Long *) OTHER(o6)
  OP(GetSource, Long *) OP(SetSource, Long))
INTERFACE_OF(ClockInput,
  OP(GetImpedance, Double *) OP(SetImpedance, Double) OP(GetSlope, Long *) OTHER(o1) OP(GetThreshold, Double *)
  OP(SetThreshold, Double))
INTERFACE_OF(ExtInput,
  OP(GetImpedance, Double *) OP(SetImpedance, Double) OP(GetThreshold, Double *) OP(SetThreshold, Double))
INTERFACE_OF(AuxOutputs,
  OTHER(o1) OTHER(o2) OP(GetOutLevel, Long, Long *) OP(SetOutLevel, Long, Long) OTHER(o3) OTHER(o4) OP(GetVxiSource, Long *)
  OP(SetVxiSource, Long) OP(GetVxiLine, Long *) OP(SetVxiLine, Long))
INTERFACE_OF(PatternMemory,
  OP(CalcPrbs, Long, Long, Long, SAFEARRAY **) OP(SetPattern, Long, Long, SAFEARRAY **, Long) OTHER(o1) OTHER(o2) OTHER(o3)
  OP(GetPattern, Long, Long, SAFEARRAY **, Long *))
INTERFACE_OF(PllReference, OP(GetReference, Double *, Long *) OP(SetReference, Double *, Long))

static const GUID IidDriverRoot = {0x2A36D5D2, 0x43D3, 0x8736, {0x89, 0x93, 0xAD, 0x20, 0x5F, 0x2A, 0x99, 0xB0}};
static const GUID IidInstrument = {0x1B6ED75A, 0x5CB6, 0x8D36, {0x89, 0x8A, 0x2F, 0x49, 0xEA, 0xA6, 0x75, 0x38}};
static const GUID IidChannelLevels = {0x51000F37, 0x3755, 0x8EC5, {0xB9, 0xEF, 0x26, 0x41, 0x2C, 0x12, 0x2E, 0x5D}};
static const GUID IidNull, IidUnknownOf = {0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

static int slots, faults;

static void Expect(int fRight, const char *strWhat, long lngGot) {
  ++slots;
  if (fRight) return;
  ++faults;
  printf("FAULT: %s answered %08lX\n", strWhat, (unsigned long)lngGot);
}

/* A call that has to work. */
#define DO(OBJECT, NAME, ...)                                                             \
  do {                                                                                    \
    const HRESULT status = (OBJECT)->table->NAME((Any *)(OBJECT), ##__VA_ARGS__);         \
    Expect(status == S_OK, #OBJECT "." #NAME, status);                                    \
  } while (0)
/* A slot that nobody calls. */
#define NOBODY(OBJECT, NAME)                                                              \
  do {                                                                                    \
    const HRESULT status = (OBJECT)->table->NAME((Any *)(OBJECT));                        \
    Expect(status == E_NOTIMPL, #OBJECT "." #NAME, status);                               \
  } while (0)
/* What was read has to be what was written. */
#define SAME(GOT, WANTED)                                                                 \
  do {                                                                                    \
    if ((GOT) == (WANTED)) break;                                                         \
    ++faults;                                                                             \
    printf("FAULT: line %d: " #GOT " is not " #WANTED "\n", __LINE__);                    \
  } while (0)

/* The seven slots that all objects have. A second reference is released here, the object's own by the caller. */
static void Dual(Object *object, const char *strName) {
  void *same = NULL, *none = NULL;
  UINT count = 0;
  DISPID id = 0;
  OLECHAR *name = L"Anything";
  DISPPARAMS params;
  memset(&params, 0, sizeof params);
  Expect(object->table->QueryInterface(object, &IidUnknownOf, &same) == S_OK && same, strName, 0);
  Expect(object->table->AddRef(object) == 3, strName, 1);
  object->table->Release(object);
  Expect(object->table->Release(object) == 1, strName, 2);
  Expect(object->table->GetTypeInfoCount(object, &count) == E_NOTIMPL, strName, 3);
  Expect(object->table->GetTypeInfo(object, 0, 0, &none) == E_NOTIMPL, strName, 4);
  Expect(object->table->GetIDsOfNames(object, &IidNull, &name, 1, 0, &id) == E_NOTIMPL, strName, 5);
  Expect(object->table->Invoke(object, 1, &IidNull, 0, DISPATCH_METHOD, &params, NULL, NULL, NULL) == E_NOTIMPL, strName, 6);
}

/* Fetches an object, and calls what all objects have. */
#define FETCH(PARENT, NAME, OBJECT, ...)                                \
  do {                                                                  \
    DO(PARENT, NAME, ##__VA_ARGS__, (Object **)&OBJECT);                \
    if (!OBJECT) return (void)printf("FAULT: no " #OBJECT "\n"), (void)++faults; \
    Dual((Object *)OBJECT, #OBJECT);                                    \
  } while (0)
#define DROP(OBJECT) ((Object *)(OBJECT))->table->Release((Object *)(OBJECT))

static void *Narrowed(Object *object, const GUID *iid) {
  void *narrow = NULL;
  if (FAILED(object->table->QueryInterface(object, iid, &narrow))) narrow = NULL;
  DROP(object);
  return narrow;
}

static SAFEARRAY *Bytes(const unsigned char *bytes, unsigned count) {
  SAFEARRAY *array = SafeArrayCreateVector(VT_UI1, 0, count);
  if (bytes) memcpy(array->pvData, bytes, count);
  return array;
}

static void UseLimits(Object *group_, const char *strName) {
  LimitGroup *group = (LimitGroup *)group_;
  LimitPair *pair = NULL;
  Boolean on = 0;
  Double high = 0, low = 0;
  NOBODY(group, o1); NOBODY(group, o2); NOBODY(group, o3); NOBODY(group, o4);
  FETCH(group, GetLimits, pair);
  DO(pair, GetHigh, &high); DO(pair, SetHigh, high);
  DO(pair, GetLow, &low); DO(pair, SetLow, low);
  DO(pair, SetEnabled, 0); DO(pair, GetEnabled, &on); SAME(on, 0);
  (void)strName;
  DROP(pair);
}

static void UseTiming(ChannelTiming *timing) {
  Edges *edges = NULL;
  SinglePulse *single = NULL;
  DoublePulse *twofold = NULL;
  Long selector = 0, number = 0;
  Boolean on = 0;
  Double value = 0;
  NOBODY(timing, o1); NOBODY(timing, o2); NOBODY(timing, o3); NOBODY(timing, o4); NOBODY(timing, o5); NOBODY(timing, o6);
  DO(timing, SetFrequency, 1e5); DO(timing, GetFrequency, &value); SAME(value, 1e5);
  DO(timing, SetWidth, 2e-7); DO(timing, GetWidth, &value); SAME(value, 2e-7);
  DO(timing, SetPulseType, 1); DO(timing, GetPulseType, &number); SAME(number, 1);
  FETCH(timing, GetEdges, edges);
  NOBODY(edges, o1); NOBODY(edges, o2); NOBODY(edges, o3); NOBODY(edges, o4);
  DO(edges, SetCoupling, 0); DO(edges, GetCoupling, &number); SAME(number, 0);
  DO(edges, SetLeading, &selector, 2e-9); DO(edges, GetLeading, &selector, &value); SAME(value, 2e-9);
  DO(edges, SetTrailing, &selector, 3e-9); DO(edges, GetTrailing, &selector, &value); SAME(value, 3e-9);
  FETCH(timing, GetDoublePulse, twofold);
  NOBODY(twofold, o1); NOBODY(twofold, o2); NOBODY(twofold, o3); NOBODY(twofold, o4); NOBODY(twofold, o5);
  DO(twofold, SetDelay, &selector, 1e-6); DO(twofold, GetDelay, &selector, &value); SAME(value, 1e-6);
  DO(twofold, GetEnabled, &on); SAME(on, -1);
  FETCH(timing, GetSinglePulse, single);
  NOBODY(single, o1); NOBODY(single, o2); NOBODY(single, o3); NOBODY(single, o4);
  DO(single, SetDelay, &selector, 5e-7); DO(single, GetDelay, &selector, &value); SAME(value, 5e-7);
  DO(twofold, GetEnabled, &on); SAME(on, 0);
  DROP(single); DROP(twofold); DROP(edges);
}

static void UseLevels(ChannelLevels *levels) {
  Boolean on = 0;
  Long number = 0;
  Double high = 0, low = 0, value = 0;
  NOBODY(levels, o1); NOBODY(levels, o2);
  DO(levels, SetLevel, 1, 0, 3.0, -1.0); DO(levels, GetLevel, 1, &number, &high, &low); SAME(high, 3.0); SAME(low, -1.0);
  DO(levels, GetLoadCompensation, &value); DO(levels, SetLoadCompensation, value);
  DO(levels, GetImpedance, &value); DO(levels, SetImpedance, value);
  DO(levels, GetPolarity, &number); DO(levels, SetPolarity, number);
  DO(levels, SetOutput, -1); DO(levels, GetOutput, &on); SAME(on, -1);
  DO(levels, SetComplementOutput, -1); DO(levels, GetComplementOutput, &on); SAME(on, -1);
  DO(levels, SetOutput, 0); DO(levels, SetComplementOutput, 0);
}

static void UseChannel(ChannelList *channels) {
  Channel *channel = NULL;
  Object *group = NULL, *plain = NULL;
  ChannelTiming *timing = NULL;
  ChannelLevels *levels = NULL;
  Long number = 0;
  FETCH(channels, GetItem, channel, 1);
  NOBODY(channel, o1); NOBODY(channel, o2); NOBODY(channel, o3); NOBODY(channel, o4);
  DO(channel, SetSignalFormat, 0); DO(channel, GetSignalFormat, &number); SAME(number, 0);
  FETCH(channel, GetCurrentLimits, group); UseLimits(group, "current"); DROP(group);
  FETCH(channel, GetVoltageLimits, group); UseLimits(group, "voltage"); DROP(group);
  FETCH(channel, GetTiming, timing); UseTiming(timing); DROP(timing);
  DO(channel, GetLevels, &plain);
  levels = Narrowed(plain, &IidChannelLevels);
  Dual((Object *)levels, "levels");
  UseLevels(levels);
  DROP(levels); DROP(channel);
}

static void UseTriggers(TriggerSystem *trigger) {
  ArmSource *arm = NULL;
  ClockInput *clockInput = NULL;
  ExtInput *external = NULL;
  AuxOutputs *aux = NULL;
  Long number = 0;
  Double value = 0;
  NOBODY(trigger, o1); NOBODY(trigger, o2);
  DO(trigger, GetBurstLength, &number); DO(trigger, GetPeriodSource, &number);
  DO(trigger, SetTriggerMode, 0); DO(trigger, GetTriggerMode, &number); SAME(number, 0);
  FETCH(trigger, GetArmSource, arm);
  NOBODY(arm, o1); NOBODY(arm, o2); NOBODY(arm, o3); NOBODY(arm, o4); NOBODY(arm, o5); NOBODY(arm, o6);
  DO(arm, GetPllFrequency, &value); DO(arm, GetSlope, &number);
  DO(arm, GetSource, &number); DO(arm, SetSource, number);
  FETCH(trigger, GetClockInput, clockInput);
  NOBODY(clockInput, o1);
  DO(clockInput, GetImpedance, &value); DO(clockInput, SetImpedance, value); DO(clockInput, GetSlope, &number);
  DO(clockInput, SetThreshold, 1.5); DO(clockInput, GetThreshold, &value); SAME(value, 1.5);
  FETCH(trigger, GetExtInput, external);
  DO(external, GetImpedance, &value); DO(external, SetImpedance, value);
  DO(external, SetThreshold, -1.5); DO(external, GetThreshold, &value); SAME(value, -1.5);
  FETCH(trigger, GetAuxOutputs, aux);
  NOBODY(aux, o1); NOBODY(aux, o2); NOBODY(aux, o3); NOBODY(aux, o4);
  DO(aux, SetOutLevel, 2, 1); DO(aux, GetOutLevel, 2, &number); SAME(number, 1);
  DO(aux, SetVxiSource, 1); DO(aux, GetVxiSource, &number); SAME(number, 1);
  DO(aux, SetVxiLine, 8); DO(aux, GetVxiLine, &number); SAME(number, 8);
  DROP(aux); DROP(external); DROP(clockInput); DROP(arm);
}

static void UsePatterns(PatternMemory *memory) {
  static const unsigned char Sent[] = {0xA5, 0x3C};
  SAFEARRAY *array = Bytes(Sent, 2);
  Long length = 0;
  NOBODY(memory, o1); NOBODY(memory, o2); NOBODY(memory, o3);
  DO(memory, SetPattern, 1, 2, &array, 16);
  SafeArrayDestroy(array);
  array = Bytes(NULL, 1);
  DO(memory, GetPattern, 1, 2, &array, &length);
  SAME(length, 16);
  SAME(memcmp(array->pvData, Sent, 2), 0);
  SafeArrayDestroy(array);
  array = Bytes(NULL, 16);
  DO(memory, CalcPrbs, 1, 127, 7, &array);
  SafeArrayDestroy(array);
}

static void UseModes(ModeSetup *modes) {
  DO(modes, SetContinuousBurst, 4, 0, 1); DO(modes, SetContinuousPattern, 0, 1);
  DO(modes, SetGatedBurst, 4, 0, 1, 3, 1); DO(modes, SetGatedPattern, 0, 1, 3, 1); DO(modes, SetGatedPulses, 0, 1, 3, 1);
  DO(modes, SetTriggeredBurst, 4, 0, 1, 3, 1, 0, 1e-6); DO(modes, SetTriggeredPattern, 0, 1, 3, 1, 0, 1e-6);
  DO(modes, SetTriggeredPulses, 3, 1); DO(modes, SetContinuousPulses, 0, 1);
}

static void UseInstrument(Instrument *instrument) {
  SAFEARRAY *record = Bytes(NULL, 28);
  ChannelList *channels = NULL;
  ErrorQueue *queue = NULL;
  Restrictions *restrictions = NULL;
  ModeSetup *modes = NULL;
  PatternMemory *memory = NULL;
  PllReference *reference = NULL;
  TriggerSystem *trigger = NULL;
  BSTR text = NULL;
  Long number = 0, selector = 0;
  Integer code = 0;
  Boolean opened = 0, state = 0;
  Double value = 0;
  DO(instrument, GetViInfo, &record); SafeArrayDestroy(record);
  NOBODY(instrument, o1); NOBODY(instrument, o2); NOBODY(instrument, o3); NOBODY(instrument, o4); NOBODY(instrument, o5);
  NOBODY(instrument, o6); NOBODY(instrument, o7); NOBODY(instrument, o8); NOBODY(instrument, o9); NOBODY(instrument, o10);
  NOBODY(instrument, o11); NOBODY(instrument, o12); NOBODY(instrument, o13); NOBODY(instrument, o14); NOBODY(instrument, o15);
  NOBODY(instrument, o16); NOBODY(instrument, o17); NOBODY(instrument, o18); NOBODY(instrument, o19);
  DO(instrument, GetName, &text); SAME(wcscmp(text, L"VP-210"), 0); SysFreeString(text);
  DO(instrument, Open, 0, -1, 0, &opened); SAME(opened, -1);
  DO(instrument, GetIdentity, &text); SAME(wcsncmp(text, L"Velmora,VP-210", 14), 0); SysFreeString(text);
  DO(instrument, GetOptions, &text); SysFreeString(text);
  DO(instrument, SetAutoDetectErrors, 0); DO(instrument, Reset); DO(instrument, Calibrate);
  text = NULL; DO(instrument, SelfTest, &code, &text); SysFreeString(text);
  DO(instrument, SetPnpTimeout, 4000); DO(instrument, GetPnpTimeout, &number); SAME(number, 4000);
  DO(instrument, Transaction, 0); DO(instrument, GetTransactionState, &code, &state); SAME(state, -1);
  DO(instrument, Transaction, 2); DO(instrument, GetTransactionState, &code, &state); SAME(state, 0);
  DO(instrument, GetPulseMode, &selector, &number); SAME(number, 0);
  DO(instrument, SetChannelMath, 0); DO(instrument, GetChannelMath, &number); SAME(number, 0);

  FETCH(instrument, GetRestrictions, restrictions); DO(restrictions, GetMask, &number); SAME(number, 0);
  FETCH(instrument, GetErrorQueue, queue);
  NOBODY(queue, o1); NOBODY(queue, o2); NOBODY(queue, o3); NOBODY(queue, o4); NOBODY(queue, o5); NOBODY(queue, o6);
  DO(queue, SetVerbose, -1); DO(queue, GetVerbose, &state); SAME(state, -1);
  text = NULL; DO(queue, GetErrors, &text); SysFreeString(text);
  text = NULL; DO(queue, GetWarnings, &text); SysFreeString(text);
  FETCH(instrument, GetPllReference, reference);
  value = 1e7; DO(reference, SetReference, &value, 1); DO(reference, GetReference, &value, &number); SAME(number, 1);
  FETCH(instrument, GetChannels, channels); DO(channels, GetCount, &number); SAME(number, 2); UseChannel(channels);
  FETCH(instrument, GetTriggerSystem, trigger); UseTriggers(trigger);
  FETCH(instrument, GetModeSetup, modes); UseModes(modes);
  FETCH(instrument, GetPatternMemory, memory); UsePatterns(memory);
  DROP(memory); DROP(modes); DROP(trigger); DROP(channels); DROP(reference); DROP(queue); DROP(restrictions);
  DO(instrument, Close);
}

static void UseList(InstrumentList *list) {
  Instrument *instrument = NULL;
  Object *plain = NULL;
  Long count = 0;
  VARIANT key;
  DO(list, GetCount, &count); SAME(count, 6);
  NOBODY(list, o1);
  DO(list, Refresh);
  VariantInit(&key);
  key.vt = VT_I2;
  key.iVal = 1;
  DO(list, GetItem, key, &plain);
  DROP(plain);
  key.vt = VT_BSTR;
  key.bstrVal = SysAllocString(L"VP-210");
  DO(list, GetItem, key, &plain);
  VariantClear(&key);
  instrument = Narrowed(plain, &IidInstrument);
  Dual((Object *)instrument, "instrument");
  UseInstrument(instrument);
  DROP(instrument);
}

static void UseRoot(DriverRoot *root) {
  InstrumentList *list = NULL;
  NOBODY(root, o1); NOBODY(root, o2); NOBODY(root, o3);
  Dual((Object *)root, "root");
  FETCH(root, GetInstruments, list);
  UseList(list);
  DROP(list);
}

int main(void) {
  CLSID clsid;
  DriverRoot *root = NULL;
  CoInitialize(NULL);
  HRESULT status = CLSIDFromProgID(L"KolvenAtl.Kolven", &clsid);
  if (SUCCEEDED(status)) status = CoCreateInstance(&clsid, NULL, CLSCTX_INPROC_SERVER, &IidDriverRoot, (void **)&root);
  if (FAILED(status)) {
    printf("KolvenAtl.Kolven cannot be created: %08lX\n", (unsigned long)status);
    return 1;
  }
  UseRoot(root);
  DROP(root);
  printf("%d calls of slots, %d faults\n", slots, faults);
  return faults != 0;
}
