// The calls of libudev that this program's tests divert.
#pragma once

#include <libudev.h>

#include "platform/Wrap.h"

MORVEX_WRAPPED(udev_new)
MORVEX_WRAPPED(udev_queue_get_udev_is_active)
MORVEX_WRAPPED(udev_monitor_new_from_netlink)
MORVEX_WRAPPED(udev_monitor_enable_receiving)
MORVEX_WRAPPED(udev_monitor_set_receive_buffer_size)
MORVEX_WRAPPED(udev_enumerate_new)
