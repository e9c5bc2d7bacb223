// Ends with 0 if a text comes through a conversion there and back.
#include "siblings/Keelbase.h"

int main() { return *Utf16ToUtf8(Utf8ToUtf16("Morvex")->c_str()) == "Morvex" ? 0 : 1; }
