#pragma once

/// Marks what libxrf exports; everything else stays hidden.
#if defined(__GNUC__)
#define XRF_API __attribute__((visibility("default")))
#else
#define XRF_API
#endif
