// The narrow string and times as text.
#include <cstring>
#include <ctime>
#include <string>

#include "siblings/Keelbase.h"

namespace {

char * Copy(char const * text) {
    if (text == nullptr) return nullptr;
    std::size_t const size = std::strlen(text) + 1;
    return static_cast<char *>(std::memcpy(new char[size], text, size));
}

// Breaks a time down into local time, by whichever of the two re-entrant functions the C library
// has: both are found through their arguments. False when the time is out of its range.
template <typename Fields>
bool BreakDown(std::time_t const & time, Fields & local) {
    if constexpr (requires { localtime_r(&time, &local); })
        return localtime_r(&time, &local) != nullptr;
    else
        return localtime_s(&local, &time) == 0;
}

// strftime answers 0 both for an empty text and for one that does not fit: a blank behind the
// format tells them apart. A text beyond a megabyte is given up.
std::string Print(std::string format, std::tm const & local) {
    constexpr std::size_t most = std::size_t{1} << 20;
    format += ' ';
    std::string text(format.size() + 64, '\0');
    for (;;) {
        std::size_t const length = std::strftime(text.data(), text.size(), format.c_str(), &local);
        if (length != 0) return text.substr(0, length - 1);
        if (text.size() > most) return std::string();
        text.resize(text.size() * 4);
    }
}

} // namespace

CSafeString::CSafeString(char const * text) : m_Text(Copy(text)) {}

CSafeString::CSafeString(CSafeString const & other) : m_Text(Copy(other.m_Text)) {}

CSafeString & CSafeString::operator=(CSafeString const & other) {
    if (this != &other) {
        char * const copy = Copy(other.m_Text);
        delete[] m_Text;
        m_Text = copy;
    }
    return *this;
}

CSafeString::~CSafeString() { delete[] m_Text; }

bool CSafeString::empty() const { return *get() == '\0'; }

char const * CSafeString::get() const { return m_Text != nullptr ? m_Text : ""; }

CSafeString TimeToString(char const * format, std::chrono::system_clock::time_point const & time) {
    std::tm local{};
    if (format == nullptr || !BreakDown(std::chrono::system_clock::to_time_t(time), local))
        return CSafeString("");
    return CSafeString(Print(format, local).c_str());
}
