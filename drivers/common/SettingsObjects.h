#pragma once

#include "common/SessionObject.h"

namespace tarvik::driver {

/// The reference of the PLL.
class PllReferenceObject final : public SessionObject<kolven::IPllReference> {
 public:
  explicit PllReferenceObject(std::shared_ptr<Session> session) : SessionObject(std::move(session)) {}
  Status TARVIK_CALL GetReference(Double *pFreq, Long *pSource) override;
  Status TARVIK_CALL SetReference(Double *pFreq, Long source) override;
};

/// The pattern memory.
class PatternMemoryObject final : public SessionObject<kolven::IPatternMemory> {
 public:
  explicit PatternMemoryObject(std::shared_ptr<Session> session) : SessionObject(std::move(session)) {}
  Status TARVIK_CALL CalcPrbs(Long startAddr, Long lastAddr, Long base, kolven::AutomationArray **ppArray) override;
  Status TARVIK_CALL SetPattern(Long channel, Long form, kolven::AutomationArray **ppArray, Long length) override;
  /// An array that fits is filled; another one is replaced. An empty array gets the lower bound 1, as addresses have.
  Status TARVIK_CALL GetPattern(Long channel, Long form, kolven::AutomationArray **ppArray, Long *pLength) override;
};

/// Errors and warnings.
class ErrorQueueObject final : public SessionObject<kolven::IErrorQueue> {
 public:
  explicit ErrorQueueObject(std::shared_ptr<Session> session) : SessionObject(std::move(session)) {}
  Status TARVIK_CALL GetErrors(kolven::AutomationString *pValue) override;
  Status TARVIK_CALL GetVerbose(VariantBool *pValue) override;
  Status TARVIK_CALL SetVerbose(VariantBool enable) override;
  Status TARVIK_CALL GetWarnings(kolven::AutomationString *pValue) override;
};

/// What this model lacks.
class RestrictionsObject final : public SessionObject<kolven::IRestrictions> {
 public:
  explicit RestrictionsObject(std::shared_ptr<Session> session) : SessionObject(std::move(session)) {}
  Status TARVIK_CALL GetMask(Long *pValue) override;
};

}  // namespace tarvik::driver
