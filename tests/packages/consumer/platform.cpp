// Ends with 0 if an event that is set is seen.
#include "platform/Synchronization.h"

int main() {
    HANDLE const event = CreateEventA(nullptr, 1, 1, nullptr);
    bool const isSeen = WaitForSingleObject(event, 0) == 0;
    CloseHandle(event);
    return isSeen ? 0 : 1;
}
