#pragma once

#include <memory>

#include "automation/ClassFactory.h"
#include "common/Rack.h"

namespace tarvik::driver {

/// Makes root objects over one rack; the rack is looked for with the first of them.
class ClassFactory final : public automation::ClassFactory {
 public:
  explicit ClassFactory(std::shared_ptr<Rack> rack) : m_rack(std::move(rack)) {}

 private:
  automation::Status Make(const automation::Guid &riid, void **ppvObject) override;

  const std::shared_ptr<Rack> m_rack;
};

}  // namespace tarvik::driver
