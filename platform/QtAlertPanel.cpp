#include "platform/QtAlertPanel.h"

#include <QMessageBox>
#include <QPushButton>
#include <vector>

int QtAlertPanel::run(const AlertRequest& request) {
    QMessageBox box(parent_.data());
    box.setWindowTitle(request.title);
    box.setText(request.message);
    box.setInformativeText(request.informativeText);
    box.setIcon(request.buttons.size() > 1 ? QMessageBox::Question : QMessageBox::Information);
    std::vector<QAbstractButton*> buttons;
    for (qsizetype i = 0; i < request.buttons.size(); ++i) {
        const auto role = i == 0 ? QMessageBox::AcceptRole : QMessageBox::RejectRole;
        QPushButton* button = box.addButton(request.buttons.at(i), role);
        buttons.push_back(button);
        if (i == 0) {
            box.setDefaultButton(button);
        } else if (i == 1) {
            box.setEscapeButton(button);
        }
    }
    box.exec();
    for (size_t i = 0; i < buttons.size(); ++i) {
        if (box.clickedButton() == buttons[i]) {
            return static_cast<int>(i);
        }
    }
    // Closed without a button: the same as the last (cancelling) one.
    return buttons.empty() ? 0 : static_cast<int>(buttons.size()) - 1;
}
