#pragma once

#include "DatapointCSV.h"
#include "Result.h"

#include <string>
#include <string_view>

namespace kestrin::DatapointImport {

// What the model needs between reading a datapoint list and merging it into a poll
// (PollOperations::importDatapoints): the file's text and the question to ask the user.

// A file's bytes as UTF-8 text: taken as they are when they are UTF-8, else read as ISO Latin-1,
// which older spreadsheet exports write.
std::string decodedText(std::string_view bytes);

// The add, replace or cancel question: the count as title, and the first five skipped lines.
struct Question {
    std::string title;
    std::string text;

    friend bool operator==(const Question&, const Question&) = default;
};

// The question, or the text to show when the file holds no datapoint at all.
Result<Question, std::string> question(const DatapointCSV::ImportResult& result);

} // namespace kestrin::DatapointImport
