#pragma once

#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

// What the end-to-end tests read back from the tools they run: files and output lines.

namespace kestrin::ToolOutput {

// A file of this test process's own, so that tests run side by side never share one.
inline std::string temporaryPath(const std::string& name) {
    return ::testing::TempDir() + "kestrin-" + std::to_string(::getpid()) + "-" + name;
}

inline std::string fileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The output's lines without the durations at their ends, which vary from run to run.
inline std::vector<std::string> lines(const std::string& text) {
    static const std::regex duration("  \\(\\d+ ms\\)$");
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        result.push_back(std::regex_replace(line, duration, ""));
    }
    return result;
}

} // namespace kestrin::ToolOutput
