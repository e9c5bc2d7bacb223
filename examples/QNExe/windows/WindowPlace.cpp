// Where the window stood, as four measures of its frame and a word on its state.
#include "examples/QNExe/windows/WindowPlace.h"

#include <optional>
#include <sstream>
#include <string>

#include "examples/QNExe/ProgramName.h"
#include "settings/Registry.h"

namespace {

constexpr char ValueName[] = "WindowPlace";
constexpr char Maximized[] = "maximized";
constexpr char Normal[] = "normal";

std::string Key() {
    std::string key;
    GetQNKey(key);
    return key + '\\' + ProgramName;
}

std::optional<WINDOWPLACEMENT> Read(std::string const & text) {
    WINDOWPLACEMENT place = {};
    place.length = sizeof place;
    RECT & frame = place.rcNormalPosition;
    std::string state;
    std::istringstream words(text);
    words >> frame.left >> frame.top >> frame.right >> frame.bottom >> state;
    if (!words || frame.right <= frame.left || frame.bottom <= frame.top) return std::nullopt;
    place.showCmd = state == Maximized ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL;
    return place;
}

bool IsOnScreen(RECT const & frame) {
    return MonitorFromRect(&frame, MONITOR_DEFAULTTONULL) != nullptr;
}

} // namespace

void StoreWindowPlace(HWND window) {
    WINDOWPLACEMENT place = {};
    place.length = sizeof place;
    if (GetWindowPlacement(window, &place) == 0) return;
    RECT const & frame = place.rcNormalPosition;
    // A window that lies minimized is to be seen when it comes back.
    bool const large = IsZoomed(window) != 0
                       || (IsIconic(window) != 0 && (place.flags & WPF_RESTORETOMAXIMIZED) != 0);
    std::ostringstream text;
    text << frame.left << ' ' << frame.top << ' ' << frame.right << ' ' << frame.bottom << ' '
         << (large ? Maximized : Normal);
    TS_SetRegistryString(HKEY_CURRENT_USER, Key().c_str(), ValueName, text.str());
}

bool RestoreWindowPlace(HWND window) {
    std::string text;
    if (!TS_GetRegistryString(HKEY_CURRENT_USER, Key().c_str(), ValueName, text)) return false;
    auto const place = Read(text);
    if (!place || !IsOnScreen(place->rcNormalPosition)) return false;
    if (SetWindowPlacement(window, &*place) == 0) return false;
    // On the way to a screen of another resolution the window has scaled itself, as whoever drags
    // it there wants it; the place that was kept is in that screen's pixels already.
    return SetWindowPlacement(window, &*place) != 0;
}
