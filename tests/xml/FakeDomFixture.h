// A document on doubles: what it asks of the components, and what becomes of each failure.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"
#include "tests/platform/Wrap.h"
#include "tests/xml/FakeDom.h"
#include "tests/xml/OpenDoc.h"

MORVEX_WRAPPED(CoCreateInstance)
MORVEX_WRAPPED(OleRun)

inline constexpr HRESULT AFailure = static_cast<HRESULT>(0x80041234);

class FakeDomFixture : public testing::Test {
protected:
    FakeDomFixture() { g_LiveDoubles = 0; }
    ~FakeDomFixture() override { EXPECT_EQ(g_LiveDoubles, 0) << "a reference was not given back"; }

    std::unique_ptr<OpenDoc> Make() {
        return std::make_unique<OpenDoc>(L"limits.xsd", L"urn:limits");
    }

    // How a call has ended: "returned", the text of a CQNDOMDocException, or "_com_error 8 digits".
    static std::string EndOf(std::function<void()> const & call) {
        try {
            call();
            return "returned";
        } catch (CQNDOMDocException const & failure) {
            return failure.what();
        } catch (_com_error const & failure) {
            char text[40];
            std::snprintf(
                text, sizeof text, "_com_error %08X", static_cast<unsigned>(failure.Error()));
            return text;
        }
    }

    HRESULT Create(CLSID const & clsid, DWORD context, IID const & id, void ** made) {
        bool const isDocument = clsid == CLSID_DOMDocument60;
        HRESULT const result = m_Dom.Called(
            std::string("CoCreateInstance ") + (isDocument ? "document " : "cache ")
            + std::to_string(context) + (id == InterfaceId<IUnknown> ? " IUnknown" : " ?"));
        *made = FAILED(result) ? nullptr
                : isDocument   ? NewFakeDocument(m_Dom)
                               : NewFakeSchemaCache(m_Dom);
        return result;
    }

    FakeDom m_Dom;

private:
    Diversion<HRESULT(CLSID const &, IUnknown *, DWORD, IID const &, void **)> const m_Creation{
        wrapped_CoCreateInstance,
        [this](CLSID const & clsid, IUnknown * outer, DWORD context, IID const & id, void ** made) {
            EXPECT_EQ(outer, nullptr);
            return Create(clsid, context, id, made);
        }};
    Diversion<HRESULT(IUnknown *)> const m_Running{
        wrapped_OleRun, [this](IUnknown *) { return m_Dom.Called("OleRun"); }};
};
