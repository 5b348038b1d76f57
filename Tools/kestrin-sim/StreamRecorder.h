#pragma once

#include "Bytes.h"
#include "LineFile.h"

#include <string>

namespace kestrin {

// kestrin-sim --record: every chunk the simulator received and every answer it sent, one
// RecordedStream line each as it happens, so that a stop by signal loses nothing. Without a file
// it records nothing.
class StreamRecorder {
public:
    // Truncates the file. False with errno set when it cannot be opened.
    bool open(const std::string& path) { return file_.open(path); }
    // Bytes that crossed the line at seconds since the start. A time before the last one written
    // is written as that one: with wire timing a request heard while an answer is held back ends
    // on the emulated wire after that answer was already written, and the format keeps time order.
    void add(double seconds, ByteView bytes);

private:
    LineFile file_{"the recording"};
    double last_ = 0;
};

} // namespace kestrin
