// Rules of the SuperSpeed endpoint companion, USB 3.2 9.6.7, and of the SuperSpeedPlus isochronous
// endpoint companion, 9.6.8.
#include "RulesCompanion.h"

#include <algorithm>

#include "Speeds.h"
#include "Text.h"

namespace usb {
namespace {

constexpr std::uint32_t MultMask = 0x03;
constexpr std::uint32_t HasIsochronousCompanion = 0x80;

// An endpoint with its companion, both present.
struct Pair {
    Endpoint const & read;
    Descriptor const & companion;
    TransferType type;
    bool complete;

    std::uint32_t Burst() const { return companion.Get(companion::bMaxBurst); }
    std::uint32_t Attributes() const { return companion.Get(companion::bmAttributes); }
};

void CheckBurst(Findings & findings, Pair const & pair) {
    if (pair.Burst() > 15)
        findings.Shall(pair.companion, companion::bMaxBurst, "is 0 to 15");
    else if (pair.type == TransferType::Control && pair.Burst() != 0)
        findings.Shall(pair.companion, companion::bMaxBurst, "is 0 for a control endpoint");
}

void CheckStreams(Findings & findings, Pair const & pair) {
    if ((pair.Attributes() & 0xE0) != 0)
        findings.Shall(
            pair.companion, companion::bmAttributes,
            "bits 7..5 are reserved and set to zero for a bulk endpoint");
    if ((pair.Attributes() & 0x1F) > 16)
        findings.Shall(
            pair.companion, companion::bmAttributes, "MaxStreams (bits 4..0) is 0 to 16");
}

void CheckMult(Findings & findings, Pair const & pair) {
    std::uint32_t const mult = pair.Attributes() & MultMask;
    if ((pair.Attributes() & 0x7C) != 0)
        findings.Shall(
            pair.companion, companion::bmAttributes,
            "bits 6..2 are reserved and set to zero for an isochronous endpoint");
    if ((pair.Attributes() & HasIsochronousCompanion) != 0) {
        if (!pair.read.isochronousCompanion && pair.complete)
            findings.Shall(
                pair.companion, companion::bmAttributes,
                "bit 7 promises an isochronous endpoint companion, which does not follow");
    } else if (mult > 2) {
        findings.Shall(pair.companion, companion::bmAttributes, "Mult (bits 1..0) is at most 2");
    } else if (mult != 0 && pair.Burst() == 0) {
        findings.Shall(
            pair.companion, companion::bmAttributes,
            "Mult (bits 1..0) is zero when bMaxBurst is zero");
    }
}

void CheckAttributes(Findings & findings, Pair const & pair) {
    switch (pair.type) {
    case TransferType::Bulk:
        CheckStreams(findings, pair);
        break;
    case TransferType::Isochronous:
        CheckMult(findings, pair);
        break;
    default:
        if (pair.Attributes() != 0)
            findings.Shall(
                pair.companion, companion::bmAttributes,
                Join("is reserved and zero for ", NameOf(pair.type), " endpoints"));
    }
}

// The most bytes that the endpoint can move in a service interval.
std::uint32_t CapacityOf(Pair const & pair) {
    bool const isochronous = pair.type == TransferType::Isochronous;
    std::uint32_t const mult = isochronous ? pair.Attributes() & MultMask : 0;
    return pair.read.descriptor.Get(endpoint::wMaxPacketSize) * (pair.Burst() + 1) * (mult + 1);
}

void CheckBytesPerInterval(Findings & findings, Pair const & pair) {
    std::uint32_t const bytes = pair.companion.Get(companion::wBytesPerInterval);
    bool const isochronous = pair.type == TransferType::Isochronous;
    if (!isochronous && pair.type != TransferType::Interrupt) {
        if (bytes != 0)
            findings.Shall(
                pair.companion, companion::wBytesPerInterval,
                Join("is reserved and zero for ", NameOf(pair.type), " endpoints"));
    } else if (isochronous && (pair.Attributes() & HasIsochronousCompanion) != 0) {
        if (bytes != 1)
            findings.Shall(
                pair.companion, companion::wBytesPerInterval,
                "is 1 when an isochronous endpoint companion says the number of bytes");
    } else if (bytes > CapacityOf(pair)) {
        findings.Shall(
            pair.companion, companion::wBytesPerInterval,
            Join(
                bytes, " bytes, its packets and bursts carry at most ", CapacityOf(pair),
                " in a service interval"));
    }
}

} // namespace

void CheckCompanions(
    Findings & findings, Device const & device, Endpoint const & read, bool complete) {
    if (!device.IsSuperSpeed()) {
        if (read.companion)
            findings.Shall(
                *read.companion, companion::bDescriptorType,
                "a companion is for SuperSpeed, which bcdUSB excludes");
        return;
    }
    if (!read.companion) {
        if (complete)
            findings.Shall(
                read.descriptor, endpoint::MissingCompanion,
                "no SuperSpeed endpoint companion descriptor follows the endpoint");
        return;
    }
    Pair const pair{read, *read.companion, TransferTypeOf(read), complete};
    CheckBurst(findings, pair);
    CheckAttributes(findings, pair);
    CheckBytesPerInterval(findings, pair);
    if (read.isochronousCompanion && read.isochronousCompanion->Get(isochronous::wReserved) != 0)
        findings.Shall(*read.isochronousCompanion, isochronous::wReserved, "is reserved and zero");
}

} // namespace usb
