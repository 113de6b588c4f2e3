// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "CustomColorPickerDialog.h"
#include "CustomMessageBox.h"
#include "GlyphWidgets.h"
#include "GroupHeader.h"
#include "LanguageRows.h"
#include "PickerPill.h"
#include "Pixels.h"
#include "Settings.h"
#include "SpotlightSettingsDialog.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <limits>
#include <memory>
#include <optional>

using Dialog = SpotlightSettingsDialog;
using Indices = QVector<int>;
Q_DECLARE_METATYPE(std::optional<Lang>)

namespace
{

const Dialog::Option kAll{"All kinds", 0xE5C3};
const QVector<Dialog::Option> kOptions{
    {"Apps & tools", 0xE30C}, {"Links", 0xE250}, {"Files", 0xE873}, {"Folders", 0xE2C7}};
const QString kSeed = QStringLiteral("#0284C7");

QByteArray settingsFile()
{
    QFile file(Theme::settingsFilePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Where the parts of the dialog stand, from its top.
int middleIn(const QWidget& dialog, const QWidget* part)
{
    return rectIn(dialog, part).center().y();
}

} // namespace

class SpotlightSettingsDialogTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void constants();
    void looksLikeEveryDialog();
    void rowsInTheirOrder_data();
    void rowsInTheirOrder();
    void rowLook();
    void groupLook();
    void hintLook();
    void buttonsLook();

    void languageButton_data();
    void languageButton();
    void themeButtons_data();
    void themeButtons();
    void oneThemeAtATime();
    void accentSwatch_data();
    void accentSwatch();
    void pickShowsTheChoice_data();
    void pickShowsTheChoice();
    void pickLook();
    void choiceIsPutInOrder_data();
    void choiceIsPutInOrder();
    void withoutOptions();

    void menuOffersEveryKind();
    void menuTogglesAndStaysOpen_data();
    void menuTogglesAndStaysOpen();
    void menuIsLeftWithoutAChoice_data();
    void menuIsLeftWithoutAChoice();
    void menuClicks();
    void languageMenu_data();
    void languageMenu();
    void colorPicker_data();
    void colorPicker();
    void colorPickerOpensOnThePendingColor();
    void windowsStayMeanwhile();

    void okStoresWhatHasChanged_data();
    void okStoresWhatHasChanged();
    void okStoresAllThree();
    void leavingStoresNothing_data();
    void leavingStoresNothing();
    void enterAccepts_data();
    void enterAccepts();
    void arrowsReachEveryControl();
    void arrowsChooseAmongThemes();
    void tabReachesEveryControl();

private:
    void open(const Indices& chosen = {}, const QVector<Dialog::Option>& options = kOptions);
    QPushButton* button(const char* name) const
    {
        return m_dialog->findChild<QPushButton*>(QString::fromLatin1(name));
    }
    QPushButton* buttonSaying(const QString& text) const;
    GlyphButton* pick() const;
    AccentSwatchButton* swatch() const { return m_dialog->findChild<AccentSwatchButton*>(); }
    QLabel* label(const QString& text) const;
    /// Opens the menu of kinds from its button, and works it.
    void openMenu(const MenuDriver::Action& act) const;
    QWidget* focused() const { return m_dialog->focusWidget(); }

    std::unique_ptr<QWidget> m_parent;
    std::unique_ptr<Dialog> m_dialog;
};

void SpotlightSettingsDialogTest::init()
{
    QFile::remove(Theme::settingsFilePath());
    Theme::forceTheme = 1;
    Theme::seedColorHex = kSeed;
    Tr::currentLang = Lang::En;
    m_parent = std::make_unique<QWidget>();
}

void SpotlightSettingsDialogTest::cleanup()
{
    m_dialog.reset();
    m_parent.reset();
}

void SpotlightSettingsDialogTest::open(const Indices& chosen,
                                       const QVector<Dialog::Option>& options)
{
    m_dialog = std::make_unique<Dialog>(m_parent.get(), options, chosen, kAll);
    m_dialog->open();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
}

QPushButton* SpotlightSettingsDialogTest::buttonSaying(const QString& text) const
{
    for (QPushButton* found : m_dialog->findChildren<QPushButton*>()) {
        if (found->text() == text)
            return found;
    }
    qFatal("no button \"%s\"", qPrintable(text));
}

GlyphButton* SpotlightSettingsDialogTest::pick() const
{
    for (GlyphButton* found : m_dialog->findChildren<GlyphButton*>()) {
        if (found->objectName() != QLatin1String("spotLangBtn"))
            return found;
    }
    qFatal("no button of the kinds");
}

QLabel* SpotlightSettingsDialogTest::label(const QString& text) const
{
    for (QLabel* found : m_dialog->findChildren<QLabel*>()) {
        if (found->text() == text)
            return found;
    }
    qFatal("no label \"%s\"", qPrintable(text));
}

void SpotlightSettingsDialogTest::openMenu(const MenuDriver::Action& act) const
{
    MenuDriver menu(act);
    QTest::mouseClick(pick(), Qt::LeftButton);
    QVERIFY(menu.hasClosed());
}

void SpotlightSettingsDialogTest::constants()
{
    QCOMPARE(Dialog::PillPadLeft, 34);
    QCOMPARE(Dialog::RowControlHeight, 36);
    QCOMPARE(Dialog::ThemeCount, 3);
    QCOMPARE(Dialog::MultiGlyph, 57682U);
}

void SpotlightSettingsDialogTest::looksLikeEveryDialog()
{
    open();
    verifyDialogLook(*m_dialog, *m_parent, 24, 80);
    QCOMPARE(m_dialog->windowTitle(), "Settings");
    QCOMPARE(m_dialog->layout()->sizeConstraint(), QLayout::SetFixedSize);
    const auto* card = m_dialog->findChild<QFrame*>("dialogBg");
    QCOMPARE(card->minimumWidth(), 440);
    QCOMPARE(card->width(), 440); // no text of English makes it wider
    QCOMPARE(card->layout()->spacing(), 12);
    QCOMPARE(card->layout()->contentsMargins(), QMargins());
    QCOMPARE(label("Settings")->styleSheet(), Theme::dialogTitleStyle(Theme::colors()));
    const int left = 10 + 1 + 24; // margin, line, padding
    QCOMPARE(rectIn(*m_dialog, label("Settings")).left(), left);
    QCOMPARE(rectIn(*m_dialog, label("Settings")).top(), left);
}

void SpotlightSettingsDialogTest::rowsInTheirOrder_data()
{
    addLanguageRows();
}

void SpotlightSettingsDialogTest::rowsInTheirOrder()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    open();
    QStringList texts;
    int bottom = 0;
    for (const char* key : {"settings.title", "settings.cat_display", "settings.sys.lang_title",
                            "settings.app.theme_title", "settings.app.accent_title",
                            "spotset.title", "spotset.default_label", "spotset.default_hint"}) {
        const QLabel* found = label(Tr::t(key));
        QCOMPARE(found->textFormat(), Qt::PlainText);
        const QRect place = rectIn(*m_dialog, found);
        QVERIFY2(place.top() >= bottom, key);
        bottom = place.bottom();
    }
    QCOMPARE(m_dialog->findChildren<QLabel*>().size(), 8);
    QVERIFY(middleIn(*m_dialog, buttonSaying(Tr::t("dialog.btn_ok"))) > bottom);
    // Each control in the row of its label, at the right edge of the card.
    const auto stands = [this](QWidget* control, const char* key) {
        const QRect place = rectIn(*m_dialog, control);
        QVERIFY2(qAbs(place.center().y() - middleIn(*m_dialog, label(Tr::t(key)))) <= 1, key);
        QCOMPARE(place.right(), m_dialog->width() - 1 - 35);
        QCOMPARE(place.height(), 36);
    };
    stands(button("spotLangBtn"), "settings.sys.lang_title");
    stands(button("spotThemeBtn2"), "settings.app.theme_title");
    stands(swatch(), "settings.app.accent_title");
    stands(pick(), "spotset.default_label");
}

void SpotlightSettingsDialogTest::rowLook()
{
    open();
    const ColorTokens c = Theme::colors();
    const QStringList names{"Language", "Theme", "Accent Color", "Default type"};
    const QList<QWidget*> controls{button("spotLangBtn"), button("spotThemeBtn0")->parentWidget(),
                                   swatch(), pick()};
    for (int i = 0; i < names.size(); ++i) {
        const QLabel* name = label(names.at(i));
        QCOMPARE(name->styleSheet(),
                 QStringLiteral("color: %1; font-size: 14px; font-weight: bold; border: none; "
                                "background: transparent;")
                     .arg(c.onSurface));
        const auto* row = qobject_cast<QHBoxLayout*>(name->parentWidget()->layout());
        QVERIFY(row);
        QCOMPARE(row->contentsMargins(), QMargins());
        QCOMPARE(row->spacing(), 12);
        QCOMPARE(row->count(), 2);
        QCOMPARE(row->stretch(0), 1);
        QCOMPARE(row->stretch(1), 0);
        QCOMPARE(row->itemAt(0)->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
        QCOMPARE(row->itemAt(1)->widget(), controls.at(i));
        QCOMPARE(name->buddy(), controls.at(i));
    }
}

void SpotlightSettingsDialogTest::groupLook()
{
    open();
    const auto groups = m_dialog->findChildren<GroupHeader*>();
    QCOMPARE(groups.size(), 2);
    const QStringList titles{"Display", "Search settings"};
    for (int i = 0; i < 2; ++i) {
        const GroupHeader* group = groups.at(i);
        QCOMPARE(group->findChild<QLabel*>()->text(), titles.at(i));
        QCOMPARE(group->layout()->contentsMargins(), QMargins(0, i == 0 ? 0 : 8, 0, 0));
        QCOMPARE(group->layout()->spacing(), 12);
        // The line ends where the controls do.
        QCOMPARE(rectIn(*m_dialog, group).right(), m_dialog->width() - 1 - 35);
    }
}

void SpotlightSettingsDialogTest::hintLook()
{
    open();
    const QLabel* hint = label("The types every search starts from. You can still change them per "
                               "search from the Filter button.");
    QVERIFY(hint->wordWrap());
    QCOMPARE(hint->styleSheet(), QStringLiteral("color: %1; font-size: 13px; border: none;")
                                     .arg(Theme::colors().onSurfaceVariant));
    QVERIFY(hint->height() >= hint->heightForWidth(hint->width()));
}

void SpotlightSettingsDialogTest::buttonsLook()
{
    open();
    const ColorTokens c = Theme::colors();
    const QPushButton* cancel = buttonSaying("Cancel");
    const QPushButton* ok = buttonSaying("OK");
    QCOMPARE(cancel->styleSheet(), Theme::actionBtnStyle(c, "transparent"));
    QCOMPARE(ok->styleSheet(), Theme::primaryBtnStyle(c));
    QVERIFY(ok->isDefault());
    QVERIFY(!cancel->isDefault());
    for (const QPushButton* found : {cancel, ok})
        QCOMPARE(found->cursor().shape(), Qt::PointingHandCursor);
    // On the right, with 12 px above them beside the spacing of the rows.
    const QRect okPlace = rectIn(*m_dialog, ok);
    QCOMPARE(okPlace.right(), m_dialog->width() - 1 - 35);
    QCOMPARE(okPlace.bottom(), m_dialog->height() - 1 - 35);
    QVERIFY(rectIn(*m_dialog, cancel).right() < okPlace.left());
    const QLabel* hint = label(Tr::t("spotset.default_hint"));
    QCOMPARE(okPlace.top() - rectIn(*m_dialog, hint).bottom() - 1, 24);
}

void SpotlightSettingsDialogTest::languageButton_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<QString>("text");
    QTest::newRow("en") << Lang::En << "English";
    QTest::newRow("id") << Lang::Id << "Bahasa Indonesia";
    QTest::newRow("es") << Lang::Es << QString::fromUtf8("Español");
    QTest::newRow("ja") << Lang::Ja << QString::fromUtf8("日本語");
}

void SpotlightSettingsDialogTest::languageButton()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    open();
    const QPushButton* lit = button("spotLangBtn");
    QTEST(lit->text(), "text");
    QCOMPARE(lit->height(), 36);
    QCOMPARE(lit->cursor().shape(), Qt::PointingHandCursor);
    const ColorTokens c = Theme::colors();
    QCOMPARE(
        lit->styleSheet(),
        QStringLiteral("QPushButton#spotLangBtn { background-color: %1; border: none; "
                       "border-radius: 18px; padding: 6px 14px 6px 14px; color: %2; "
                       "font-weight: bold; letter-spacing: 0.3px; outline: 0; "
                       "min-width: 140px; text-align: left; }"
                       "QPushButton#spotLangBtn:hover { background-color: %3; color: %4; }"
                       "QPushButton#spotLangBtn:focus { background-color: %3; color: %4; "
                       "outline: 0; }")
            .arg(Theme::fieldIdleBg(c), c.onSurface, c.primaryContainer, c.onPrimaryContainer));
    QVERIFY(lit->width() >= 140 + 2 * 14);
}

void SpotlightSettingsDialogTest::themeButtons_data()
{
    QTest::addColumn<int>("theme");
    QTest::newRow("as the desktop") << 0;
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
    QTest::newRow("unknown") << 3; // none is checked
    QTest::newRow("below") << -1;
}

void SpotlightSettingsDialogTest::themeButtons()
{
    QFETCH(int, theme);
    Theme::forceTheme = theme;
    open();
    const ColorTokens c = Theme::colors();
    const QStringList texts{"Auto", "Light", "Dark"};
    for (int i = 0; i < 3; ++i) {
        const QString name = QStringLiteral("spotThemeBtn%1").arg(i);
        const auto* choice = m_dialog->findChild<QPushButton*>(name);
        QVERIFY(choice);
        QCOMPARE(choice->text(), texts.at(i));
        QVERIFY(choice->isCheckable());
        QCOMPARE(choice->isChecked(), i == theme);
        QCOMPARE(choice->height(), 36);
        QCOMPARE(choice->cursor().shape(), Qt::PointingHandCursor);
        const QString selector = QStringLiteral("QPushButton#") + name;
        QCOMPARE(choice->styleSheet(),
                 QStringLiteral("%1 { background-color: %2; color: %3; border: 2px solid "
                                "transparent; border-radius: 18px; padding: 0 14px; "
                                "font-size: 12px; font-weight: bold; outline: 0; }")
                         .arg(selector, Theme::fieldIdleBg(c), c.onSurface) +
                     Theme::choiceBtnStates(c, selector, Theme::fieldIdleBg(c)));
    }
    const QLayout* row = button("spotThemeBtn0")->parentWidget()->layout();
    QCOMPARE(row->contentsMargins(), QMargins());
    QCOMPARE(row->spacing(), 8);
    m_dialog->accept(); // what is unknown stays as it is
    QVERIFY(!m_dialog->appearanceChanged());
    QCOMPARE(Theme::forceTheme, theme);
}

void SpotlightSettingsDialogTest::oneThemeAtATime()
{
    open();
    QTest::mouseClick(button("spotThemeBtn2"), Qt::LeftButton);
    QVERIFY(!button("spotThemeBtn1")->isChecked());
    QVERIFY(button("spotThemeBtn2")->isChecked());
    QTest::mouseClick(button("spotThemeBtn2"), Qt::LeftButton);
    QVERIFY(button("spotThemeBtn2")->isChecked());
    QTest::mouseClick(button("spotThemeBtn0"), Qt::LeftButton);
    QVERIFY(!button("spotThemeBtn2")->isChecked());
    QCOMPARE(Theme::forceTheme, 1); // pending
    m_dialog->accept();
    QCOMPARE(Theme::forceTheme, 0);
}

void SpotlightSettingsDialogTest::accentSwatch_data()
{
    QTest::addColumn<QString>("seed");
    QTest::newRow("code") << "#ff0000";
    QTest::newRow("word") << "dodgerblue";
    QTest::newRow("no colour at all") << "nothing";
    QTest::newRow("empty") << "";
}

void SpotlightSettingsDialogTest::accentSwatch()
{
    QFETCH(QString, seed);
    Theme::seedColorHex = seed;
    open();
    AccentSwatchButton expected(QColor::fromString(seed), QColor(Theme::colors().outline), nullptr);
    QCOMPARE(Pixels::imageOf(*swatch()), Pixels::imageOf(expected));
}

void SpotlightSettingsDialogTest::pickShowsTheChoice_data()
{
    QTest::addColumn<Indices>("chosen");
    QTest::addColumn<QString>("text");
    QTest::addColumn<uint>("glyph");
    QTest::newRow("all") << Indices{} << "All kinds" << 0xE5C3U;
    QTest::newRow("the first") << Indices{0} << "Apps && tools" << 0xE30CU; // one ampersand
    QTest::newRow("the last") << Indices{3} << "Folders" << 0xE2C7U;
    QTest::newRow("two") << Indices{0, 3} << "2 types" << 57682U;
    QTest::newRow("three") << Indices{0, 1, 3} << "3 types" << 57682U;
    QTest::newRow("every one") << Indices{0, 1, 2, 3} << "4 types" << 57682U;
    QTest::newRow("one of them given twice") << Indices{3, 3} << "Folders" << 0xE2C7U;
}

void SpotlightSettingsDialogTest::pickShowsTheChoice()
{
    QFETCH(Indices, chosen);
    QFETCH(QString, text);
    QFETCH(uint, glyph);
    open(chosen);
    QCOMPARE(pick()->text(), text);
    PickerPill expected(pick()->parentWidget());
    expected.setLabel(pick()->label());
    expected.setStyleSheet(pick()->styleSheet());
    expected.setGlyphLeftInset(22.0);
    expected.setGlyph(glyph, 15, Theme::colors().onSurface);
    expected.resize(pick()->size());
    QCOMPARE(Pixels::imageOf(*pick()), Pixels::imageOf(expected));
}

void SpotlightSettingsDialogTest::pickLook()
{
    open();
    QCOMPARE(pick()->height(), 36);
    QCOMPARE(pick()->cursor().shape(), Qt::PointingHandCursor);
    const ColorTokens c = Theme::colors();
    QCOMPARE(
        pick()->styleSheet(),
        QStringLiteral("QPushButton { background-color: %1; border: none; "
                       "border-radius: 18px; padding: 6px 14px 6px 34px; color: %2; "
                       "font-weight: bold; letter-spacing: 0.3px; outline: 0; "
                       "min-width: 140px; text-align: left; }"
                       "QPushButton:hover { background-color: %3; color: %4; }"
                       "QPushButton:focus { background-color: %3; color: %4; outline: 0; }")
            .arg(Theme::fieldIdleBg(c), c.onSurface, c.primaryContainer, c.onPrimaryContainer));
    QVERIFY(pick()->width() >= 140 + 34 + 14);
}

void SpotlightSettingsDialogTest::choiceIsPutInOrder_data()
{
    QTest::addColumn<Indices>("chosen");
    QTest::addColumn<Indices>("kept");
    QTest::newRow("none") << Indices{} << Indices{};
    QTest::newRow("in order") << Indices{0, 2} << Indices{0, 2};
    QTest::newRow("out of order") << Indices{3, 0, 2} << Indices{0, 2, 3};
    QTest::newRow("twice") << Indices{2, 1, 2, 1} << Indices{1, 2};
    QTest::newRow("below") << Indices{-1, 1} << Indices{1};
    QTest::newRow("just above") << Indices{4, 3} << Indices{3};
    QTest::newRow("far off") << Indices{std::numeric_limits<int>::max(),
                                        std::numeric_limits<int>::min()}
                             << Indices{};
}

void SpotlightSettingsDialogTest::choiceIsPutInOrder()
{
    QFETCH(Indices, chosen);
    open(chosen);
    QTEST(m_dialog->chosenIndices(), "kept");
    m_dialog->accept();
    QTEST(m_dialog->chosenIndices(), "kept");
}

void SpotlightSettingsDialogTest::withoutOptions()
{
    open({0, 1}, {});
    QCOMPARE(m_dialog->chosenIndices(), Indices());
    QCOMPARE(pick()->text(), QString());
    int rows = 0;
    openMenu([&rows](QMenu* menu) {
        rows = int(menu->actions().size());
        QTest::keyClick(menu, Qt::Key_Up);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QCOMPARE(rows, 3); // all, a line, done
    QCOMPARE(pick()->text(), QString());
}

void SpotlightSettingsDialogTest::menuOffersEveryKind()
{
    open({1});
    QStringList texts;
    QPoint corner;
    int width = 0;
    openMenu([&](QMenu* menu) {
        for (const QAction* action : menu->actions())
            texts.append(action->isSeparator() ? "-" : action->text());
        corner = menu->pos();
        width = menu->width();
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QCOMPARE(texts,
             QStringList({"All kinds", "Apps && tools", "Links", "Files", "Folders", "-", "Done"}));
    QCOMPARE(corner, pick()->mapToGlobal(QPoint(0, 36 + 4)));
    QVERIFY(width >= pick()->width());
    QCOMPARE(focused(), pick());
}

void SpotlightSettingsDialogTest::menuTogglesAndStaysOpen_data()
{
    QTest::addColumn<Indices>("before");
    QTest::addColumn<QList<int>>("toggled"); // rows, that of all kinds being 0
    QTest::addColumn<QList<bool>>("circles");
    QTest::addColumn<Indices>("after");
    using Rows = QList<int>;
    using Circles = QList<bool>;
    QTest::newRow("nothing, of all")
        << Indices{} << Rows{} << Circles{true, false, false, false, false} << Indices{};
    QTest::newRow("one of all") << Indices{} << Rows{3} << Circles{false, false, false, true, false}
                                << Indices{2};
    QTest::newRow("sorted") << Indices{} << Rows{4, 1, 3} << Circles{false, true, false, true, true}
                            << Indices{0, 2, 3};
    QTest::newRow("there and back")
        << Indices{} << Rows{3, 3} << Circles{true, false, false, false, false} << Indices{};
    QTest::newRow("the only one") << Indices{1} << Rows{2}
                                  << Circles{true, false, false, false, false} << Indices{};
    QTest::newRow("all clear the others")
        << Indices{0, 2} << Rows{0} << Circles{true, false, false, false, false} << Indices{};
    QTest::newRow("all of all") << Indices{} << Rows{0, 0}
                                << Circles{true, false, false, false, false} << Indices{};
    QTest::newRow("another one clears all")
        << Indices{0, 2} << Rows{0, 4} << Circles{false, false, false, false, true} << Indices{3};
    QTest::newRow("every one is not all")
        << Indices{0, 1, 2} << Rows{4} << Circles{false, true, true, true, true}
        << Indices{0, 1, 2, 3};
}

/// Which circles of a menu's check rows are filled: the dot is in the colour of the accent.
static QList<bool> circlesOf(QMenu* menu, int rows)
{
    const QImage image = menu->grab().toImage();
    QList<bool> circles;
    for (int row = 0; row < rows; ++row) {
        const QRect place = menu->actionGeometry(menu->actions().at(row));
        // Left of the tick and right of the ring.
        const QPoint inCircle(place.left() + 25 - 6, place.center().y());
        circles.append(image.pixelColor(inCircle) == QColor(Theme::colors().primary));
    }
    return circles;
}

void SpotlightSettingsDialogTest::menuTogglesAndStaysOpen()
{
    QFETCH(Indices, before);
    QFETCH(QList<int>, toggled);
    QFETCH(QList<bool>, circles);
    QFETCH(Indices, after);
    const QList<Qt::Key> keys{Qt::Key_Return, Qt::Key_Space, Qt::Key_Enter};
    open(before);
    const QString shown = pick()->text();
    openMenu([&](QMenu* menu) {
        int key = 0;
        for (const int row : toggled) {
            menu->setActiveAction(menu->actions().at(row));
            QTest::keyClick(menu, keys.at(key++ % 3));
            QVERIFY(menu->isVisible());
        }
        menu->setActiveAction(nullptr);
        QCOMPARE(circlesOf(menu, 5), circles);
        QCOMPARE(m_dialog->chosenIndices(), before); // nothing is done before the last row
        QCOMPARE(pick()->text(), shown);
        QTest::keyClick(menu, Qt::Key_Up);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QCOMPARE(m_dialog->chosenIndices(), after);
    const QString expected = after.isEmpty()     ? kAll.label
                             : after.size() == 1 ? kOptions.at(after.constFirst()).label
                                                 : QStringLiteral("%1 types").arg(after.size());
    QCOMPARE(pick()->label(), expected);
    QCOMPARE(focused(), pick());
}

void SpotlightSettingsDialogTest::menuIsLeftWithoutAChoice_data()
{
    QTest::addColumn<int>("key"); // 0 for a click outside
    QTest::newRow("Esc") << int(Qt::Key_Escape);
    QTest::newRow("Backspace") << int(Qt::Key_Backspace);
    QTest::newRow("click outside") << 0;
}

void SpotlightSettingsDialogTest::menuIsLeftWithoutAChoice()
{
    QFETCH(int, key);
    open({1});
    openMenu([key](QMenu* menu) {
        menu->setActiveAction(menu->actions().at(1));
        QTest::keyClick(menu, Qt::Key_Space);
        if (key != 0)
            QTest::keyClick(menu, Qt::Key(key));
        else
            clickAt(menu, menu->geometry().topLeft() - QPoint(20, 20));
    });
    QCOMPARE(m_dialog->chosenIndices(), Indices{1});
    QCOMPARE(pick()->text(), "Links");
    QCOMPARE(focused(), pick());
    QVERIFY(m_dialog->isVisible());
}

void SpotlightSettingsDialogTest::menuClicks()
{
    open();
    openMenu([](QMenu* menu) {
        const auto click = [menu](int row) {
            clickAt(menu,
                    menu->mapToGlobal(menu->actionGeometry(menu->actions().at(row)).center()));
        };
        click(2);
        QVERIFY(menu->isVisible());
        click(4);
        QVERIFY(menu->isVisible());
        click(6); // done
    });
    QCOMPARE(m_dialog->chosenIndices(), (Indices{1, 3}));
}

void SpotlightSettingsDialogTest::languageMenu_data()
{
    QTest::addColumn<QList<Qt::Key>>("keys");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isChanged");
    using Keys = QList<Qt::Key>;
    QTest::newRow("another") << Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}
                             << "Bahasa Indonesia" << true;
    QTest::newRow("the same") << Keys{Qt::Key_Down, Qt::Key_Return} << "English" << false;
    QTest::newRow("none") << Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Escape} << "English" << false;
    QTest::newRow("row that cancels") << Keys{Qt::Key_Up, Qt::Key_Return} << "English" << false;
}

void SpotlightSettingsDialogTest::languageMenu()
{
    QFETCH(QList<Qt::Key>, keys);
    open();
    MenuDriver menu([&keys](QMenu* shown) {
        for (const Qt::Key key : keys)
            QTest::keyClick(shown, key);
    });
    QTest::mouseClick(button("spotLangBtn"), Qt::LeftButton);
    QVERIFY(menu.hasClosed());
    QTEST(button("spotLangBtn")->text(), "text");
    QCOMPARE(focused(), button("spotLangBtn"));
    QCOMPARE(Tr::currentLang, Lang::En); // pending
    QCOMPARE(settingsFile(), QByteArray());
    m_dialog->accept();
    QTEST(m_dialog->appearanceChanged(), "isChanged");
    QTEST(Tr::nameFor(Tr::currentLang), "text");
}

void SpotlightSettingsDialogTest::colorPicker_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("seed"); // after OK
    QTest::addColumn<QString>("told");
    const QString example = QStringLiteral("Please enter a valid Hex code (e.g. #FF0000).");
    QTest::newRow("code") << "#ff0000" << Qt::Key_Return << "#ff0000"
                          << "";
    QTest::newRow("word") << "dodgerblue" << Qt::Key_Return << "dodgerblue"
                          << "";
    QTest::newRow("cancelled") << "#ff0000" << Qt::Key_Escape << kSeed << "";
    QTest::newRow("no colour") << "#ff000" << Qt::Key_Return << kSeed << example;
    QTest::newRow("empty") << "" << Qt::Key_Return << kSeed << example;
    QTest::newRow("other case") << "#0284c7" << Qt::Key_Return << kSeed << "";
}

void SpotlightSettingsDialogTest::colorPicker()
{
    QFETCH(QString, typed);
    QFETCH(Qt::Key, key);
    QFETCH(QString, seed);
    open();
    QString told;
    const ModalDriver driver([&](QWidget* modal) {
        if (qobject_cast<CustomMessageBox*>(modal)) {
            QCOMPARE(modal->parentWidget(), m_dialog.get());
            QCOMPARE(modal->findChildren<QLabel*>().at(0)->text(), "Invalid Color");
            told = modal->findChildren<QLabel*>().at(1)->text();
            pressKey(*modal, Qt::Key_Return);
        } else if (qobject_cast<CustomColorPickerDialog*>(modal)) {
            QCOMPARE(modal->parentWidget(), m_dialog.get());
            modal->findChild<QLineEdit*>()->setText(typed);
            QTest::keyClick(modal->findChild<QLineEdit*>(), key);
        }
    });
    QTest::mouseClick(swatch(), Qt::LeftButton);
    QTEST(told, "told");
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(focused(), swatch());
    QCOMPARE(Theme::seedColorHex, kSeed); // pending
    AccentSwatchButton expected(QColor::fromString(seed), QColor(Theme::colors().outline), nullptr);
    button("spotLangBtn")->setFocus(); // the swatch with the focus shows a pencil
    QCOMPARE(Pixels::imageOf(*swatch()), Pixels::imageOf(expected));
    m_dialog->accept();
    QCOMPARE(Theme::seedColorHex, seed);
    QCOMPARE(m_dialog->appearanceChanged(), seed != kSeed);
}

void SpotlightSettingsDialogTest::colorPickerOpensOnThePendingColor()
{
    open();
    QStringList texts;
    const ModalDriver driver([&texts](QWidget* modal) {
        if (!qobject_cast<CustomColorPickerDialog*>(modal))
            return;
        auto* hex = modal->findChild<QLineEdit*>();
        texts.append(hex->text());
        hex->setText(QStringLiteral("#abcdef"));
        QTest::keyClick(hex, Qt::Key_Return);
    });
    QTest::mouseClick(swatch(), Qt::LeftButton);
    QTest::mouseClick(swatch(), Qt::LeftButton);
    QCOMPARE(texts, QStringList({kSeed, "#abcdef"}));
}

void SpotlightSettingsDialogTest::windowsStayMeanwhile()
{
    open();
    const auto isHeldIn = [this](QWidget* opener) {
        bool isHeld = false;
        {
            MenuDriver menu([&isHeld](QMenu* shown) {
                isHeld = g_blockAutoQuit;
                shown->close();
            });
            const ModalDriver driver([&isHeld](QWidget* modal) {
                if (!qobject_cast<CustomColorPickerDialog*>(modal))
                    return;
                isHeld = g_blockAutoQuit;
                modal->close();
            });
            QTest::mouseClick(opener, Qt::LeftButton);
        }
        return isHeld && g_blockAutoQuit; // for a while after its end, too
    };
    for (QWidget* opener : {static_cast<QWidget*>(button("spotLangBtn")),
                            static_cast<QWidget*>(swatch()), static_cast<QWidget*>(pick())}) {
        QTRY_VERIFY(!g_blockAutoQuit);
        QVERIFY(isHeldIn(opener));
    }
}

void SpotlightSettingsDialogTest::okStoresWhatHasChanged_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QString>("seed");
    QTest::addColumn<std::optional<Lang>>("lang");
    QTest::addColumn<QString>("key"); // the only one that is stored; empty for none
    QTest::addColumn<QString>("value");
    QTest::newRow("nothing touched") << -1 << "" << std::optional<Lang>() << ""
                                     << "";
    QTest::newRow("what is there already") << 1 << kSeed << std::optional(Lang::En) << ""
                                           << "";
    QTest::newRow("colour in another case") << -1 << kSeed.toLower() << std::optional<Lang>() << ""
                                            << "";
    QTest::newRow("theme") << 2 << "" << std::optional<Lang>() << "Theme/ForceTheme"
                           << "2";
    QTest::newRow("theme of the desktop") << 0 << "" << std::optional<Lang>() << "Theme/ForceTheme"
                                          << "0";
    QTest::newRow("colour") << -1 << "#ff0000" << std::optional<Lang>() << "Theme/SeedColor"
                            << "#ff0000";
    QTest::newRow("language") << -1 << "" << std::optional(Lang::Ja) << "Language/Code"
                              << "ja";
}

void SpotlightSettingsDialogTest::okStoresWhatHasChanged()
{
    QFETCH(int, theme);
    QFETCH(QString, seed);
    QFETCH(std::optional<Lang>, lang);
    QFETCH(QString, key);
    QFETCH(QString, value);
    open();
    if (theme >= 0)
        QTest::mouseClick(button(qPrintable(QStringLiteral("spotThemeBtn%1").arg(theme))),
                          Qt::LeftButton);
    const ModalDriver picker([&seed](QWidget* modal) {
        if (!qobject_cast<CustomColorPickerDialog*>(modal))
            return;
        modal->findChild<QLineEdit*>()->setText(seed);
        QTest::keyClick(modal->findChild<QLineEdit*>(), Qt::Key_Return);
    });
    if (!seed.isEmpty())
        QTest::mouseClick(swatch(), Qt::LeftButton);
    MenuDriver menu([&lang](QMenu* shown) {
        for (int i = 0; i <= int(lang.value_or(Lang::En)); ++i)
            QTest::keyClick(shown, Qt::Key_Down);
        QTest::keyClick(shown, Qt::Key_Return);
    });
    if (lang)
        QTest::mouseClick(button("spotLangBtn"), Qt::LeftButton);
    QVERIFY(!m_dialog->appearanceChanged());
    QCOMPARE(settingsFile(), QByteArray());
    QTest::mouseClick(buttonSaying("OK"), Qt::LeftButton);
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->appearanceChanged(), !key.isEmpty());
    for (const char* stored : {"Theme/ForceTheme", "Theme/SeedColor", "Language/Code"})
        QCOMPARE(Settings::contains(stored), key == QLatin1String(stored));
    if (key.isEmpty())
        QCOMPARE(settingsFile(), QByteArray());
    else
        QCOMPARE(Settings::value(key).toString(), value);
}

void SpotlightSettingsDialogTest::okStoresAllThree()
{
    open();
    button("spotThemeBtn0")->click();
    const ModalDriver picker([](QWidget* modal) {
        if (!qobject_cast<CustomColorPickerDialog*>(modal))
            return;
        modal->findChild<QLineEdit*>()->setText(QStringLiteral("#123456"));
        QTest::keyClick(modal->findChild<QLineEdit*>(), Qt::Key_Return);
    });
    swatch()->click();
    MenuDriver menu([](QMenu* shown) {
        shown->setActiveAction(shown->actions().at(2));
        QTest::keyClick(shown, Qt::Key_Return);
    });
    button("spotLangBtn")->click();
    m_dialog->accept();
    QVERIFY(m_dialog->appearanceChanged());
    QCOMPARE(Theme::forceTheme, 0);
    QCOMPARE(Theme::seedColorHex, "#123456");
    QCOMPARE(Tr::currentLang, Lang::Es);
    QCOMPARE(Settings::value("Theme/ForceTheme").toInt(), 0);
    QCOMPARE(Settings::value("Theme/SeedColor").toString(), "#123456");
    QCOMPARE(Settings::value("Language/Code").toString(), "es");
    QVERIFY(!Settings::contains("Spotlight/DefaultScope")); // that is not the dialog's to store
}

void SpotlightSettingsDialogTest::leavingStoresNothing_data()
{
    QTest::addColumn<int>("key"); // 0 for the button
    QTest::newRow("Esc") << int(Qt::Key_Escape);
    QTest::newRow("Backspace") << int(Qt::Key_Backspace);
    QTest::newRow("Cancel") << 0;
}

void SpotlightSettingsDialogTest::leavingStoresNothing()
{
    QFETCH(int, key);
    open({1});
    button("spotThemeBtn2")->click();
    MenuDriver menu([](QMenu* shown) {
        shown->setActiveAction(shown->actions().at(3));
        QTest::keyClick(shown, Qt::Key_Return);
    });
    button("spotLangBtn")->click();
    QCOMPARE(button("spotLangBtn")->text(), QString::fromUtf8("日本語"));
    if (key != 0)
        pressKey(*m_dialog, Qt::Key(key));
    else
        QTest::mouseClick(buttonSaying("Cancel"), Qt::LeftButton);
    QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(!m_dialog->appearanceChanged());
    QCOMPARE(Theme::forceTheme, 1);
    QCOMPARE(Tr::currentLang, Lang::En);
    QCOMPARE(settingsFile(), QByteArray());
}

void SpotlightSettingsDialogTest::enterAccepts_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void SpotlightSettingsDialogTest::enterAccepts()
{
    QFETCH(Qt::Key, key);
    open();
    button("spotThemeBtn2")->click();
    buttonSaying("OK")->setFocus();
    pressKey(*m_dialog, key);
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QCOMPARE(Theme::forceTheme, 2);
}

void SpotlightSettingsDialogTest::arrowsReachEveryControl()
{
    open();
    QCOMPARE(focused(), buttonSaying("OK")); // at the start
    const QList<QWidget*> order{button("spotLangBtn"),  button("spotThemeBtn1"), swatch(), pick(),
                                buttonSaying("Cancel"), buttonSaying("OK")};
    for (int i = 0; i < order.size(); ++i) {
        pressKey(*m_dialog, Qt::Key_Down);
        QCOMPARE(focused(), order.at(i));
    }
    for (auto i = order.size() - 2; i >= 0; --i) {
        pressKey(*m_dialog, Qt::Key_Up);
        QCOMPARE(focused(), order.at(i));
    }
    QVERIFY(button("spotThemeBtn1")->isChecked()); // passing by chooses nothing
}

void SpotlightSettingsDialogTest::arrowsChooseAmongThemes()
{
    open();
    button("spotThemeBtn1")->setFocus();
    pressKey(*m_dialog, Qt::Key_Right);
    QVERIFY(button("spotThemeBtn2")->isChecked());
    QCOMPARE(focused(), button("spotThemeBtn2"));
    pressKey(*m_dialog, Qt::Key_Left);
    pressKey(*m_dialog, Qt::Key_Left);
    QVERIFY(button("spotThemeBtn0")->isChecked());
    pressKey(*m_dialog, Qt::Key_Down);
    QCOMPARE(focused(), swatch());
    m_dialog->accept();
    QCOMPARE(Theme::forceTheme, 0);
}

void SpotlightSettingsDialogTest::tabReachesEveryControl()
{
    open();
    const QList<QWidget*> order{button("spotLangBtn"),  button("spotThemeBtn1"), swatch(), pick(),
                                buttonSaying("Cancel"), buttonSaying("OK")};
    for (QWidget* next : order) {
        pressKey(*m_dialog, Qt::Key_Tab);
        QCOMPARE(focused(), next);
    }
}

QTEST_MAIN(SpotlightSettingsDialogTest)
#include "tst_spotlightsettingsdialog.moc"
