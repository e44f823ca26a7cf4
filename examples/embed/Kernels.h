#pragma once

#include <string>

/// Lists the kernels of a compiled container: when a simulator should stop for each compute unit,
/// and which signal carries each argument. Throws BadFile for a document that cannot be used.
void showKernels(const std::string& metadataFile, const std::string& blockDesign);
