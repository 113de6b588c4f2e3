// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TestHome.h"
#include "ToolTips.h"

#include <QTest>
#include <QTextDocument>
#include <QTextDocumentFragment>

class ToolTipsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void plainTextStaysAsItIs_data();
    void plainTextStaysAsItIs();
    void markupIsShown_data();
    void markupIsShown();
    void longTextIsCut();
};

void ToolTipsTest::plainTextStaysAsItIs_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QString();
    QTest::newRow("path") << "/home/me/Docs\nRemove";
    QTest::newRow("drive") << "C:\\Users\\me";
    QTest::newRow("ampersand") << "R&D & co";
    QTest::newRow("as long as it may be") << QString(ToolTips::MaxLength, u'x');
}

void ToolTipsTest::plainTextStaysAsItIs()
{
    QFETCH(QString, text);
    QCOMPARE(ToolTips::plain(text), text);
}

void ToolTipsTest::markupIsShown_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("signs") << "a < b > c";
    QTest::newRow("tag") << "/home/<b>me</b>";
    QTest::newRow("entity") << "/home/&lt;me";
    QTest::newRow("with a line feed") << "<i>me</i>\nRemove";
}

void ToolTipsTest::markupIsShown()
{
    QFETCH(QString, text);
    const QString toolTip = ToolTips::plain(text);
    QVERIFY(Qt::mightBeRichText(toolTip)); // how a tooltip would take it
    QCOMPARE(QTextDocumentFragment::fromHtml(toolTip).toPlainText(), text);
}

void ToolTipsTest::longTextIsCut()
{
    const QString text = QString(ToolTips::MaxLength - 1, u'x') + QString(4, u'y');
    QCOMPARE(ToolTips::plain(text), text.first(ToolTips::MaxLength) + u'…');
    const QString pairs = u'x' + QStringLiteral("\U0001F600").repeated(ToolTips::MaxLength);
    QCOMPARE(ToolTips::plain(pairs), pairs.first(ToolTips::MaxLength - 1) + u'…');
}

QTEST_MAIN(ToolTipsTest)
#include "tst_tooltips.moc"
