#include "StopSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

namespace kestrin {

void StopSignals::watch(QCoreApplication& application, std::function<void()> onStop) {
    if (descriptor_ == -1) {
        return;
    }
    // Owned by the application, so it never outlives the event dispatcher it registers with.
    auto* notifier = new QSocketNotifier(descriptor_, QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier,
                     [descriptor = descriptor_, onStop = std::move(onStop)] {
                         if (drain(descriptor)) {
                             onStop();
                         }
                     });
}

} // namespace kestrin
