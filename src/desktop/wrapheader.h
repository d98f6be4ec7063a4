#pragma once

#include <QHeaderView>

namespace desktop {

// A header whose titles stand on up to three lines, for columns that are narrower than their titles.
class WrapHeader final : public QHeaderView {
public:
    explicit WrapHeader(QWidget* parent);

protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;
    QSize sectionSizeFromContents(int section) const override;  // of its longest word
    bool event(QEvent* event) override;

private:
    QString TitleOf(int section) const;
    void SetHeight();
};

}  // namespace desktop
