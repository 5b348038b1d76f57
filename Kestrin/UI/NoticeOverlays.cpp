#include "NoticeOverlays.h"

#include "L10n.h"
#include "LatencyRuleDialog.h"
#include "LogPalette.h"
#include "NoticeBanner.h"
#include "PollerCommands.h"
#include "QtText.h"

#include <algorithm>

#include <QPushButton>
#include <QVBoxLayout>

namespace kestrin {

NoticeOverlays::NoticeOverlays(PollerModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , serialLost_(new NoticeBanner(Symbol::xmarkOctagon, LogPalette::red(palette()),
                                   qt(L10n::texts().notice.serialLost()), {}, this))
    , listening_(new NoticeBanner(Symbol::info, LogPalette::blue(palette()),
                                  qt(L10n::texts().notice.listening()), {}, this))
    , noResponse_(new NoticeBanner(
          Symbol::warning, LogPalette::orange(palette()), qt(L10n::texts().notice.noResponse()),
          [&model] { model.dismissNoResponseHint(); }, this))
    , latency_(new NoticeBanner(
          Symbol::clock, LogPalette::blue(palette()), {},
          [&model] { model.dismissLatencyNotice(); }, this))
    , setLatency_(latency_->addAction(qt(L10n::texts().adapter.setToOneMs())))
    , timeout_(new NoticeBanner(
          Symbol::clock, LogPalette::blue(palette()), {}, [&model] { model.dismissTimeoutOffer(); },
          this))
    , useTimeout_(timeout_->addAction({})) {
    setObjectName("noticeOverlays");
    serialLost_->setObjectName("serialLostNotice");
    listening_->setObjectName("listeningNotice");
    noResponse_->setObjectName("noResponseNotice");
    latency_->setObjectName("latencyNotice");
    setLatency_->setObjectName("setLatencyButton");
    QPushButton* fixForGood = latency_->addAction(qt(L10n::texts().adapter.fixForGood()));
    fixForGood->setObjectName("latencyRuleButton");
    connect(setLatency_, &QPushButton::clicked, &model_, &PollerModel::setLatencyTimerToBest);
    connect(fixForGood, &QPushButton::clicked, this, &NoticeOverlays::showLatencyRule);
    timeout_->setObjectName("timeoutNotice");
    useTimeout_->setObjectName("useTimeoutButton");
    connect(useTimeout_, &QPushButton::clicked, &model_, &PollerModel::acceptTimeoutOffer);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 8, 10, 8);
    layout->setSpacing(6);
    layout->addWidget(serialLost_, 0, Qt::AlignHCenter);
    layout->addWidget(listening_, 0, Qt::AlignHCenter);
    layout->addWidget(noResponse_, 0, Qt::AlignHCenter);
    layout->addWidget(latency_, 0, Qt::AlignHCenter);
    layout->addWidget(timeout_, 0, Qt::AlignHCenter);

    connect(&model_, &PollerModel::stateChanged, this, &NoticeOverlays::refresh);
    connect(&model_, &PollerModel::showNoResponseHintChanged, this, &NoticeOverlays::refresh);
    connect(&model_, &PollerModel::latencyNoticeChanged, this, &NoticeOverlays::refresh);
    connect(&model_, &PollerModel::timeoutOfferChanged, this, &NoticeOverlays::refresh);
    refresh();
}

void NoticeOverlays::refresh() {
    serialLost_->setVisible(model_.state() == PollerState::serialLost);
    // Not dismissable: whoever looks at the window later must still see that nothing is sent.
    listening_->setVisible(PollerCommands::of(model_).listening);
    noResponse_->setVisible(model_.showNoResponseHint());
    const std::optional<LatencyNotice>& latency = model_.latencyNotice();
    if (latency) {
        latency_->setText(qt(latency->text()));
        setLatency_->setVisible(latency->writable);
    }
    latency_->setVisible(latency.has_value());
    if (const std::optional<TimeoutOffer>& offer = model_.timeoutOffer()) {
        timeout_->setText(qt(offer->text()));
        useTimeout_->setText(qt(L10n::texts().bus.useTimeout(offer->timeoutMs)));
    }
    timeout_->setVisible(model_.timeoutOffer().has_value());
    setVisible(std::ranges::any_of(findChildren<NoticeBanner*>(Qt::FindDirectChildrenOnly),
                                   [](const NoticeBanner* banner) { return !banner->isHidden(); }));
    emit contentChanged();
}

// Modal, as the rule is copied from it before anything else is done with the window.
void NoticeOverlays::showLatencyRule() {
    LatencyRuleDialog dialog(window());
    dialog.exec();
}

int NoticeOverlays::heightFor(int width) const {
    return layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width)
                                         : layout()->totalSizeHint().height();
}

} // namespace kestrin
