#include "FakeSystemTree.h"
#include "PortTrouble.h"

#include <cerrno>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Access = SerialLinkError::PortAccess;
using Holder = SerialLinkError::PortHolder;
using M = Access::Membership;

const std::string byId = "/dev/serial/by-id/usb-1a86_USB_Serial-if00-port0";
constexpr gid_t dialout = 20;

Login alice(std::vector<gid_t> groups = {}) {
    return Login{"alice", 1000, 1000, groups};
}

// An adapter reached through its by-id link, and the account files of a Debian machine
// where alice's own group is 1000 and carol's is dialout (20).
void buildAdapter(FakeSystemTree& tree, std::filesystem::perms mode, gid_t group,
                  std::string_view dialoutMembers) {
    tree.usbSerial({.byId = byId.substr(18)})
        .file("/dev/ttyUSB0", {}, mode)
        .owner("/dev/ttyUSB0", 0, group)
        .file("/etc/group", "root:x:0:\n# local\ndialout:x:20:" + std::string(dialoutMembers) +
                                "\nalice:x:1000:\n")
        .file("/etc/passwd",
              "root:x:0:0:root:/root:/bin/sh\nalice:x:1000:1000::/home/alice:/bin/sh\n"
              "carol:x:1001:20::/home/carol:/bin/sh\n");
}

TEST(PortTrouble, PermissionFactsNameTheGroupAndHowThisLoginStandsWithIt) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "giving the fake device a group needs root";
    }
    using std::filesystem::perms;
    const perms shared =
        perms::owner_read | perms::owner_write | perms::group_read | perms::group_write;
    // Reading alone is not enough for a serial port.
    const perms groupReadOnly = perms::owner_read | perms::owner_write | perms::group_read;
    const std::tuple<const char*, perms, gid_t, std::string, Login, Access> rows[] = {
        {"not a member", shared, dialout, "bob", alice(),
         Access{"dialout", "alice", M::none, true}},
        {"added after logging in", shared, dialout, "bob,alice", alice(),
         Access{"dialout", "alice", M::notInThisLogin, true}},
        {"member in this login", shared, dialout, "alice", alice({27, dialout}),
         Access{"dialout", "alice", M::inThisLogin, true}},
        {"primary group counts", shared, 1000, "", alice(),
         Access{"alice", "alice", M::inThisLogin, true}},
        {"dialout made the primary group after logging in", shared, dialout, "",
         Login{"carol", 1001, 1001, {}}, Access{"dialout", "carol", M::notInThisLogin, true}},
        {"group may not open", groupReadOnly, dialout, "alice", alice({dialout}),
         Access{"dialout", "alice", M::inThisLogin, false}},
        {"group without a name", shared, 4242, "", alice(),
         Access{"4242", "alice", M::none, true}}};
    for (const auto& [name, mode, group, members, login, expected] : rows) {
        FakeSystemTree tree;
        buildAdapter(tree, mode, group, members);
        SerialLinkError error{SerialLinkError::OpenFailed{byId, EACCES}};
        PortTrouble::explain(error, tree.root(), login);
        EXPECT_EQ(error, (SerialLinkError{SerialLinkError::OpenFailed{byId, EACCES, expected}}))
            << name;
    }
}

TEST(PortTrouble, LeavesOtherFailuresAndUnreadableDevicesAlone) {
    FakeSystemTree tree;
    tree.file("/dev/ttyUSB0");
    for (const SerialLinkError& before :
         {SerialLinkError{SerialLinkError::OpenFailed{"/dev/ttyUSB0", ENOENT}},
          SerialLinkError{SerialLinkError::OpenFailed{"/dev/ttyUSB9", EACCES}},
          SerialLinkError{SerialLinkError::ConfigurationFailed{EIO}}}) {
        SerialLinkError after = before;
        PortTrouble::explain(after, tree.root(), alice());
        EXPECT_EQ(after, before) << after.value.index();
    }
}

// Each process: its id (0: this test's own), program and the one file it has open (none: its fd
// folder cannot be listed).
using Process = std::tuple<int, std::string, std::optional<std::string>>;

// The holder may have opened a by-id link or sit behind an unreadable process; this process is
// never the holder, and of the hidden ones only ModemManager is a probable one.
TEST(PortTrouble, BusyNamesTheProcessHoldingThePort) {
    const std::pair<std::vector<Process>, std::optional<Holder>> rows[] = {
        {{{300, "bash", "/dev/pts/1"}, {812, "minicom", byId}}, Holder{"minicom", 812}},
        {{{1, "systemd", std::nullopt}, {900, "screen", "/dev/ttyUSB0"}}, Holder{"screen", 900}},
        {{{0, "kestrin", "/dev/ttyUSB0"}, {1, "systemd", std::nullopt}}, std::nullopt},
        {{{640, "ModemManager", std::nullopt}, {700, "bash", "/dev/null"}},
         Holder{"ModemManager", 640, true}}};
    for (const auto& [processes, holder] : rows) {
        FakeSystemTree tree;
        tree.usbSerial({.byId = byId.substr(18)}).file("/dev/null").file("/dev/pts/1");
        for (const auto& [pid, program, openFile] : processes) {
            tree.process(pid == 0 ? ::getpid() : pid, program, openFile);
        }
        SerialLinkError error{SerialLinkError::Busy{"/dev/ttyUSB0"}};
        PortTrouble::explain(error, tree.root(), alice());
        EXPECT_EQ(std::get<SerialLinkError::Busy>(error.value).holder, holder)
            << std::get<1>(processes.back());
    }
}

// brltty claims CH34x adapters only; it is found by its program or by its udev rules alone.
TEST(PortTrouble, BusySaysWhetherBrlttyTakesTheAdapter) {
    const std::tuple<std::string, const char*, bool> rows[] = {
        {"ch341-uart", "/usr/lib/udev/rules.d/85-brltty.rules", true},
        {"ch341-uart", "/usr/bin/brltty", true},
        {"ch341-uart", "/usr/lib/udev/rules.d/60-serial.rules", false},
        {"cp210x", "/usr/bin/brltty", false}};
    for (const auto& [driver, installed, takes] : rows) {
        FakeSystemTree tree;
        tree.usbSerial({.driver = driver}).file(installed);
        SerialLinkError error{SerialLinkError::Busy{"/dev/ttyUSB0"}};
        PortTrouble::explain(error, tree.root(), alice());
        EXPECT_EQ(std::get<SerialLinkError::Busy>(error.value).brlttyTakesAdapter, takes)
            << driver << " " << installed;
    }
}

} // namespace
} // namespace kestrin
