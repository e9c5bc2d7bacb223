// The page's parts that are the same for every run.
#pragma once

namespace PageParts {

extern char const StyleSheet[];
extern char const Script[];

} // namespace PageParts
