// The version that a binary carries as an ELF note of our own.
#pragma once

#include <optional>
#include <string>

// Null: there is no such file. An empty text: it has no version.
//
// `file` with a folder is a path. A bare name is looked for among the files that the process has
// loaded, which tell their version out of memory, then in the program's folder, in the folder of
// this library, and in those where the loader looks.
std::optional<std::string> FindVersion(std::string const & file);
