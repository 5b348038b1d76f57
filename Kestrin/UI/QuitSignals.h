#pragma once

class QCoreApplication;

namespace kestrin::QuitSignals {

// SIGTERM, SIGINT and SIGHUP (logout, systemctl stop, kill, Ctrl+C in a terminal) end the
// application as closing its window does, so that what runs on aboutToQuit (stop reading, write
// the autosave) runs for them too. The handler only writes a byte to a socket pair; the quit
// happens on the main thread once its event loop reads it, also for a signal that came before
// the loop started. Further signals during the orderly end are absorbed.
//
// Call once, on the main thread, with the application created. False when the socket pair
// cannot be made: the signals then keep their default action.
bool install(QCoreApplication& application);

} // namespace kestrin::QuitSignals
