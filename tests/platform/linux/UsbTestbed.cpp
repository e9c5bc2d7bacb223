// The machine with USB.
#include "tests/platform/linux/UsbTestbed.h"

#include <stdexcept>
#include <vector>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wpedantic"
#include <umockdev.h>
#pragma GCC diagnostic pop

namespace {

// Names and values by turns, with a null behind them.
class NullEnded {
public:
    explicit NullEnded(Properties const & properties) {
        for (auto const & [name, value] : properties) {
            m_List.push_back(const_cast<char *>(name.c_str()));
            m_List.push_back(const_cast<char *>(value.c_str()));
        }
        m_List.push_back(nullptr);
    }
    char ** Get() { return m_List.data(); }

private:
    std::vector<char *> m_List;
};

Properties Completed(Properties own, Properties const & usual) {
    own.insert(usual.begin(), usual.end());
    return own;
}

} // namespace

UsbTestbed::UsbTestbed() : m_Testbed(umockdev_testbed_new()) {
    m_Controller =
        Add("pci", "0000:00:14.0", "", {},
            {{"PCI_CLASS", "C0330"},
             {"PCI_ID", "8086:1E31"},
             {"PCI_SUBSYS_ID", "1043:1477"},
             {"PCI_SLOT_NAME", "0000:00:14.0"}});
    m_RootHub =
        Add("usb", "usb1", m_Controller, {{"devnum", "1\n"}, {"serial", "0000:00:14.0\n"}},
            {{"DEVTYPE", "usb_device"},
             {"PRODUCT", "1d6b/2/510"},
             {"TYPE", "9/0/1"},
             {"BUSNUM", "001"},
             {"DEVNUM", "001"}});
}

UsbTestbed::~UsbTestbed() { g_object_unref(m_Testbed); }

void UsbTestbed::Plug(
    std::string const & port, Properties const & properties, Properties const & files) {
    auto const number = std::to_string(++m_LastNumber);
    m_Paths[port] =
        Add("usb", port, m_RootHub,
            Completed(files, {{"devnum", number}, {"idVendor", "f1d0"}, {"idProduct", "0001"}}),
            Completed(
                properties, {{"DEVTYPE", "usb_device"},
                             {"PRODUCT", "f1d0/1/100"},
                             {"TYPE", "0/0/0"},
                             {"BUSNUM", "001"},
                             {"DEVNUM", std::string(3 - number.size(), '0') + number}}));
}

void UsbTestbed::PlugOther(
    std::string const & subsystem, std::string const & name, Properties const & properties) {
    m_Paths[name] = Add(subsystem, name, "", {}, properties);
}

void UsbTestbed::Unplug(std::string const & port) {
    Remove(m_Paths.at(port));
    m_Paths.erase(port);
}

void UsbTestbed::AddFile(
    std::string const & port, std::string const & name, std::string const & bytes) {
    std::vector<unsigned char> copy(bytes.begin(), bytes.end());
    umockdev_testbed_set_attribute_binary(
        m_Testbed, m_Paths.at(port).c_str(), name.c_str(), copy.data(),
        static_cast<int>(copy.size()));
}

void UsbTestbed::UnplugRootHub() { Remove(m_RootHub); }

void UsbTestbed::Announce(std::string const & port, std::string const & action) {
    umockdev_testbed_uevent(m_Testbed, m_Paths.at(port).c_str(), action.c_str());
}

std::string UsbTestbed::Add(
    std::string const & subsystem, std::string const & name, std::string const & parent,
    Properties const & files, Properties const & properties) {
    NullEnded fileList(files);
    NullEnded propertyList(properties);
    char * const path = umockdev_testbed_add_devicev(
        m_Testbed, subsystem.c_str(), name.c_str(), parent.empty() ? nullptr : parent.c_str(),
        fileList.Get(), propertyList.Get());
    if (path == nullptr) {
        throw std::runtime_error("no device " + name);
    }
    std::string const kept = path;
    g_free(path);
    return kept;
}

// The event comes first: taking a device away sends none.
void UsbTestbed::Remove(std::string const & path) {
    umockdev_testbed_uevent(m_Testbed, path.c_str(), "remove");
    umockdev_testbed_remove_device(m_Testbed, path.c_str());
}
