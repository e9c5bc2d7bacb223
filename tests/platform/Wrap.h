// Lets a test divert a platform operation, or a function of the C library, at link time.
//
// The tested code is not changed: the linker sends its calls to the test program's own function,
// which makes the real call until a test diverts it. One definition serves both platforms.
//
// 1. Name the operation in the program's CMakeLists.txt, platform operations under WRAP_API and
//    functions of the C library under WRAP:
//
//        morvex_add_tests(app_tests SOURCES ... WRAP_API CreateEventA)
//
// 2. Define it once in the program, at namespace scope: result, name, parameters, arguments.
//    Other sources of the same program that divert it too say MORVEX_WRAPPED(CreateEventA).
//
//        MORVEX_WRAP_API(
//            HANDLE, CreateEventA,
//            (_SECURITY_ATTRIBUTES * attributes, BOOL manual, BOOL set, char const * name),
//            (attributes, manual, set, name))
//
// 3. Divert it for a scope. The operation bears the name `wrapped_` and its own.
//
//        Diversion const outOfMemory(wrapped_CreateEventA, [](auto...) {
//            SetLastError(ERROR_NOT_ENOUGH_MEMORY);
//            return HANDLE{};
//        });
//
//    A fake that wants the real call says wrapped_CreateEventA.Real(attributes, ...). Diversions
//    of one operation nest: the innermost holds.
//
// An operation with a variable argument list cannot hand its arguments on. It is replaced for the
// whole program by a body of the test's own; declare what the body uses before it:
//
//        MORVEX_REPLACE_API(
//            ULONG, TraceMessage,
//            (TRACEHANDLE logger, ULONG flags, GUID const * guid, std::uint16_t number, ...)) {
//            ...
//        }
//
// Calls that the linker sees are diverted: those of the program's own objects and of static
// libraries, not those inside another shared library. A diversion begins and ends while no other
// thread is inside the operation.
#pragma once

#include <atomic>
#include <functional>
#include <type_traits>
#include <utility>

#include "platform/BaseTypes.h"

template <typename Signature>
class WrappedCall;
template <typename Signature>
class Diversion;

template <typename Result, typename... Arguments>
class WrappedCall<Result(Arguments...)> {
public:
    using Function = Result(Arguments...);

    // `real` is where the linker leaves the address of the real operation.
    constexpr explicit WrappedCall(Function * const * real) : m_Real(real) {}

    Result Real(Arguments... arguments) const { return (*m_Real)(arguments...); }

    Result operator()(Arguments... arguments) const {
        auto const * const fake = m_Fake.load(std::memory_order_acquire);
        return fake ? (*fake)(arguments...) : Real(arguments...);
    }

private:
    friend class Diversion<Function>;

    Function * const * m_Real;
    std::atomic<std::function<Function> const *> m_Fake = nullptr;
};

template <typename Result, typename... Arguments>
class Diversion<Result(Arguments...)> {
public:
    template <typename Fake>
    Diversion(WrappedCall<Result(Arguments...)> & call, Fake fake)
        : m_Call(call), m_Fake(std::move(fake)), m_Outer(call.m_Fake.exchange(&m_Fake)) {}
    Diversion(Diversion const &) = delete;
    Diversion & operator=(Diversion const &) = delete;
    ~Diversion() { m_Call.m_Fake.store(m_Outer, std::memory_order_release); }

private:
    WrappedCall<Result(Arguments...)> & m_Call;
    std::function<Result(Arguments...)> const m_Fake;
    std::function<Result(Arguments...)> const * const m_Outer;
};

template <typename Signature, typename Fake>
Diversion(WrappedCall<Signature> &, Fake) -> Diversion<Signature>;

// The plain signature of a function, whatever else its declaration promises. Never called.
template <typename Result, typename... Arguments>
std::type_identity<Result(Arguments...)> PlainSignature(Result (*)(Arguments...));

#define MORVEX_WRAPPED_TYPE(Name) WrappedCall<decltype(PlainSignature(&Name))::type>

#define MORVEX_WRAPPED(Name) extern MORVEX_WRAPPED_TYPE(Name) wrapped_##Name;

#define MORVEX_WRAP(Result, Name, parameters, arguments)                                           \
    extern "C" decltype(Name) __real_##Name;                                                       \
    static constinit decltype(PlainSignature(&Name))::type * const real_##Name = &__real_##Name;   \
    constinit MORVEX_WRAPPED_TYPE(Name) wrapped_##Name(&real_##Name);                              \
    extern "C" MORVEX_WRAP_SEEN Result __wrap_##Name parameters { return wrapped_##Name arguments; }

#if defined(_WIN32)

#define MORVEX_WRAP_SEEN

// Imported operations are called through the pointer __imp_<Name>, a few by their own name; the
// linker puts ours in the place of both.
#define MORVEX_REPLACE_API(Result, Name, parameters)                                               \
    extern "C" Result __wrap_##Name parameters;                                                    \
    extern "C" {                                                                                   \
    decltype(&Name) __wrap___imp_##Name = &__wrap_##Name;                                          \
    }                                                                                              \
    extern "C" Result __wrap_##Name parameters

#define MORVEX_WRAP_API(Result, Name, parameters, arguments)                                       \
    extern "C" decltype(&Name) __real___imp_##Name;                                                \
    constinit MORVEX_WRAPPED_TYPE(Name) wrapped_##Name(&__real___imp_##Name);                      \
    MORVEX_REPLACE_API(Result, Name, parameters) { return wrapped_##Name arguments; }

#else

// The linker looks for it on behalf of shared libraries too, whose calls go to the real one.
#define MORVEX_WRAP_SEEN MORVEX_SYMBOL_EXPORT

#define MORVEX_REPLACE_API(Result, Name, parameters)                                               \
    extern "C" MORVEX_WRAP_SEEN Result __wrap_##Name parameters

#define MORVEX_WRAP_API(Result, Name, parameters, arguments)                                       \
    MORVEX_WRAP(Result, Name, parameters, arguments)

#endif
