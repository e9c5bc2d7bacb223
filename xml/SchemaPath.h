// Joining a file name to a folder by the rule for paths with drives and network roots, on every
// platform alike.
#pragma once

#include <string>
#include <string_view>

// A name with a root name that is not the base's, or with a drive and a separator behind it,
// replaces the base; one that begins with a separator keeps the base's root name alone; any other
// is put behind the base, with a `\` between unless the base is empty, is a bare drive or ends in a
// separator. Both `\` and `/` separate. Root names are compared as text.
std::wstring AppendPath(std::wstring_view base, std::wstring_view name);
