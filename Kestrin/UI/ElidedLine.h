#pragma once

#include <QString>
#include <QWidget>

namespace kestrin {

// One line of text that gives up its end rather than widening its row. Unlike a QLabel, a new
// text only repaints it: the statistics change with every answer, and a QLabel would lay the
// whole window out again each time.
class ElidedLine : public QWidget {
    Q_OBJECT

public:
    explicit ElidedLine(QWidget* parent = nullptr);

    const QString& text() const { return text_; }
    void setText(const QString& text);
    // Where the line sits in its space; left and vertically centred unless told otherwise.
    void setAlignment(Qt::Alignment alignment);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
    Qt::Alignment alignment_ = Qt::AlignLeft | Qt::AlignVCenter;
};

} // namespace kestrin
