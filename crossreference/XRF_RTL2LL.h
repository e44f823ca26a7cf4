#pragma once

/// The cross-reference half of libxrf: where in a device's configuration memory the value of an RTL
/// signal lives. Start at Design.

#include <crossreference/Bit.h>
#include <crossreference/Design.h>
#include <crossreference/Export.h>
#include <crossreference/Model.h>
#include <crossreference/ModelText.h>
#include <crossreference/Module.h>
#include <crossreference/Netlist.h>
#include <crossreference/Signal.h>
#include <crossreference/TokenMap.h>
#include <crossreference/Types.h>
#include <crossreference/Utils.h>
#include <support/Handlers.h>
#include <support/Limits.h>
