#include <hpi/HPICommonUtils.h>

#include <mutex>
#include <utility>

namespace HPICommonUtils {

namespace {

struct Service {
  std::mutex mutex;
  std::function<std::string()> provider;
};

Service& service() {
  static Service instance;
  return instance;
}

}  // namespace

std::string getBDDesignName() {
  std::function<std::string()> provider;
  {
    const std::lock_guard lock(service().mutex);
    provider = service().provider;
  }
  return provider ? provider() : std::string();
}

void setBDDesignName(const std::string& name) {
  setBDDesignNameProvider([name] { return name; });
}

void setBDDesignNameProvider(std::function<std::string()> provider) {
  const std::lock_guard lock(service().mutex);
  service().provider = std::move(provider);
}

}  // namespace HPICommonUtils
