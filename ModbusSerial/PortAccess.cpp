#include "PortAccess.h"

#include "NumberText.h"
#include "TextFileReader.h"

#include <algorithm>
#include <pwd.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrin {

namespace {

using Access = SerialLinkError::PortAccess;

std::vector<std::string> fields(const std::string& line, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(line);
    std::string part;
    while (std::getline(stream, part, separator)) {
        parts.push_back(part);
    }
    if (!line.empty() && line.back() == separator) {
        parts.emplace_back();
    }
    return parts;
}

// The first record of a colon-separated account file (/etc/group, /etc/passwd) that matches;
// short lines (comments, blanks) never do.
template <typename Matches>
std::optional<std::vector<std::string>> findRecord(const SystemRoot& root, std::string_view file,
                                                   Matches matches) {
    const Result<std::string, int> text = TextFileReader::read(root.located(file).string());
    if (!text) {
        return std::nullopt;
    }
    std::istringstream lines(text.value());
    std::string line;
    while (std::getline(lines, line)) {
        std::vector<std::string> record = fields(line, ':');
        if (record.size() >= 4 && matches(record)) {
            return record;
        }
    }
    return std::nullopt;
}

// The group database's view, read from the files under root rather than through NSS: the files
// are what usermod changes on the machines this is for, and only they can be faked in a test.
// A group kept in LDAP or SSSD therefore counts the user out, and the advice to add oneself is
// the one the administrator would follow anyway.
bool databaseCountsMember(const SystemRoot& root, const std::vector<std::string>& group, gid_t gid,
                          const std::string& user) {
    const std::vector<std::string> members = fields(group[3], ',');
    if (std::ranges::find(members, user) != members.end()) {
        return true;
    }
    const std::optional<std::vector<std::string>> account =
        findRecord(root, "/etc/passwd",
                   [&](const std::vector<std::string>& record) { return record[0] == user; });
    return account && NumberText::unsignedInteger((*account)[3], 10) == gid;
}

} // namespace

Login Login::current() {
    Login login;
    login.uid = ::geteuid();
    login.gid = ::getegid();
    const int count = ::getgroups(0, nullptr);
    if (count > 0) {
        login.groups.resize(static_cast<std::size_t>(count));
        const int got = ::getgroups(count, login.groups.data());
        login.groups.resize(static_cast<std::size_t>(std::max(got, 0)));
    }
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    ::getpwuid_r(login.uid, &entry, buffer.data(), buffer.size(), &found);
    login.user = found != nullptr ? found->pw_name : std::to_string(login.uid);
    return login;
}

bool Login::hasGroup(gid_t group) const {
    return gid == group || std::ranges::find(groups, group) != groups.end();
}

namespace PortAccess {

std::optional<Access> facts(std::string_view path, const Login& login, const SystemRoot& root) {
    struct stat status {};
    const std::filesystem::path device = root.located(path);
    if (device.empty() || ::stat(device.c_str(), &status) != 0) {
        return std::nullopt;
    }
    Access access;
    access.user = login.user;
    access.groupMayOpen = (status.st_mode & S_IRGRP) != 0 && (status.st_mode & S_IWGRP) != 0;
    const std::optional<std::vector<std::string>> group =
        findRecord(root, "/etc/group", [&](const std::vector<std::string>& record) {
            return NumberText::unsignedInteger(record[2], 10) == status.st_gid;
        });
    // usermod takes a group's number as well as its name.
    access.group = group ? (*group)[0] : std::to_string(status.st_gid);
    if (login.hasGroup(status.st_gid)) {
        access.membership = Access::Membership::inThisLogin;
    } else if (group && databaseCountsMember(root, *group, status.st_gid, login.user)) {
        access.membership = Access::Membership::notInThisLogin;
    }
    return access;
}

} // namespace PortAccess
} // namespace kestrin
