#pragma once

#include <QWidget>

namespace kestrin {

class NoticeBanner;
class PollerModel;

// The notices stacked over the top of the log: the lost port (until reading resumes) above the
// device that does not respond (until dismissed or the next start).
class NoticeOverlays : public QWidget {
    Q_OBJECT

public:
    explicit NoticeOverlays(PollerModel& model, QWidget* parent = nullptr);

    NoticeBanner* serialLostBanner() const { return serialLost_; }
    NoticeBanner* noResponseBanner() const { return noResponse_; }

    // The height this needs at a width.
    int heightFor(int width) const;

signals:
    // A notice appeared or went; the owner places the overlay again.
    void contentChanged();

private:
    void refresh();

    PollerModel& model_;
    NoticeBanner* serialLost_;
    NoticeBanner* noResponse_;
};

} // namespace kestrin
