// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QWidget>

/// The least that a program with a window can be: what start and memory are compared with.
int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QWidget window;
    window.setFixedSize(617, 616);
    window.setStyleSheet("background-color: #204060;");
    window.show();
    return QApplication::exec();
}
