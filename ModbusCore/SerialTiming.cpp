#include "SerialTiming.h"

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

} // namespace kestrin::SerialTiming
