// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ActionsMenu.h"
#include "FittingText.h"
#include "ItemEditorTest.h"
#include "LanguageRows.h"
#include "Pixels.h"

#include <QAccessible>
#include <QMenu>
#include <QWidgetAction>

namespace
{

constexpr int kInner = 460 - 2 * 24;
constexpr int kHalf = (kInner - 16) / 2;

void addThemes()
{
    QTest::addColumn<int>("theme");
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
}

} // namespace

/// Where the item editor puts what, in which colours, and whether its texts fit there.
class ItemEditorLookTest : public ItemEditorTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void layoutFollowsTheMeasures();
    void layoutWithoutSectionAndBrowse();
    void styles_data();
    void styles();
    void pillColors_data();
    void pillColors();
    void iconButtonColors_data();
    void iconButtonColors();
    void pillGlyphs_data();
    void pillGlyphs();
    void namesForScreenReaders();

    void textsFit_data();
    void textsFit();
    void menuRowsFit_data();
    void menuRowsFit();

private:
    /// As it is seen; alone a widget is painted on the colour of its own sheet.
    QImage pictureOf(const QWidget* widget) const
    {
        return m_window->grab(rectIn(*m_window, widget)).toImage();
    }
    QRect rect(const QWidget* widget) const { return rectIn(*m_panel, widget); }
    void focus(QWidget* widget)
    {
        widget->setFocus();
        QTRY_VERIFY(widget->hasFocus());
    }
};

void ItemEditorLookTest::initTestCase()
{
    FittingText::useProgramFont();
}

void ItemEditorLookTest::layoutFollowsTheMeasures()
{
    m_panel->openEditor("Work", "w2");
    m_panel->layout()->activate();
    const QRect nameLabel = rect(labelOf(name()));
    QCOMPARE(nameLabel.topLeft(), QPoint(24, 20));
    const QRect iconRect = rect(icon());
    QCOMPARE(iconRect.size(), QSize(40, 40));
    QCOMPARE(icon()->iconSize(), QSize(22, 22));
    QCOMPARE(iconRect.left(), 24);
    QCOMPARE(rect(name()).left(), 24 + 40 + 12);
    QCOMPARE(rect(name()).right() + 1, 460 - 24);
    const int nameRowTop = qMin(iconRect.top(), rect(name()).top());
    const int nameRowBottom = qMax(iconRect.bottom(), rect(name()).bottom());
    QCOMPARE(nameRowTop - nameLabel.bottom() - 1, 8);
    QCOMPARE(iconRect.center().y(), rect(name()).center().y());

    const QRect typeLabel = rect(labelOf(type()));
    QCOMPARE(typeLabel.top() - nameRowBottom - 1, 20);
    QCOMPARE(rect(type()), QRect(24, typeLabel.bottom() + 1 + 8, kHalf, 36));
    QCOMPARE(rect(section()), rect(type()).translated(kHalf + 16, 0));
    QCOMPARE(rect(labelOf(section())), typeLabel.translated(kHalf + 16, 0));

    const QRect browseRect = rect(browse());
    QCOMPARE(browseRect.height(), 36);
    QCOMPARE(browseRect.top() - rect(type()).bottom() - 1, 20);
    QCOMPARE(browseRect.right() + 1, 460 - 24);
    const QRect valueLabel = rect(labelOf(value()));
    QCOMPARE(valueLabel.left(), 24);
    QCOMPARE(browseRect.left() - valueLabel.right() - 1, 12);
    QVERIFY(qAbs(valueLabel.center().y() - browseRect.center().y()) <= 1);
    QCOMPARE(rect(value()), QRect(24, browseRect.bottom() + 1 + 8, kInner, 130));

    QCOMPARE(rect(cancel()), QRect(24, m_panel->height() - 20 - 36, kHalf, 36));
    QCOMPARE(rect(save()), rect(cancel()).translated(kHalf + 16, 0));
    m_panel->resize(460, m_panel->sizeHint().height());
    m_panel->layout()->activate();
    // The stretch above the buttons counts as a row, the buttons keep 8 more off it.
    QCOMPARE(rect(cancel()).top() - rect(value()).bottom() - 1, 20 + 8);
}

void ItemEditorLookTest::layoutWithoutSectionAndBrowse()
{
    m_panel->openForElement({"", "Name", "URL", "value", ""});
    m_panel->layout()->activate();
    QCOMPARE(rect(type()).width(), kInner);
    QCOMPARE(rect(labelOf(value())).width(), kInner);
}

void ItemEditorLookTest::styles_data()
{
    addThemes();
}

void ItemEditorLookTest::styles()
{
    QFETCH(int, theme);
    Theme::forceTheme = theme;
    rebuild();
    const ColorTokens c = Theme::colors();
    for (const QWidget* field : {static_cast<QWidget*>(name()), static_cast<QWidget*>(type()),
                                 static_cast<QWidget*>(section()), static_cast<QWidget*>(value())})
        QCOMPARE(labelOf(field)->styleSheet(), Theme::fieldLabelStyle(c));
    QCOMPARE(name()->styleSheet(), Theme::fieldInputStyle(c));
    QCOMPARE(value()->styleSheet(), Theme::fieldInputStyle(c));
    QCOMPARE(browse()->styleSheet(), Theme::actionBtnStyle(c, ""));
    QCOMPARE(cancel()->styleSheet(), Theme::actionBtnStyle(c, "transparent"));
    QCOMPARE(save()->styleSheet(), Theme::primaryBtnStyle(c));
    QCOMPARE(browse()->text(), "Browse");
    QCOMPARE(cancel()->text(), "Cancel");
    QCOMPARE(save()->text(), "Save");
    QCOMPARE(labelOf(name())->text(), "Shortcut Name:");
    QCOMPARE(labelOf(type())->text(), "Type:");
    QCOMPARE(labelOf(section())->text(), "Section:");
    for (const QWidget* button : {static_cast<QWidget*>(icon()), static_cast<QWidget*>(type()),
                                  static_cast<QWidget*>(section())})
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
}

void ItemEditorLookTest::pillColors_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QString>("seed");
    QTest::newRow("light") << 1 << "#0284c7";
    QTest::newRow("dark") << 2 << "#0284c7";
    QTest::newRow("light red") << 1 << "#c0102a";
    QTest::newRow("dark red") << 2 << "#c0102a";
    QTest::newRow("dark grey") << 2 << "#808080";
}

void ItemEditorLookTest::pillColors()
{
    QFETCH(int, theme);
    QFETCH(QString, seed);
    Theme::forceTheme = theme;
    Theme::seedColorHex = seed;
    rebuild();
    m_panel->openEditor("Work", "w2");
    const ColorTokens tones = getItemTheme();
    const QColor key(tones.key);
    const QColor active =
        theme == 1 ? QColor(tones.primaryContainer)
                   : QColor(QColor::fromHsl(key.hslHue(), key.hslSaturation(), 89, 255).name());
    const QColor ink(Theme::onColorFor(active, 4.5));
    for (PickerPill* pill : {type(), section()}) {
        focus(name());
        QImage idle = pictureOf(pill);
        QCOMPARE(idle.pixelColor(100, 4), QColor(Theme::fieldIdleBg(tones)));
        QVERIFY(!Pixels::boxOfColor(idle, QColor(tones.onSurface), 40).isEmpty());
        focus(pill);
        QImage lit = pictureOf(pill);
        QCOMPARE(lit.pixelColor(100, 4), active);
        QVERIFY(!Pixels::boxOfColor(lit, ink, 40).isEmpty());
        // Round ends of radius 18.
        QVERIFY(lit.pixelColor(1, 1) != active);
        QVERIFY(lit.pixelColor(4, 4) != active);
        QCOMPARE(lit.pixelColor(7, 7), active);
        QCOMPARE(lit.pixelColor(1, 18), active);
    }
}

void ItemEditorLookTest::iconButtonColors_data()
{
    addThemes();
}

void ItemEditorLookTest::iconButtonColors()
{
    QFETCH(int, theme);
    Theme::forceTheme = theme;
    rebuild();
    m_panel->openEditor("Work", {});
    const ColorTokens c = Theme::colors();
    focus(name());
    const QImage idle = pictureOf(icon());
    QCOMPARE(idle.pixelColor(20, 2), QColor(Theme::fieldIdleBg(c)));
    QVERIFY(idle.pixelColor(3, 3) != QColor(Theme::fieldIdleBg(c))); // a circle
    const QRect glyph = Pixels::boxOfColor(idle, QColor(c.onSurface), 60);
    QVERIFY(Pixels::isCentredOn(glyph, QPointF(20, 20)));
    QVERIFY(glyph.height() > 12 && glyph.height() <= 19);
    focus(icon());
    QCOMPARE(pictureOf(icon()).pixelColor(20, 2), QColor(c.primaryContainer));
}

void ItemEditorLookTest::pillGlyphs_data()
{
    addThemes();
}

void ItemEditorLookTest::pillGlyphs()
{
    QFETCH(int, theme);
    Theme::forceTheme = theme;
    rebuild();
    m_panel->openEditor("Work", "w2");
    focus(name());
    for (PickerPill* pill : {type(), section()}) {
        const QColor ink(Theme::colors().onSurface);
        const QRect glyph = Pixels::boxOfColor(pictureOf(pill).copy(0, 0, 32, 36), ink, 60);
        QVERIFY(Pixels::isCentredOn(glyph, QPointF(22, 18)));
        QVERIFY(glyph.width() <= 12 && glyph.width() > 6);
        const QRect text =
            Pixels::boxOfColor(pictureOf(pill).copy(32, 0, 166, 36), ink, 60).translated(32, 0);
        QVERIFY(text.left() >= 34 && text.left() <= 38);
        QVERIFY(qAbs(QRectF(text).center().y() - 18) <= 3);
    }
    // Each type and section has a glyph of its own.
    const QImage bulk = pictureOf(type()).copy(0, 0, 32, 36);
    const QImage work = pictureOf(section()).copy(0, 0, 32, 36);
    m_model->editCategory("Home", "Home", 0xE86F);
    m_panel->openEditor("Home", "h1");
    QVERIFY(pictureOf(type()).copy(0, 0, 32, 36) != bulk);
    QVERIFY(pictureOf(section()).copy(0, 0, 32, 36) != work);
}

void ItemEditorLookTest::namesForScreenReaders()
{
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        rebuild();
        m_panel->openEditor("Work", "w2");
        QCOMPARE(icon()->accessibleName(), Tr::t("dialog.pick_icon_title"));
        const auto nameOf = [](QWidget* widget) {
            return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
        };
        QCOMPARE(nameOf(icon()), Tr::t("dialog.pick_icon_title"));
        QCOMPARE(nameOf(name()), Tr::t("editor.lbl_name"));
        QCOMPARE(nameOf(value()), Tr::t("editor.lbl_bulk"));
        QCOMPARE(nameOf(type()), "Bulk");
        QCOMPARE(nameOf(section()), "Work");
    }
}

void ItemEditorLookTest::textsFit_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<QString>("stored");
    for (const Lang lang : Tr::all()) {
        for (const char* stored : {"URL", "Application", "File", "Bulk", "Snippet"})
            QTest::addRow("%s, %s", qPrintable(Tr::codeFor(lang)), stored)
                << lang << QString::fromLatin1(stored);
    }
}

void ItemEditorLookTest::textsFit()
{
    QFETCH(Lang, lang);
    QFETCH(QString, stored);
    Tr::currentLang = lang;
    rebuild();
    m_window->setStyleSheet(QStringLiteral("QWidget { font-family: %1; }").arg(FontTokens::Family));
    m_model->saveItem("Empty", {"x", "", stored, "", ""}, -1);
    m_panel->openEditor("Empty", "x");
    m_panel->layout()->activate();
    QVERIFY(m_panel->minimumSizeHint().width() <= CardWidth);
    for (const QLabel* label : m_panel->findChildren<QLabel*>()) {
        const QSize text = label->fontMetrics().size(Qt::TextSingleLine, label->text());
        QVERIFY2(text.width() <= label->contentsRect().width() &&
                     text.height() <= label->contentsRect().height(),
                 qPrintable(label->text()));
    }
    for (const QPushButton* button : m_panel->findChildren<QPushButton*>()) {
        const QRect room = FittingText::contentsOf(*button);
        const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
        QVERIFY2(text.width() <= room.width() && text.height() <= room.height(),
                 qPrintable(button->text()));
    }
    const int lineRoom = name()->width() - 2 * 16 - 4; // the padding, and the place of the cursor
    QVERIFY2(name()->fontMetrics().horizontalAdvance(name()->placeholderText()) <= lineRoom,
             qPrintable(name()->placeholderText()));
    const int areaRoom = value()->viewport()->width() - 2 * 4;
    QVERIFY2(value()->fontMetrics().horizontalAdvance(value()->placeholderText()) <= areaRoom,
             qPrintable(value()->placeholderText()));
}

void ItemEditorLookTest::menuRowsFit_data()
{
    addLanguageRows();
}

void ItemEditorLookTest::menuRowsFit()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    rebuild();
    m_panel->openEditor("Work", "w1");
    for (PickerPill* pill : {type(), section()}) {
        int rows = 0;
        const MenuDriver driver([&rows](QMenu* menu) {
            for (QAction* action : menu->actions()) {
                const auto* row = qobject_cast<QWidgetAction*>(action);
                if (!row)
                    continue;
                ++rows;
                QVERIFY(row->defaultWidget()->width() >= row->defaultWidget()->sizeHint().width());
            }
            QTest::keyClick(menu, Qt::Key_Escape);
        });
        QTest::mouseClick(pill, Qt::LeftButton);
        QVERIFY(driver.hasClosed());
        QVERIFY(rows >= 4);
    }
}

QTEST_MAIN(ItemEditorLookTest)
#include "tst_itemeditorlook.moc"
