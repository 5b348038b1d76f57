#pragma once

#include "Bytes.h"
#include "Result.h"
#include "SerialConfiguration.h"

#include <string>

namespace kestrin {

// The line the simulator answers on: the controlling end of a new pseudo-terminal, whose other
// end a master opens like a serial port, or an existing serial device. Non-blocking and raw.
class ServedLine {
public:
    // The simulator keeps the master's end open as well, so that its own end never reports a
    // hang-up while no master is connected. The error is a message for the user.
    static Result<ServedLine, std::string> pseudoTerminal();
    // An existing device in raw mode with this frame and speed, for exclusive use. A device that
    // refuses parity or 7 data bits (a pseudo-terminal) gets 8N; timing still follows the frame.
    static Result<ServedLine, std::string> port(const std::string& path,
                                                const SerialConfiguration& configuration);

    ServedLine(ServedLine&& other) noexcept;
    ServedLine& operator=(ServedLine&&) = delete;
    ServedLine(const ServedLine&) = delete;
    ServedLine& operator=(const ServedLine&) = delete;
    ~ServedLine();

    // The descriptor the simulator reads requests from and writes answers to.
    int fd() const noexcept { return fd_; }
    // The path a master opens: the pseudo-terminal's device, or the port itself.
    const std::string& path() const noexcept { return path_; }
    // Closes the simulator's hold on the pseudo-terminal's other end, so that fd() reports a
    // hang-up (POLLHUP) exactly while no one has the path open: the replay waits for its reader
    // that way. The raw settings stay with the terminal.
    void releaseOtherEnd();

private:
    ServedLine(int fd, int heldFd, std::string path);

    int fd_ = -1;
    int heldFd_ = -1;
    std::string path_;
};

// How writing a whole chunk to the line ended.
enum class WriteOutcome {
    written,
    nobodyReads, // the line took no byte for 100 ms: a master that reads nothing loses it
    failed,      // errno says why
};

// Writes all of bytes to a non-blocking line, waiting for room when it is full.
WriteOutcome writeAll(int fd, ByteView bytes);

} // namespace kestrin
