#include "settings/RzFlags.h"

#include "instrument/Vocabulary.h"

namespace tarvik {

void RzFlags::SetRzState(Long lngType1, Long lngType2, Boolean fSetGroup, Boolean fUpdateCombos) {
  m_fRz[1] = lngType1 == eFormatRz;
  m_fRz[2] = lngType2 == eFormatRz;
  Changed.Raise({{lngType1, lngType2}, fSetGroup, fUpdateCombos});
}

void RzFlags::SetRzFromFlags(Boolean fRz1, Boolean fRz2, Boolean fSetGroup, Boolean fUpdateCombos) {
  SetRzState(fRz1 ? eFormatRz : eFormatNrz, fRz2 ? eFormatRz : eFormatNrz, fSetGroup, fUpdateCombos);
}

}  // namespace tarvik
