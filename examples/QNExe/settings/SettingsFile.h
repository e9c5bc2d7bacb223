// The settings file: sections in brackets, key=value beneath them, comments behind # and ;.
//
//     [Suite]
//     Recordings = "C:\my recordings"
//
// A value with blanks at its ends, or several in a row, stands in quotes. A key may also name its
// section: Suite.Recordings=x.
#pragma once

#include <string>
#include <vector>

#include "examples/QNExe/settings/SettingWords.h"

// In the file's order. Throws std::runtime_error, whose text names the file and says what to do.
std::vector<Setting> ReadSettingsFile(std::string const & file);
