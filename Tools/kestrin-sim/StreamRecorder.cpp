#include "StreamRecorder.h"

#include "RecordedStream.h"

#include <algorithm>

namespace kestrin {

void StreamRecorder::add(double seconds, ByteView bytes) {
    if (!file_.isOpen() || bytes.empty()) {
        return;
    }
    last_ = std::max(last_, seconds);
    file_.append(RecordedStream::line({last_, Bytes(bytes.begin(), bytes.end())}));
}

} // namespace kestrin
