// The host's name: to people, to suites, and in the registry.
#pragma once

inline constexpr char ProgramName[] = "QNExe";
