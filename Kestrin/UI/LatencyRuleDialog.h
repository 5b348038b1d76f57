#pragma once

#include <QDialog>

namespace kestrin {

// The udev rule that gives FTDI adapters a 1 ms latency timer whenever they are plugged in, in
// text that can be selected and copied, with where it goes and how the system takes it up.
class LatencyRuleDialog : public QDialog {
    Q_OBJECT

public:
    // The command that makes udev read its rules again, given with the rule.
    static constexpr const char* reloadCommand = "sudo udevadm control --reload";

    explicit LatencyRuleDialog(QWidget* parent = nullptr);
};

} // namespace kestrin
