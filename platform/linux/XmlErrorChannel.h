// Where the engine's errors go that belong to no parser, for a scope: else it prints them.
//
// The engine has one such place a thread; what stood there before comes back.
#pragma once

#include <libxml/globals.h>
#include <libxml/xmlerror.h>

class XmlErrorChannel {
public:
    XmlErrorChannel(void * data, xmlStructuredErrorFunc listener)
        : m_Listener(xmlStructuredError), m_Data(xmlStructuredErrorContext) {
        xmlSetStructuredErrorFunc(data, listener);
    }
    XmlErrorChannel(XmlErrorChannel const &) = delete;
    XmlErrorChannel & operator=(XmlErrorChannel const &) = delete;
    ~XmlErrorChannel() { xmlSetStructuredErrorFunc(m_Data, m_Listener); }

private:
    xmlStructuredErrorFunc const m_Listener;
    void * const m_Data;
};
