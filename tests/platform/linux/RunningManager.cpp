// Preloaded beside a simulated machine: its device manager runs, whether the real one does or not.
#include <libudev.h>

#include "platform/BaseTypes.h"

extern "C" MORVEX_SYMBOL_EXPORT int udev_queue_get_udev_is_active(udev_queue *) { return 1; }
