#include "remote/Proxy.h"

namespace tarvik::remote {

namespace {

class IUnknownObject : public automation::IDispatch {
 public:
  static constexpr automation::Guid Iid = automation::GuidNull;

 protected:
  ~IUnknownObject() = default;
};

class UnknownProxy final : public Proxy<IUnknownObject> {
 public:
  UnknownProxy(std::shared_ptr<Connection> connection, ObjectId lngId)
      : Proxy(std::move(connection), lngId, KindUnknown) {}
};

}  // namespace

Ref<automation::IDispatch> MakeUnknownProxy(std::shared_ptr<Connection> connection, ObjectId lngId) {
  return automation::MakeObject<UnknownProxy>(std::move(connection), lngId);
}

}  // namespace tarvik::remote
