#include "TextFileWriter.h"

#include "L10n.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

namespace kestrin {

namespace {

// Rows of a few dozen bytes are gathered into writes of this size.
constexpr std::size_t bufferSize = std::size_t{64} * 1024;
// A name is taken only by another save running at the same moment or by one that died; a few
// fresh random names get past both.
constexpr int nameAttempts = 16;
// As the kernel's own limit on nested links, so that a loop of links ends.
constexpr int maxLinkDepth = 40;

// Saving over a link replaces the file it names and keeps the link.
QString resolvedTarget(const QString& path) {
    QFileInfo info(path);
    for (int depth = 0; depth < maxLinkDepth && info.isSymLink(); ++depth) {
        info.setFile(info.symLinkTarget());
    }
    return info.filePath();
}

// In the target's folder, because only a rename within one file system replaces atomically.
QByteArray temporaryName(const QByteArray& target) {
    static constexpr char letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    QByteArray name = target + '.';
    for (int i = 0; i < 6; ++i) {
        name += letters[QRandomGenerator::global()->bounded(int(sizeof letters) - 1)];
    }
    return name;
}

} // namespace

TextFileWriter::TextFileWriter(const QString& path)
    : target_(QFile::encodeName(resolvedTarget(path))) {
    if (path.isEmpty()) {
        fail(ENOENT);
        return;
    }
    for (int attempt = 0; attempt < nameAttempts; ++attempt) {
        temporary_ = temporaryName(target_);
        // 0666 less the user's umask, as any new file of theirs.
        descriptor_ = ::open(temporary_.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor_ != -1 || errno != EEXIST) {
            break;
        }
    }
    if (descriptor_ == -1) {
        fail(errno);
        temporary_.clear();
        return;
    }
    struct stat existing {};
    if (::stat(target_.constData(), &existing) == 0 && S_ISREG(existing.st_mode)) {
        // The old file's permissions carry over. A file system without permissions refuses, and
        // the new file keeps the usual ones: nothing is lost by going on.
        (void)::fchmod(descriptor_, existing.st_mode & 07777);
    }
}

TextFileWriter::~TextFileWriter() {
    discard();
}

bool TextFileWriter::append(std::string_view chunk) {
    if (failure_ != 0) {
        return false;
    }
    if (pending_.size() + chunk.size() <= bufferSize) {
        pending_.append(chunk);
        return true;
    }
    if (!writeOut(pending_)) {
        return false;
    }
    pending_.clear();
    if (chunk.size() >= bufferSize) {
        return writeOut(chunk);
    }
    pending_.assign(chunk);
    return true;
}

Result<void, std::string> TextFileWriter::commit() {
    if (failure_ == 0 && writeOut(pending_)) {
        pending_.clear();
        // The data must be on the disk before the rename makes it the target; a file system
        // that allocates late reports a full disk only here.
        if (::fsync(descriptor_) != 0) {
            fail(errno);
        }
    }
    if (failure_ == 0) {
        // Not retried on EINTR: the descriptor is gone either way.
        const int closed = ::close(descriptor_);
        descriptor_ = -1;
        if (closed != 0) {
            fail(errno);
        }
    }
    if (failure_ == 0 && ::rename(temporary_.constData(), target_.constData()) != 0) {
        fail(errno);
    }
    if (failure_ != 0) {
        discard();
        return L10n::Errors::systemMessage(failure_);
    }
    temporary_.clear();
    return {};
}

bool TextFileWriter::writeOut(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            // A regular file that takes nothing and names no error would be retried forever.
            fail(written < 0 ? errno : EIO);
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void TextFileWriter::fail(int code) {
    if (failure_ == 0) {
        failure_ = code;
    }
}

void TextFileWriter::discard() {
    if (descriptor_ != -1) {
        ::close(descriptor_);
        descriptor_ = -1;
    }
    if (!temporary_.isEmpty()) {
        ::unlink(temporary_.constData());
        temporary_.clear();
    }
}

} // namespace kestrin
