// SPDX-License-Identifier: GPL-3.0-or-later
// quib-message: asks one question in a window of a process of its own, for a program whose windows stand still.
// Ends with the number of the button pressed, from 0; closing the window presses the first.
//
//   quib-message TITLE TEXT BUTTON...

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <vector>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QStringList words = QApplication::arguments();
    if (words.size() < 4) return 2;
    QMessageBox box(QMessageBox::Warning, words[1], words[2]);
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    std::vector<QAbstractButton*> buttons;
    for (const QString& word : words.mid(3)) buttons.push_back(box.addButton(word, QMessageBox::ActionRole));
    box.setDefaultButton(static_cast<QPushButton*>(buttons.front()));
    box.setEscapeButton(buttons.front());
    box.exec();
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (box.clickedButton() == buttons[i]) return static_cast<int>(i);
    }
    return 0;
}
