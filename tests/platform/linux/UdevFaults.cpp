// The diverted calls.
#include "tests/platform/linux/UdevFaults.h"

MORVEX_WRAP(udev *, udev_new, (), ())
MORVEX_WRAP(int, udev_queue_get_udev_is_active, (udev_queue * queue), (queue))
MORVEX_WRAP(
    udev_monitor *, udev_monitor_new_from_netlink, (udev * context, char const * name),
    (context, name))
MORVEX_WRAP(int, udev_monitor_enable_receiving, (udev_monitor * monitor), (monitor))
MORVEX_WRAP(
    int, udev_monitor_set_receive_buffer_size, (udev_monitor * monitor, int size), (monitor, size))
MORVEX_WRAP(udev_enumerate *, udev_enumerate_new, (udev * context), (context))
