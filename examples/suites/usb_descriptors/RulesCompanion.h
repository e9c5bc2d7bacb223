// The rules of the companions that follow an endpoint descriptor at SuperSpeed.
#pragma once

#include "Finding.h"
#include "Recording.h"

namespace usb {

// Whether the endpoint has the companions that its speed asks for, and what they say. With
// `complete` off they may have been lost, and are not missed.
void CheckCompanions(
    Findings & findings, Device const & device, Endpoint const & read, bool complete);

} // namespace usb
