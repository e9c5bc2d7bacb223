// A machine with USB for libudev to look at: one controller, one root hub, and what a test plugs
// in.
//
// Only in a program that runs with umockdev preloaded.
#pragma once

#include <map>
#include <string>

using Properties = std::map<std::string, std::string>;

class UsbTestbed {
public:
    // Bus 1 with its controller, a device at 0000:00:14.0 of PCI.
    UsbTestbed();
    UsbTestbed(UsbTestbed const &) = delete;
    UsbTestbed & operator=(UsbTestbed const &) = delete;
    ~UsbTestbed();

    // A device of class 0 with vendor F1D0, product 0001 and release 1.00, announced as the kernel
    // does it. `port` as in "1-1.2". Further properties and files replace or complete the usual
    // ones. Plugging in comes with a device number of its own.
    void Plug(
        std::string const & port, Properties const & properties = {},
        Properties const & files = {});

    // Gives a device that is plugged in a file of bytes.
    void AddFile(std::string const & port, std::string const & name, std::string const & bytes);

    // Announces that it goes, and takes it away. A removal tells nothing but what it was plugged
    // in with.
    void Unplug(std::string const & port);

    // A device of another subsystem.
    void PlugOther(
        std::string const & subsystem, std::string const & name, Properties const & properties);
    void UnplugOther(std::string const & name) { Unplug(name); }

    // Announces another event of a device that is there.
    void Announce(std::string const & port, std::string const & action);

    std::string const & ControllerPath() const { return m_Controller; }
    std::string const & RootHubPath() const { return m_RootHub; }
    void UnplugRootHub();

private:
    std::string
    Add(std::string const & subsystem, std::string const & name, std::string const & parent,
        Properties const & files, Properties const & properties);
    void Remove(std::string const & path);

    struct _UMockdevTestbed * m_Testbed;
    std::string m_Controller;
    std::string m_RootHub;
    std::map<std::string, std::string> m_Paths;
    int m_LastNumber = 1;
};
