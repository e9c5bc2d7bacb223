// The system's device events in words.
//
// Pure.
#pragma once

#include <string>

#include "platform/DeviceServices.h"

// "arrived" and the like; the event's number where it has no word.
inline std::string DeviceEventText(unsigned long event) {
    switch (event) {
    case DBT_DEVICEARRIVAL:
        return "arrived";
    case DBT_DEVICEREMOVECOMPLETE:
        return "was removed";
    case DBT_DEVICEQUERYREMOVE:
        return "is to be removed";
    case DBT_DEVICEQUERYREMOVEFAILED:
        return "is not removed after all";
    case DBT_DEVICEREMOVEPENDING:
        return "is about to be removed";
    case DBT_DEVNODES_CHANGED:
        return "devices have changed";
    default:
        return "device event " + std::to_string(event);
    }
}
