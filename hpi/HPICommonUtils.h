#pragma once

#include <support/Api.h>

#include <functional>
#include <string>

/// What the library asks the tool around it.
namespace HPICommonUtils {

/// Name of the block design that holds the kernels; empty unless a host says otherwise. It has to
/// stay the same for as long as a map is in use.
XRF_API std::string getBDDesignName();

/// Gives a fixed name.
XRF_API void setBDDesignName(const std::string& name);

/// Gives a function that knows the name, for a host that learns it later; an empty function stands
/// for the empty name. It is called each time the name is needed, on the thread that needs it.
XRF_API void setBDDesignNameProvider(std::function<std::string()> provider);

}  // namespace HPICommonUtils
