#include "NoticeOverlays.h"

#include "L10n.h"
#include "LogPalette.h"
#include "NoticeBanner.h"
#include "PollerModel.h"
#include "QtText.h"

#include <QVBoxLayout>

namespace kestrin {

NoticeOverlays::NoticeOverlays(PollerModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , serialLost_(new NoticeBanner(Symbol::xmarkOctagon, LogPalette::red(palette()),
                                   qt(L10n::texts().notice.serialLost()), {}, this))
    , noResponse_(new NoticeBanner(
          Symbol::warning, LogPalette::orange(palette()), qt(L10n::texts().notice.noResponse()),
          [&model] { model.dismissNoResponseHint(); }, this)) {
    setObjectName("noticeOverlays");
    serialLost_->setObjectName("serialLostNotice");
    noResponse_->setObjectName("noResponseNotice");

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 8, 10, 8);
    layout->setSpacing(6);
    layout->addWidget(serialLost_, 0, Qt::AlignHCenter);
    layout->addWidget(noResponse_, 0, Qt::AlignHCenter);

    connect(&model_, &PollerModel::stateChanged, this, &NoticeOverlays::refresh);
    connect(&model_, &PollerModel::showNoResponseHintChanged, this, &NoticeOverlays::refresh);
    refresh();
}

void NoticeOverlays::refresh() {
    serialLost_->setVisible(model_.state() == PollerState::serialLost);
    noResponse_->setVisible(model_.showNoResponseHint());
    setVisible(!serialLost_->isHidden() || !noResponse_->isHidden());
    emit contentChanged();
}

int NoticeOverlays::heightFor(int width) const {
    return layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width)
                                         : layout()->totalSizeHint().height();
}

} // namespace kestrin
