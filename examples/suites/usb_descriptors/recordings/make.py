#!/usr/bin/env python3
"""Makes the recordings of this folder: good/ has devices without a fault, faulty/ one fault each.

    make.py           writes the files
    make.py --check   compares the files with what it would write; exit 1 when they differ

The devices are made up from the tables of the standard. Vendor 0xF1D0 is made up too: nobody was
given that number. Lengths, types and counts are filled in unless a table says otherwise, which is
how most of the faults are made.
"""
import copy
import pathlib
import sys

# Each descriptor by the standard's table: its type, then its fields and their widths in bytes.
TABLES = {
    "Device": (0x01, "bcdUSB:2 bDeviceClass:1 bDeviceSubClass:1 bDeviceProtocol:1 bMaxPacketSize0:1"
               " idVendor:2 idProduct:2 bcdDevice:2 iManufacturer:1 iProduct:1 iSerialNumber:1"
               " bNumConfigurations:1"),
    "Configuration": (0x02, "wTotalLength:2 bNumInterfaces:1 bConfigurationValue:1"
                      " iConfiguration:1 bmAttributes:1 bMaxPower:1"),
    "Interface": (0x04, "bInterfaceNumber:1 bAlternateSetting:1 bNumEndpoints:1 bInterfaceClass:1"
                  " bInterfaceSubClass:1 bInterfaceProtocol:1 iInterface:1"),
    "Endpoint": (0x05, "bEndpointAddress:1 bmAttributes:1 wMaxPacketSize:2 bInterval:1"),
    "AudioEndpoint": (0x05, "bEndpointAddress:1 bmAttributes:1 wMaxPacketSize:2 bInterval:1"
                      " bRefresh:1 bSynchAddress:1"),
    "Association": (0x0B, "bFirstInterface:1 bInterfaceCount:1 bFunctionClass:1"
                    " bFunctionSubClass:1 bFunctionProtocol:1 iFunction:1"),
    "Companion": (0x30, "bMaxBurst:1 bmAttributes:1 wBytesPerInterval:2"),
    "Store": (0x0F, "wTotalLength:2 bNumDeviceCaps:1"),
    "Usb20Extension": (0x10, "bDevCapabilityType:1 bmAttributes:4"),
    "SuperSpeedUsb": (0x10, "bDevCapabilityType:1 bmAttributes:1 wSpeedsSupported:2"
                      " bFunctionalitySupport:1 bU1DevExitLat:1 wU2DevExitLat:2"),
    "ContainerId": (0x10, "bDevCapabilityType:1 bReserved:1 ContainerID:16"),
    "Hid": (0x21, "bcdHID:2 bCountryCode:1 bNumDescriptors:1 bDescriptorType0:1"
            " wDescriptorLength0:2"),
    "PipeUsage": (0x24, "bPipeID:1 bReserved:1"),
    "ClassInterface": (0x24, ""),  # the class's own bytes stand in `data`
    "ClassEndpoint": (0x25, ""),
}
CAPABILITIES = ("Usb20Extension", "SuperSpeedUsb", "ContainerId")
ENDPOINTS = ("Endpoint", "AudioEndpoint")

CONTROL, ISOCHRONOUS, BULK, INTERRUPT = range(4)
BUS_POWERED, SELF_POWERED, REMOTE_WAKEUP = 0x80, 0xC0, 0x20


class Descriptor:
    def __init__(self, kind, data=b"", **fields):
        self.kind, self.data, self.fields = kind, data, fields
        unknown = set(fields) - {name for name, _ in self.table()} - {"bLength"}
        assert not unknown, f"{kind} has no {unknown}"

    def table(self):
        return [(name, int(width)) for name, width in
                (entry.split(":") for entry in TABLES[self.kind][1].split())]

    def size(self):
        return 2 + sum(width for _, width in self.table()) + len(self.data)

    def bytes(self):
        body = b"".join(self.fields.get(name, 0).to_bytes(width, "little")
                        for name, width in self.table())
        length = self.fields.get("bLength", self.size())
        return bytes([length, TABLES[self.kind][0]]) + body + self.data


def fill(descriptors):
    """Sets the lengths and counts that the tables leave open."""
    def section(start, ends):
        end = start + 1
        while end < len(descriptors) and descriptors[end].kind not in ends:
            end += 1
        return descriptors[start:end]

    for index, each in enumerate(descriptors):
        default = each.fields.setdefault
        if each.kind == "Device":
            default("bNumConfigurations", sum(d.kind == "Configuration" for d in descriptors))
        elif each.kind == "Configuration":
            whole = section(index, ("Configuration", "Store"))
            default("wTotalLength", sum(d.size() for d in whole))
            default("bNumInterfaces", len({d.fields["bInterfaceNumber"] for d in whole
                                           if d.kind == "Interface"}))
        elif each.kind == "Interface":
            whole = section(index, ("Interface", "Association", "Configuration", "Store"))
            default("bNumEndpoints", sum(d.kind in ENDPOINTS for d in whole))
        elif each.kind == "Store":
            whole = descriptors[index:]
            default("wTotalLength", sum(d.size() for d in whole))
            default("bNumDeviceCaps", sum(d.kind in CAPABILITIES for d in whole))
    return descriptors


def recording(descriptors):
    return b"".join(each.bytes() for each in fill(copy.deepcopy(descriptors)))


def device(product, **fields):
    return Descriptor("Device", idVendor=0xF1D0, idProduct=product,
                      **{"bcdDevice": 0x0100, "iManufacturer": 1, "iProduct": 2, **fields})


def configuration(power, attributes=BUS_POWERED, **fields):
    return Descriptor("Configuration", bConfigurationValue=1, bmAttributes=attributes,
                      bMaxPower=power, **fields)


def interface(number, cls, sub=0, protocol=0, alternate=0):
    return Descriptor("Interface", bInterfaceNumber=number, bAlternateSetting=alternate,
                      bInterfaceClass=cls, bInterfaceSubClass=sub, bInterfaceProtocol=protocol)


def endpoint(address, attributes, size, interval=0):
    return Descriptor("Endpoint", bEndpointAddress=address, bmAttributes=attributes,
                      wMaxPacketSize=size, bInterval=interval)


def companion(burst=0, attributes=0, per_interval=0):
    return Descriptor("Companion", bMaxBurst=burst, bmAttributes=attributes,
                      wBytesPerInterval=per_interval)


def hid(report_length):
    return Descriptor("Hid", bcdHID=0x0111, bNumDescriptors=1, bDescriptorType0=0x22,
                      wDescriptorLength0=report_length)


def class_interface(*data):
    return Descriptor("ClassInterface", data=bytes(data))


MOUSE = [
    device(0x0001, bcdUSB=0x0110, bMaxPacketSize0=8),
    configuration(50, BUS_POWERED | REMOTE_WAKEUP),
    interface(0, 0x03, 0x01, 0x02),
    hid(52),
    endpoint(0x81, INTERRUPT, 4, 10),
]

MICROPHONE = [
    device(0x0002, bcdUSB=0x0110, bMaxPacketSize0=16),
    configuration(50),
    interface(0, 0x01, 0x01),
    class_interface(0x01, 0x00, 0x01, 0x1E, 0x00, 0x01, 0x01),  # header, one streaming interface
    class_interface(0x02, 0x01, 0x01, 0x02, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00),  # microphone
    class_interface(0x03, 0x02, 0x01, 0x01, 0x00, 0x01, 0x00),  # to the host
    interface(1, 0x01, 0x02),
    interface(1, 0x01, 0x02, alternate=1),
    class_interface(0x01, 0x02, 0x01, 0x01, 0x00),  # PCM
    class_interface(0x02, 0x01, 0x01, 0x02, 0x10, 0x01, 0x80, 0xBB, 0x00),  # 16 bits, 48 kHz
    Descriptor("AudioEndpoint", bEndpointAddress=0x81, bmAttributes=ISOCHRONOUS | 0x04,
               wMaxPacketSize=98, bInterval=1),
    Descriptor("ClassEndpoint", data=bytes([0x01, 0x00, 0x00, 0x00, 0x00])),
]

STORAGE = [
    device(0x0003, bcdUSB=0x0200, bMaxPacketSize0=64, iSerialNumber=3),
    configuration(100),
    interface(0, 0x08, 0x06, 0x50),
    endpoint(0x81, BULK, 512),
    endpoint(0x02, BULK, 512),
]

HUB = [
    device(0x0004, bcdUSB=0x0200, bDeviceClass=0x09, bDeviceProtocol=0x02, bMaxPacketSize0=64),
    configuration(50, SELF_POWERED | REMOTE_WAKEUP),
    interface(0, 0x09, 0x00, 0x01),
    endpoint(0x81, INTERRUPT, 1, 12),
    interface(0, 0x09, 0x00, 0x02, alternate=1),
    endpoint(0x81, INTERRUPT, 1, 12),
]

# A modem of two interfaces and a keyboard.
COMPOSITE = [
    device(0x0005, bcdUSB=0x0200, bDeviceClass=0xEF, bDeviceSubClass=0x02, bDeviceProtocol=0x01,
           bMaxPacketSize0=64),
    configuration(125, BUS_POWERED | REMOTE_WAKEUP),
    Descriptor("Association", bFirstInterface=0, bInterfaceCount=2, bFunctionClass=0x02,
               bFunctionSubClass=0x02, bFunctionProtocol=0x01),
    interface(0, 0x02, 0x02, 0x01),
    class_interface(0x00, 0x10, 0x01),
    class_interface(0x06, 0x00, 0x01),
    endpoint(0x81, INTERRUPT, 16, 9),
    interface(1, 0x0A),
    endpoint(0x82, BULK, 512),
    endpoint(0x02, BULK, 512),
    interface(2, 0x03, 0x01, 0x01),
    hid(63),
    endpoint(0x83, INTERRUPT, 8, 7),
]

# Video over isochronous endpoints of one and of three transactions a microframe.
CAMERA = [
    device(0x0006, bcdUSB=0x0200, bDeviceClass=0xEF, bDeviceSubClass=0x02, bDeviceProtocol=0x01,
           bMaxPacketSize0=64),
    configuration(250),
    Descriptor("Association", bFirstInterface=0, bInterfaceCount=2, bFunctionClass=0x0E,
               bFunctionSubClass=0x03),
    interface(0, 0x0E, 0x01),
    endpoint(0x83, INTERRUPT, 16, 8),
    Descriptor("ClassEndpoint", data=bytes([0x03, 0x10, 0x00])),
    interface(1, 0x0E, 0x02),
    interface(1, 0x0E, 0x02, alternate=1),
    endpoint(0x81, ISOCHRONOUS | 0x04, 512, 1),
    interface(1, 0x0E, 0x02, alternate=2),
    endpoint(0x81, ISOCHRONOUS | 0x04, 2 << 11 | 1024, 1),
]

# Storage with both of its transports, the second with 16 streams a pipe.
SUPER_STORAGE = [
    device(0x0007, bcdUSB=0x0320, bMaxPacketSize0=9, iSerialNumber=3),
    configuration(112),
    interface(0, 0x08, 0x06, 0x50),
    endpoint(0x81, BULK, 1024),
    companion(burst=15),
    endpoint(0x02, BULK, 1024),
    companion(burst=15),
    interface(0, 0x08, 0x06, 0x62, alternate=1),
    endpoint(0x81, BULK, 1024),
    companion(burst=15, attributes=4),
    Descriptor("PipeUsage", bPipeID=3),
    endpoint(0x02, BULK, 1024),
    companion(burst=15, attributes=4),
    Descriptor("PipeUsage", bPipeID=4),
    endpoint(0x83, BULK, 1024),
    companion(attributes=4),
    Descriptor("PipeUsage", bPipeID=2),
    endpoint(0x04, BULK, 1024),
    companion(),
    Descriptor("PipeUsage", bPipeID=1),
    Descriptor("Store"),
    Descriptor("Usb20Extension", bDevCapabilityType=0x02, bmAttributes=0x00000006),
    Descriptor("SuperSpeedUsb", bDevCapabilityType=0x03, wSpeedsSupported=0x000E,
               bFunctionalitySupport=1, bU1DevExitLat=10, wU2DevExitLat=2047),
    Descriptor("ContainerId", bDevCapabilityType=0x04,
               ContainerID=0x00112233445566778899AABBCCDDEEFF),
]

GOOD = {
    "low_speed_mouse": MOUSE,
    "full_speed_microphone": MICROPHONE,
    "high_speed_storage": STORAGE,
    "high_speed_hub": HUB,
    "high_speed_composite": COMPOSITE,
    "high_speed_camera": CAMERA,
    "super_speed_storage": SUPER_STORAGE,
}


def changed(base, kind, occurrence=0, **fields):
    """The device with some fields of one of its descriptors changed."""
    result = copy.deepcopy(base)
    [d for d in result if d.kind == kind][occurrence].fields.update(fields)
    return result


def without(base, kind, occurrence=0):
    result = copy.deepcopy(base)
    result.remove([d for d in result if d.kind == kind][occurrence])
    return result


FAULTY = {
    "association_beyond_interfaces": changed(COMPOSITE, "Association", bInterfaceCount=4),
    "association_without_device_class": changed(
        COMPOSITE, "Device", bDeviceClass=0, bDeviceSubClass=0, bDeviceProtocol=0),
    "bos_count": changed(SUPER_STORAGE, "Store", bNumDeviceCaps=4),
    "bulk_packet_size": changed(STORAGE, "Endpoint", 1, wMaxPacketSize=320),
    "companion_missing": without(SUPER_STORAGE, "Companion", 1),
    "configuration_count": changed(MICROPHONE, "Device", bNumConfigurations=2),
    "configuration_reserved_bit": changed(
        MOUSE, "Configuration", bmAttributes=REMOTE_WAKEUP),
    "device_release_not_decimal": changed(MOUSE, "Device", bcdDevice=0x010A),
    "endpoint_count": changed(HUB, "Interface", 1, bNumEndpoints=2),
    "endpoint_twice": changed(STORAGE, "Endpoint", 1, bEndpointAddress=0x81),
    "interface_number_gap": changed(
        changed(COMPOSITE, "Interface", 2, bInterfaceNumber=3), "Configuration", bNumInterfaces=3),
    "interval_zero": changed(MOUSE, "Endpoint", bInterval=0),
    "length_zero": changed(MOUSE, "Hid", bLength=0),
    "power_above_limit": changed(STORAGE, "Configuration", bMaxPower=251),
    "speeds_mixed": changed(COMPOSITE, "Endpoint", 3, bInterval=32),
    "total_length": changed(STORAGE, "Configuration", wTotalLength=25),
}


def files():
    """Every file's bytes by its path below this folder."""
    made = {f"good/{name}.bin": recording(each) for name, each in GOOD.items()}
    for number, (name, each) in enumerate(FAULTY.items(), start=0x0101):
        each[0].fields["idProduct"] = number
        made[f"faulty/{name}.bin"] = recording(each)
    made["faulty/empty.bin"] = b""
    made["faulty/truncated.bin"] = recording(
        changed(STORAGE, "Device", idProduct=0x0100))[:-3]
    return made


def main():
    folder = pathlib.Path(__file__).resolve().parent
    made = files()
    if sys.argv[1:] == ["--check"]:
        there = {path.relative_to(folder).as_posix(): path.read_bytes()
                 for path in folder.rglob("*.bin")}
        differing = sorted(name for name in made.keys() | there.keys()
                           if made.get(name) != there.get(name))
        for name in differing:
            print(f"{name}: not what make.py makes")
        return 1 if differing else 0
    if sys.argv[1:]:
        print(__doc__)
        return 2
    for name, data in made.items():
        path = folder / name
        path.parent.mkdir(exist_ok=True)
        path.write_bytes(data)
    return 0


if __name__ == "__main__":
    sys.exit(main())
