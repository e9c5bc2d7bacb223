// Sets a variable of the process's environment for a test.
#pragma once

#include <cstdlib>

#if defined(_WIN32)
// An empty value removes the variable there.
inline void SetEnvironment(char const * name, char const * value) { _putenv_s(name, value); }
inline void ClearEnvironment(char const * name) { _putenv_s(name, ""); }
#else
inline void SetEnvironment(char const * name, char const * value) { setenv(name, value, 1); }
inline void ClearEnvironment(char const * name) { unsetenv(name); }
#endif
