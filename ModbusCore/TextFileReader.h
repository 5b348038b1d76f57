#pragma once

#include "Result.h"

#include <string>

namespace kestrin::TextFileReader {

// The one way the program and its tools read a whole file, the counterpart of
// TextFileWriter. It sits here, below Qt, so that the simulator reads its lists the same way.

// Every byte of the file, read at once. The error is the errno of the first failure, for the
// caller to describe (L10n::Errors::systemMessage) or to put into a sentence of its own.
Result<std::string, int> read(const std::string& path);

} // namespace kestrin::TextFileReader
