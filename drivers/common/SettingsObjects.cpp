#include "common/SettingsObjects.h"

#include <span>

#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "common/Prbs.h"

namespace tarvik::driver {

namespace {

std::span<Byte> BytesOf(kolven::AutomationArray **ppArray) {
  RequirePlace(ppArray);
  if (!automation::IsByteArray(*ppArray))
    throw CallFailure{automation::StatusTypeMismatch, "An array of bytes with one dimension is wanted"};
  if (!(*ppArray)->pvData) return {};
  return {static_cast<Byte *>((*ppArray)->pvData), (*ppArray)->rgsabound[0].cElements};
}

void RequireForm(Long lngForm) {
  if (lngForm != kolven::PatternForm)
    Reject(ScpiIllegalParameterValue, "Illegal parameter value: pattern form", std::to_string(lngForm) + ", allowed 2");
}

/// Puts the bytes into the caller's array: into the present one when it has the right size.
void Store(kolven::AutomationArray **ppArray, const std::vector<Byte> &bytes) {
  const bool fEmpty = !*ppArray || (*ppArray)->rgsabound[0].cElements == 0;
  if (*ppArray && !fEmpty) {
    const std::span<Byte> target = BytesOf(ppArray);
    if (target.size() == bytes.size()) {
      std::copy(bytes.begin(), bytes.end(), target.begin());
      return;
    }
  }
  const Long lngLowerBound = fEmpty ? 1 : static_cast<Long>((*ppArray)->rgsabound[0].lLbound);
  kolven::AutomationArray *pNew =
      automation::AllocByteArray(lngLowerBound, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  automation::FreeArray(*ppArray);
  *ppArray = pNew;
}

}  // namespace

Status PllReferenceObject::GetReference(Double *pFreq, Long *pSource) {
  return Run([&] {
    RequirePlace(pFreq);
    RequirePlace(pSource);
    const Settings settings = m_session->Instrument().CurrentSettings();
    *pFreq = settings.dblPllReference;
    *pSource = settings.lngPllReferenceSource;
  });
}

Status PllReferenceObject::SetReference(Double *pFreq, Long source) {
  return Run([&] {
    RequirePlace(pFreq);
    m_session->Send([dblFreq = *pFreq, source](Settings &s) {
      s.dblPllReference = dblFreq;
      s.lngPllReferenceSource = source;
    });
  });
}

Status PatternMemoryObject::CalcPrbs(Long startAddr, Long lastAddr, Long base, kolven::AutomationArray **ppArray) {
  return Run([&] { FillPrbs(BytesOf(ppArray), startAddr, lastAddr, base); });
}

Status PatternMemoryObject::SetPattern(Long channel, Long form, kolven::AutomationArray **ppArray, Long length) {
  return Run([&] {
    const std::span<const Byte> bytes = BytesOf(ppArray);
    m_session->Send({[channel, form, length, kept = std::vector<Byte>(bytes.begin(), bytes.end()),
                      description = m_session->Description()](Settings &s) {
                       RequireForm(form);
                       s.Row(channel, description).Write(kept, length);
                     },
                     channel});
  });
}

Status PatternMemoryObject::GetPattern(Long channel, Long form, kolven::AutomationArray **ppArray, Long *pLength) {
  return Run([&] {
    RequirePlace(ppArray);
    RequirePlace(pLength);
    if (*ppArray) BytesOf(ppArray);
    RequireForm(form);
    const PatternRow row = m_session->Instrument().CurrentPattern(channel);
    Store(ppArray, row.Read());
    *pLength = row.Length();
  });
}

Status ErrorQueueObject::GetErrors(kolven::AutomationString *pValue) {
  return Run([&] {
    RequirePlace(pValue);
    *pValue = automation::AllocString(JoinEntries(m_session->Instrument().TakeErrors(), m_session->fVerbose));
  });
}

Status ErrorQueueObject::GetVerbose(VariantBool *pValue) {
  return Run([&] {
    RequirePlace(pValue);
    *pValue = ToWord(m_session->fVerbose);
  });
}

Status ErrorQueueObject::SetVerbose(VariantBool enable) {
  return Run([&] { m_session->fVerbose = enable != 0; });
}

Status ErrorQueueObject::GetWarnings(kolven::AutomationString *pValue) {
  return Run([&] {
    RequirePlace(pValue);
    *pValue = automation::AllocString(JoinEntries(m_session->Instrument().Warnings(), m_session->fVerbose));
  });
}

Status RestrictionsObject::GetMask(Long *pValue) {
  return Run([&] {
    RequirePlace(pValue);
    *pValue = m_session->Description().lngMask;
  });
}

}  // namespace tarvik::driver
