#pragma once

#include <QWidget>

class QPushButton;

namespace kestrin {

class NoticeBanner;
class PollerModel;

// The notices stacked over the top of the log: the lost port (until reading resumes), then that
// Kestrin only listens (until listening stops), above the device that does not respond (until
// dismissed or the next start), then the adapter whose latency timer slows reading down (until
// dismissed or set), then a time-out that fits the answers better (until dismissed or taken).
class NoticeOverlays : public QWidget {
    Q_OBJECT

public:
    explicit NoticeOverlays(PollerModel& model, QWidget* parent = nullptr);

    NoticeBanner* serialLostBanner() const { return serialLost_; }
    NoticeBanner* listeningBanner() const { return listening_; }
    NoticeBanner* noResponseBanner() const { return noResponse_; }
    NoticeBanner* latencyBanner() const { return latency_; }
    NoticeBanner* timeoutBanner() const { return timeout_; }

    // The height this needs at a width.
    int heightFor(int width) const;

signals:
    // A notice appeared or went; the owner places the overlay again.
    void contentChanged();

private:
    void refresh();
    void showLatencyRule();

    PollerModel& model_;
    NoticeBanner* serialLost_;
    NoticeBanner* listening_;
    NoticeBanner* noResponse_;
    NoticeBanner* latency_;
    QPushButton* setLatency_;
    NoticeBanner* timeout_;
    QPushButton* useTimeout_;
};

} // namespace kestrin
