#pragma once

#include "Result.h"

#include <string>
#include <string_view>

#include <QByteArray>
#include <QString>

namespace kestrin {

// The one way the program writes a file: the bytes go to a new file beside the target, which
// replaces the target only when every write, the sync to disk and the rename have succeeded. Until
// then, and after any failure, the target keeps its old content (or stays absent).
//
// Chunks are appended as they are produced, so a large export never needs its whole text twice.
// The first failure is kept with its errno, because the messages must name the system's cause
// ("No space left on device") and later calls would overwrite errno.
//
// Thread contract: one thread at a time; holds an open descriptor until commit or destruction.
// Its counterpart for reading is TextFileReader, in ModbusCore so that the tools without Qt share
// it.
class TextFileWriter {
public:
    // Creates the temporary file at once; a failure to do so is reported by commit.
    explicit TextFileWriter(const QString& path);
    // Removes the temporary file when commit was not reached or failed.
    ~TextFileWriter();
    TextFileWriter(const TextFileWriter&) = delete;
    TextFileWriter& operator=(const TextFileWriter&) = delete;

    // False once anything has failed; from then on chunks are dropped.
    bool append(std::string_view chunk);
    // Call once, after the last chunk. The error is the system's description of the first
    // failure, untranslated, for the caller to put in a sentence.
    Result<void, std::string> commit();

private:
    bool writeOut(std::string_view bytes);
    void fail(int code);
    void discard();

    QByteArray target_;
    QByteArray temporary_;
    int descriptor_ = -1;
    std::string pending_;
    // errno of the first failure; 0 while everything has worked.
    int failure_ = 0;
};

} // namespace kestrin
