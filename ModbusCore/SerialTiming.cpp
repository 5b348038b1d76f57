#include "SerialTiming.h"

#include <algorithm>
#include <cassert>

namespace kestrin::SerialTiming {

int bitsPerCharacter(int dataBits, bool parityEnabled, int stopBits) noexcept {
    const int startBits = 1;
    return startBits + dataBits + (parityEnabled ? 1 : 0) + stopBits;
}

double interFrameDelay(int baud, int bitsPerCharacter) noexcept {
    assert(baud > 0);
    if (baud > fixedDelayAboveBaud) {
        return fixedInterFrameDelay;
    }
    return bitsPerCharacter * silentCharacters / baud;
}

double transmissionTime(int characters, int baud, int bitsPerCharacter) noexcept {
    assert(baud > 0);
    return static_cast<double>(characters) * bitsPerCharacter / baud;
}

std::chrono::steady_clock::duration duration(double seconds) noexcept {
    // Written so that NaN fails the comparison and becomes zero.
    const double clamped = seconds > 0.0 ? std::min(seconds, longestDuration) : 0.0;
    return std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(clamped));
}

} // namespace kestrin::SerialTiming
