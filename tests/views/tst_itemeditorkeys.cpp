// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "EventCounter.h"
#include "ItemEditorTest.h"

#include <QMenu>
#include <QSignalSpy>

namespace
{

constexpr int kUrl = 0;       // types without a browse button
constexpr int kFile = 1;      // those with one
constexpr int kNoSection = 2; // an element on its own

} // namespace

/// The keys that the item editor takes, row by row.
class ItemEditorKeysTest : public ItemEditorTest
{
    Q_OBJECT

private slots:
    void moves_data();
    void moves();
    void leftInTheName_data();
    void leftInTheName();
    void upAndDownInTheValue_data();
    void upAndDownInTheValue();
    void enterInTheName_data();
    void enterInTheName();
    void enterInTheValue_data();
    void enterInTheValue();
    void enterClicksButtons_data();
    void enterClicksButtons();
    void escCloses_data();
    void escCloses();
    void otherKeysPass_data();
    void otherKeysPass();
    void focusOrderIsThatOnScreen();
    void arrowsLeaveAValueShownInPart();

private:
    void open(int form);
    QWidget* at(const QString& objectName) const
    {
        return m_panel->findChild<QWidget*>(objectName);
    }
    QString focused() const { return m_window->focusWidget()->objectName(); }
};

void ItemEditorKeysTest::open(int form)
{
    const QString type = form == kUrl ? "URL" : "File";
    if (form == kNoSection) {
        m_panel->openForElement({"x", "Name", type, "value", ""});
        return;
    }
    m_model->saveItem("Empty", {"x", "Name", type, "value", ""}, -1);
    m_panel->openEditor("Empty", "x");
}

void ItemEditorKeysTest::moves_data()
{
    QTest::addColumn<int>("form");
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("to");
    const auto row = [](const char* name, int form, const char* from, Qt::Key key, const char* to) {
        QTest::newRow(name) << form << QString::fromLatin1(from) << int(key)
                            << QString::fromLatin1(to);
    };
    const Qt::Key up = Qt::Key_Up;
    const Qt::Key down = Qt::Key_Down;
    const Qt::Key left = Qt::Key_Left;
    const Qt::Key right = Qt::Key_Right;
    row("type, Up", kFile, "editorTypeBtn", up, "editorNameInput");
    row("section, Up", kFile, "editorSectionBtn", up, "editorNameInput");
    row("browse, Up", kFile, "editorBrowseBtn", up, "editorTypeBtn");
    row("value, Up, with browse", kFile, "editorValueInput", up, "editorBrowseBtn");
    row("value, Up, without browse", kUrl, "editorValueInput", up, "editorTypeBtn");
    row("save, Up", kFile, "editorSaveBtn", up, "editorValueInput");
    row("cancel, Up", kUrl, "editorCancelBtn", up, "editorValueInput");

    row("name, Down", kUrl, "editorNameInput", down, "editorTypeBtn");
    row("icon, Down", kUrl, "editorIconBtn", down, "editorTypeBtn");
    row("type, Down, with browse", kFile, "editorTypeBtn", down, "editorBrowseBtn");
    row("type, Down, without browse", kUrl, "editorTypeBtn", down, "editorValueInput");
    row("section, Down, with browse", kFile, "editorSectionBtn", down, "editorBrowseBtn");
    row("section, Down, without browse", kUrl, "editorSectionBtn", down, "editorValueInput");
    row("browse, Down", kFile, "editorBrowseBtn", down, "editorValueInput");
    row("value, Down", kUrl, "editorValueInput", down, "editorCancelBtn");

    row("type, Right", kUrl, "editorTypeBtn", right, "editorSectionBtn");
    row("section, Left", kUrl, "editorSectionBtn", left, "editorTypeBtn");
    row("type, Left", kUrl, "editorTypeBtn", left, "editorTypeBtn");
    row("section, Right", kUrl, "editorSectionBtn", right, "editorSectionBtn");
    row("type alone, Right", kNoSection, "editorTypeBtn", right, "editorTypeBtn");
    row("type alone, Left", kNoSection, "editorTypeBtn", left, "editorTypeBtn");
    row("browse, Left", kFile, "editorBrowseBtn", left, "editorBrowseBtn");
    row("browse, Right", kFile, "editorBrowseBtn", right, "editorBrowseBtn");
    row("save, Left", kUrl, "editorSaveBtn", left, "editorCancelBtn");
    row("cancel, Right", kUrl, "editorCancelBtn", right, "editorSaveBtn");
    row("icon, Right", kUrl, "editorIconBtn", right, "editorNameInput");
}

void ItemEditorKeysTest::moves()
{
    QFETCH(int, form);
    QFETCH(QString, from);
    QFETCH(int, key);
    QFETCH(QString, to);
    open(form);
    at(from)->setFocus();
    const EventCounter passedOn(m_panel, QEvent::KeyPress);
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    QTest::keyPress(at(from), Qt::Key(key));
    QCOMPARE(focused(), to);
    QCOMPARE(passedOn.count, 0); // consumed
    QCOMPARE(closed.count(), 0);
    QCOMPARE(name()->text(), "Name");
    QCOMPARE(value()->toPlainText(), "value");
}

void ItemEditorKeysTest::leftInTheName_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<int>("selected"); // characters behind the cursor's place
    QTest::addColumn<QString>("to");
    QTest::addColumn<int>("cursorAfter");
    QTest::newRow("at the start") << "Name" << 0 << 0 << "editorIconBtn" << 0;
    QTest::newRow("empty") << "" << 0 << 0 << "editorIconBtn" << 0;
    QTest::newRow("in the middle") << "Name" << 2 << 0 << "editorNameInput" << 1;
    QTest::newRow("all selected from the end") << "Name" << 4 << -4 << "editorNameInput" << 0;
    QTest::newRow("selected back to the start") << "Name" << 2 << -2 << "editorNameInput" << 0;
}

void ItemEditorKeysTest::leftInTheName()
{
    QFETCH(QString, text);
    QFETCH(int, cursor);
    QFETCH(int, selected);
    open(kUrl);
    name()->setText(text);
    name()->setFocus();
    name()->setCursorPosition(cursor);
    if (selected != 0)
        name()->setSelection(cursor, selected);
    QTest::keyPress(name(), Qt::Key_Left);
    QTEST(focused(), "to");
    QTEST(name()->cursorPosition(), "cursorAfter");
}

void ItemEditorKeysTest::upAndDownInTheValue_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("to");
    QTest::addColumn<int>("lineAfter");
    const QString value = QStringLiteral("editorValueInput");
    QTest::newRow("Up in the first") << int(Qt::Key_Up) << 0 << "editorTypeBtn" << 0;
    QTest::newRow("Up in the second") << int(Qt::Key_Up) << 1 << value << 0;
    QTest::newRow("Up in the last") << int(Qt::Key_Up) << 2 << value << 1;
    QTest::newRow("Down in the first") << int(Qt::Key_Down) << 0 << value << 1;
    QTest::newRow("Down in the second") << int(Qt::Key_Down) << 1 << value << 2;
    QTest::newRow("Down in the last") << int(Qt::Key_Down) << 2 << "editorCancelBtn" << 2;
}

void ItemEditorKeysTest::upAndDownInTheValue()
{
    QFETCH(int, key);
    QFETCH(int, line);
    open(kUrl);
    value()->setPlainText("one\ntwo\nthree");
    value()->setFocus();
    QTextCursor cursor = value()->textCursor();
    cursor.movePosition(QTextCursor::Down, QTextCursor::MoveAnchor, line);
    value()->setTextCursor(cursor);
    QCOMPARE(value()->textCursor().blockNumber(), line);
    QTest::keyPress(value(), Qt::Key(key));
    QTEST(focused(), "to");
    QTEST(value()->textCursor().blockNumber(), "lineAfter");
}

void ItemEditorKeysTest::enterInTheName_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void ItemEditorKeysTest::enterInTheName()
{
    QFETCH(int, key);
    open(kUrl);
    const EventCounter passedOn(m_panel, QEvent::KeyPress);
    QTest::keyPress(name(), Qt::Key(key));
    QCOMPARE(focused(), "editorTypeBtn");
    QCOMPARE(passedOn.count, 0);
}

void ItemEditorKeysTest::enterInTheValue_data()
{
    enterInTheName_data();
}

void ItemEditorKeysTest::enterInTheValue()
{
    QFETCH(int, key);
    open(kUrl);
    value()->setFocus();
    QTest::keyPress(value(), Qt::Key(key));
    QCOMPARE(value()->toPlainText(), "\nvalue");
    QCOMPARE(focused(), "editorValueInput");
}

void ItemEditorKeysTest::enterClicksButtons_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("key");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        for (const char* button : {"editorIconBtn", "editorTypeBtn", "editorSectionBtn",
                                   "editorBrowseBtn", "editorCancelBtn", "editorSaveBtn"})
            QTest::addRow("%s by %x", button, key) << QString::fromLatin1(button) << int(key);
    }
}

void ItemEditorKeysTest::enterClicksButtons()
{
    QFETCH(QString, button);
    QFETCH(int, key);
    open(kFile);
    auto* clickable = qobject_cast<QPushButton*>(at(button));
    clickable->setFocus();
    const QSignalSpy clicked(clickable, &QPushButton::clicked);
    const EventCounter passedOn(m_panel, QEvent::KeyPress);
    const MenuDriver menus([](QMenu* menu) { QTest::keyClick(menu, Qt::Key_Escape); });
    const ModalDriver modals([](QWidget* modal) { pressKey(*modal, Qt::Key_Escape); });
    QTest::keyPress(clickable, Qt::Key(key));
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(passedOn.count, 0);
}

void ItemEditorKeysTest::escCloses_data()
{
    QTest::addColumn<QString>("from");
    for (const char* name :
         {"editorNameInput", "editorIconBtn", "editorTypeBtn", "editorSectionBtn",
          "editorBrowseBtn", "editorValueInput", "editorCancelBtn", "editorSaveBtn"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void ItemEditorKeysTest::escCloses()
{
    QFETCH(QString, from);
    open(kFile);
    at(from)->setFocus();
    const EventCounter passedOn(m_panel, QEvent::KeyPress);
    const QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    QTest::keyPress(at(from), Qt::Key_Escape);
    QCOMPARE(closed, QList<QVariantList>{{-1}});
    QCOMPARE(passedOn.count, 0);
}

void ItemEditorKeysTest::otherKeysPass_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("key");
    const auto row = [](const char* name, const char* from, Qt::Key key) {
        QTest::newRow(name) << QString::fromLatin1(from) << int(key);
    };
    row("Up in the name", "editorNameInput", Qt::Key_Up);
    row("Backspace on a button", "editorSaveBtn", Qt::Key_Backspace);
    row("F1 on a pill", "editorTypeBtn", Qt::Key_F1);
    row("letter on a pill", "editorSectionBtn", Qt::Key_A);
    row("Delete on browse", "editorBrowseBtn", Qt::Key_Delete);
}

void ItemEditorKeysTest::otherKeysPass()
{
    QFETCH(QString, from);
    QFETCH(int, key);
    open(kFile);
    at(from)->setFocus();
    const EventCounter passedOn(m_panel, QEvent::KeyPress);
    QTest::keyPress(at(from), Qt::Key(key));
    QCOMPARE(passedOn.count, 1);
    QCOMPARE(focused(), from);
}

void ItemEditorKeysTest::focusOrderIsThatOnScreen()
{
    open(kFile);
    icon()->setFocus();
    QStringList order;
    QWidget* next = icon();
    do {
        if (next->focusPolicy() & Qt::TabFocus)
            order.append(next->objectName());
        next = next->nextInFocusChain();
    } while (next != icon());
    const QStringList expected{"editorIconBtn",    "editorNameInput", "editorTypeBtn",
                               "editorSectionBtn", "editorBrowseBtn", "editorValueInput",
                               "editorCancelBtn",  "editorSaveBtn"};
    order.removeAll(QString());
    QCOMPARE(order, expected);
}

void ItemEditorKeysTest::arrowsLeaveAValueShownInPart()
{
    m_panel->openForElement({"x", "Name", "URL", "one\ntwo\n" + QString(20'000, u'x'), ""});
    QVERIFY(value()->isReadOnly());
    value()->setFocus();
    QTest::keyPress(value(), Qt::Key_Down);
    QCOMPARE(value()->textCursor().blockNumber(), 1);
    QTest::keyPress(value(), Qt::Key_Down);
    QTest::keyPress(value(), Qt::Key_Down);
    QCOMPARE(focused(), "editorCancelBtn");
    QTest::keyPress(cancel(), Qt::Key_Up);
    QTest::keyClick(value(), Qt::Key_Home, Qt::ControlModifier);
    QTest::keyPress(value(), Qt::Key_Up);
    QCOMPARE(focused(), "editorTypeBtn");
}

QTEST_MAIN(ItemEditorKeysTest)
#include "tst_itemeditorkeys.moc"
