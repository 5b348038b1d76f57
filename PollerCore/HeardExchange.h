#pragma once

#include "Bytes.h"
#include "PollFailureError.h"
#include "ReadBlock.h"
#include "ReadData.h"
#include "Result.h"

#include <cstddef>
#include <optional>

namespace kestrin {

// What a request heard on the bus and its answer amount to, judged as the engine judges the
// answers to its own requests. Pure.
namespace HeardExchange {

struct Judgement {
    // A read's or a write's unit, table and addresses; absent for other functions and for
    // requests no device could serve (a count of 0 or beyond the table's limit).
    std::optional<ReadBlock> range;
    Result<std::optional<ReadData>, PollFailureError> outcome = PollFailureError{};
    bool isWrite = false;
};

// request and response are whole frames; an empty response is none. A broadcast succeeds
// without one, any other request times out. A read's data are what it answered, a write's what
// it wrote once the answer confirmed it; a read/write (function 23) counts as its read.
Judgement judge(ByteView request, ByteView response);

// Whether frame answers request: it checks as an answer of the request's unit and function and
// has the length that answer must have, where anything tells it. An echoed write looks like a
// request and still answers.
bool isAnswer(ByteView request, ByteView frame);

// The length of a whole answer to the request, exceptions aside: a read's follows from its
// count. Absent where the answer's own bytes must tell (functions without a fixed answer).
std::optional<std::size_t> answerLength(ByteView request);

} // namespace HeardExchange
} // namespace kestrin
