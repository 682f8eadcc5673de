#pragma once

#ifndef MAC_OS_X_VERSION_MIN_REQUIRED
#error "The test says for which macOS it compiles: -DMAC_OS_X_VERSION_MIN_REQUIRED=110000"
#endif
