#pragma once

#include <csignal>
#include <sys/resource.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <gtest/gtest.h>

namespace kestrin::Testing {

// A file's bytes, or "(absent)" when it cannot be read.
inline QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(absent)");
}

// Writes a file, and the folders it needs.
inline void put(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

// A file-size limit for this process while the object lives: writes past it fail with EFBIG,
// half-way through a file, which permissions cannot do for a test that runs as root.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : previousHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &original_);
        rlimit limited = original_;
        limited.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &original_);
        std::signal(SIGXFSZ, previousHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*previousHandler_)(int);
    rlimit original_{};
};

} // namespace kestrin::Testing
