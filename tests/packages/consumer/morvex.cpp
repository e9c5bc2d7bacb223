// Ends with 0 if a setting is read as it was written.
#include "settings/CIniArgs.h"

int main() {
    CIniArgs settings;
    settings.AddArg("Suite", "Ports", "0x1F");
    int ports = 0;
    return settings.GetArg("suite", "PORTS", ports) && ports == 31 ? 0 : 1;
}
