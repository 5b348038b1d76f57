#include "FakeSystemTree.h"
#include "PortHolders.h"
#include "PortTrouble.h"

#include <cerrno>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestrin {
namespace {

using Access = SerialLinkError::PortAccess;
using Holder = SerialLinkError::PortHolder;
using Membership = Access::Membership;

const std::string byId = "/dev/serial/by-id/usb-1a86_USB_Serial-if00-port0";
constexpr gid_t dialout = 20;

Login alice(std::vector<gid_t> groups = {}) {
    return Login{"alice", 1000, 1000, groups};
}

// A CH340 adapter reached through its by-id link, and the account files of a Debian machine
// where alice's own group is 1000 and carol's is dialout (20).
void buildAdapter(FakeSystemTree& tree, std::filesystem::perms mode, gid_t group,
                  std::string_view dialoutMembers) {
    tree.usbSerial({.name = "ttyUSB0", .driver = "ch341-uart", .byId = byId.substr(18)})
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
    struct Row {
        const char* name;
        perms mode;
        gid_t group;
        std::string members;
        Login login;
        std::optional<Access> expected;
    };
    const Row rows[] = {
        {"not a member", shared, dialout, "bob", alice(),
         Access{"dialout", "alice", Membership::none, true}},
        {"added after logging in", shared, dialout, "bob,alice", alice(),
         Access{"dialout", "alice", Membership::notInThisLogin, true}},
        {"member in this login", shared, dialout, "alice", alice({27, dialout}),
         Access{"dialout", "alice", Membership::inThisLogin, true}},
        {"primary group counts", shared, 1000, "", alice({}),
         Access{"alice", "alice", Membership::inThisLogin, true}},
        {"dialout made the primary group after logging in", shared, dialout, "",
         Login{"carol", 1001, 1001, {}},
         Access{"dialout", "carol", Membership::notInThisLogin, true}},
        {"group may not open", groupReadOnly, dialout, "alice", alice({dialout}),
         Access{"dialout", "alice", Membership::inThisLogin, false}},
        {"group without a name", shared, 4242, "", alice(),
         Access{"4242", "alice", Membership::none, true}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        FakeSystemTree tree;
        buildAdapter(tree, row.mode, row.group, row.members);
        SerialLinkError error{SerialLinkError::OpenFailed{byId, EACCES}};
        PortTrouble::explain(error, tree.root(), row.login);
        EXPECT_EQ(error,
                  (SerialLinkError{SerialLinkError::OpenFailed{byId, EACCES, row.expected}}));
    }
}

TEST(PortTrouble, LeavesOtherFailuresAndUnreadableDevicesAlone) {
    FakeSystemTree tree;
    tree.file("/dev/ttyUSB0");
    const std::vector<SerialLinkError> untouched = {
        {SerialLinkError::OpenFailed{"/dev/ttyUSB0", ENOENT}},
        {SerialLinkError::OpenFailed{"/dev/ttyUSB9", EACCES}},
        {SerialLinkError::ConfigurationFailed{EIO}},
        {SerialLinkError::Disconnected{}},
    };
    for (const SerialLinkError& before : untouched) {
        SerialLinkError after = before;
        PortTrouble::explain(after, tree.root(), alice());
        EXPECT_EQ(after, before) << after.value.index();
    }
}

TEST(PortTrouble, BusyNamesTheHolderAndWhetherBrlttyTakesTheAdapter) {
    struct Row {
        const char* name;
        std::string driver;
        bool brltty;
        // Process ids (0: this test's own) with program names and descriptor targets; "-" marks
        // an fd folder that cannot be listed.
        std::vector<std::tuple<int, std::string, std::string>> processes;
        std::optional<Holder> holder;
        bool brlttyTakesAdapter;
    };
    const Row rows[] = {
        {"holder opened the by-id link",
         "ftdi_sio",
         false,
         {{300, "bash", "/dev/pts/1"}, {812, "minicom", byId}},
         Holder{"minicom", 812},
         false},
        {"unreadable entries are skipped",
         "ch341-uart",
         true,
         {{1, "systemd", "-"}, {900, "screen", "/dev/ttyUSB0"}},
         Holder{"screen", 900},
         true},
        {"this process is not the holder",
         "ch341-uart",
         false,
         {{0, "kestrin", "/dev/ttyUSB0"}},
         std::nullopt,
         false},
        {"hidden ModemManager is only probable",
         "cp210x",
         true,
         {{640, "ModemManager", "-"}, {700, "bash", "/dev/null"}},
         Holder{"ModemManager", 640, true},
         false},
        {"nobody visible", "ch341-uart", false, {{1, "systemd", "-"}}, std::nullopt, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        FakeSystemTree tree;
        tree.usbSerial({.name = "ttyUSB0", .driver = row.driver, .byId = byId.substr(18)})
            .file("/dev/null")
            .file("/dev/pts/1");
        if (row.brltty) {
            tree.file("/usr/lib/udev/rules.d/85-brltty.rules");
        }
        for (const auto& [pid, program, target] : row.processes) {
            tree.process(pid == 0 ? ::getpid() : pid, program, {target}, target != "-");
        }
        SerialLinkError error{SerialLinkError::Busy{"/dev/ttyUSB0"}};
        PortTrouble::explain(error, tree.root(), alice());
        const auto& busy = std::get<SerialLinkError::Busy>(error.value);
        EXPECT_EQ(busy.holder, row.holder);
        EXPECT_EQ(busy.brlttyTakesAdapter, row.brlttyTakesAdapter);
    }
}

TEST(PortHolders, BrlttyIsInstalledWithItsProgramOrItsRules) {
    for (const char* file : {"/usr/bin/brltty", "/etc/udev/rules.d/90-brltty-device.rules"}) {
        FakeSystemTree tree;
        tree.file(file);
        EXPECT_TRUE(PortHolders::brlttyInstalled(tree.root())) << file;
    }
    FakeSystemTree bare;
    bare.file("/usr/bin/brltty-ctb").file("/usr/lib/udev/rules.d/60-serial.rules");
    EXPECT_FALSE(PortHolders::brlttyInstalled(bare.root()));
}

} // namespace
} // namespace kestrin
