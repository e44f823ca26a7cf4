#pragma once

#include <crossreference/Types.h>
#include <support/Api.h>

/// What is known of device families and parts.
namespace XRF_RTL2LL::utils {

/// Part(4) for every text, null included.
XRF_API Part getPart(const char* deviceText);
/// Site rows of one super logic region; 0 where the device has one region only.
XRF_API unsigned int getSLRSize(Part part);
/// Version of the cross-reference file format.
XRF_API unsigned int getVersion();
/// Whether a net's name was made up by the implementation tool.
XRF_API bool isAddedQuellonNetName(Family family, const char* name);

}  // namespace XRF_RTL2LL::utils
