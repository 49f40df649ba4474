#pragma once

#include <utility>

#include "instrument/Reported.h"
#include "instrument/clsInstrInterface.h"

namespace tarvik {

template <class Sending>
Boolean clsInstrInterface::SetWithin(const char *strProc, Sending &&sending) {
  return Reported(
      strProc,
      [&](Boolean &fResult) {
        if (!clsInstrInterface::IsOnline(False)) return;
        clsInstrInterface::TransactionStart(False);
        std::forward<Sending>(sending)();
        // TransactionFinish reports rejected settings itself; that does not fail the operation.
        clsInstrInterface::TransactionFinish(False);
        fResult = clsInstrInterface::CheckWarnings(False);
      },
      [&] { clsInstrInterface::TransactionCancel(); });
}

template <class Operation>
Boolean clsInstrInterface::WhileOnline(const char *strProc, Operation &&operation) {
  return Reported(strProc, [&](Boolean &fResult) {
    if (clsInstrInterface::IsOnline(False)) std::forward<Operation>(operation)(fResult);
  });
}

}  // namespace tarvik
