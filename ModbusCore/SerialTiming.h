#pragma once

#include <chrono>

namespace kestrin {

// Character times and the RTU silent interval between frames (Modbus over Serial Line V1.02,
// section 2.5.1.1). Times are seconds, baud rates bits per second.
namespace SerialTiming {

// Frames are separated by at least 3.5 character times of silence.
inline constexpr double silentCharacters = 3.5;
// Above 19200 baud the standard fixes the silence at 1.75 ms instead of shrinking it further.
inline constexpr int fixedDelayAboveBaud = 19200;
inline constexpr double fixedInterFrameDelay = 0.00175;

// 1 start bit + data bits + 1 parity bit when enabled + stop bits: 8E1 gives 11, 8N1 gives 10.
int bitsPerCharacter(int dataBits, bool parityEnabled, int stopBits) noexcept;

// 3.5 characters at this rate, or 1.75 ms above 19200 baud: 3.5 x 11 bits / 9600 = 4.01 ms.
double interFrameDelay(int baud, int bitsPerCharacter) noexcept;

// The wire time of this many characters: 8 characters of 11 bits at 9600 baud = 9.17 ms.
double transmissionTime(int characters, int baud, int bitsPerCharacter) noexcept;

// The longest wait or interval a duration stands for. Time-outs and poll intervals come from
// project files and command lines unchecked; a day lies beyond any sensible one, and every sum
// and doubling of it stays far inside the clock's range and its milliseconds inside poll's int.
inline constexpr double longestDuration = 86400.0;

// Seconds as a clock duration: NaN, negative and zero are no time, above longestDuration (the
// infinities included) is longestDuration.
std::chrono::steady_clock::duration duration(double seconds) noexcept;

} // namespace SerialTiming
} // namespace kestrin
