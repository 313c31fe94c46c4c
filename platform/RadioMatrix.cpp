#include "platform/RadioMatrix.h"

#include <QGridLayout>
#include <QRadioButton>

RadioMatrix::RadioMatrix(QWidget* parent) : QWidget(parent) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    group_.setExclusive(true);
    connect(&group_, &QButtonGroup::idClicked, this, [this](int id) {
        selected_ = id;
        emit cellClicked();
    });
    rebuild();
}

void RadioMatrix::setRows(int rows) {
    rows_ = std::max(1, rows);
    rebuild();
}

void RadioMatrix::setColumns(int columns) {
    columns_ = std::max(1, columns);
    rebuild();
}

void RadioMatrix::setCellTitles(const QStringList& titles) {
    titles_ = titles;
    rebuild();
}

void RadioMatrix::setSelectedIndex(int index) {
    if (index < 0 || index >= rows_ * columns_) {
        return;
    }
    selected_ = index;
    if (QAbstractButton* button = group_.button(index)) {
        button->setChecked(true);
    }
}

QRadioButton* RadioMatrix::cell(int index) const {
    return qobject_cast<QRadioButton*>(group_.button(index));
}

void RadioMatrix::rebuild() {
    auto* grid = static_cast<QGridLayout*>(layout());
    for (QAbstractButton* button : group_.buttons()) {
        group_.removeButton(button);
        delete button;
    }
    for (int i = 0; i < rows_ * columns_; ++i) {
        auto* button = new QRadioButton(i < titles_.size() ? titles_.at(i) : QString(), this);
        group_.addButton(button, i);
        grid->addWidget(button, i / columns_, i % columns_);
    }
    selected_ = std::min(selected_, rows_ * columns_ - 1);
    setSelectedIndex(selected_);
}
