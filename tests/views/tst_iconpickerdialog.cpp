// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "GlyphWidgets.h"
#include "IconPickerDialog.h"
#include "Localization.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QFileDialog>
#include <QFrame>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <memory>

namespace
{

constexpr int kIconCount = 15;

// Positions of the widgets that take the focus, in the tables of keys.
constexpr int kCancel = 100;
constexpr int kDefault = 101;
constexpr int kBrowse = 102;

constexpr int kOpen = -1; ///< result of a dialog that has not ended

} // namespace

class IconPickerDialogTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void looksLikeEveryDialog();
    void hasItsExactSize();
    void layoutFollowsTheMeasures();
    void texts();
    void palette();
    void namesForScreenReaders();

    void startsOnTheSelectedGlyph_data();
    void startsOnTheSelectedGlyph();
    void clickChoosesAtOnce();
    void defaultMeansNoIcon();
    void cancelChoosesNothing();

    void keysMoveTheFocus_data();
    void keysMoveTheFocus();
    void enterChoosesTheIcon_data();
    void enterChoosesTheIcon();
    void spaceClicksWhenReleased();
    void enterClicksTheButtons_data();
    void enterClicksTheButtons();
    void backKeysReject_data();
    void backKeysReject();

    void browseAsksForAnImage();
    void browsedFileIsTheChoice_data();
    void browsedFileIsTheChoice();
    void cancelledBrowsingKeepsTheDialog();
    void browsingKeepsWindowsOpen();

private:
    void open(const QString& iconPath = QString());
    QList<GlyphButton*> icons() const { return m_dialog->findChildren<GlyphButton*>(); }
    QPushButton* button(const QString& text) const;
    QWidget* at(int position) const;

    std::unique_ptr<IconPickerDialog> m_dialog;
};

void IconPickerDialogTest::initTestCase()
{
    // The desktop's own file dialog would be nobody's to answer.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void IconPickerDialogTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
}

void IconPickerDialogTest::cleanup()
{
    m_dialog.reset();
}

void IconPickerDialogTest::open(const QString& iconPath)
{
    m_dialog = std::make_unique<IconPickerDialog>(nullptr, iconPath);
    m_dialog->setResult(kOpen);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
}

QPushButton* IconPickerDialogTest::button(const QString& text) const
{
    for (QPushButton* candidate : m_dialog->findChildren<QPushButton*>()) {
        if (candidate->text() == text)
            return candidate;
    }
    return nullptr;
}

QWidget* IconPickerDialogTest::at(int position) const
{
    switch (position) {
    case kCancel:
        return button("Cancel");
    case kDefault:
        return button("Default");
    case kBrowse:
        return button("Browse");
    default:
        return icons().at(position);
    }
}

void IconPickerDialogTest::looksLikeEveryDialog()
{
    QWidget parent;
    const IconPickerDialog dialog(&parent, QString());
    verifyDialogLook(dialog, parent, 0, 60);
    QVERIFY(dialog.findChild<QFrame*>("iconPickerHeader")
                ->styleSheet()
                .startsWith("QFrame#iconPickerHeader { background-color: " + Theme::shellBg()));
}

void IconPickerDialogTest::hasItsExactSize()
{
    QCOMPARE(IconPickerDialog::IconCols, 5);
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        open();
        QCOMPARE(m_dialog->size(), QSize(340, 314));
        QCOMPARE(m_dialog->minimumSize(), QSize(340, 314));
        QCOMPARE(m_dialog->maximumSize(), QSize(340, 314));
    }
}

void IconPickerDialogTest::layoutFollowsTheMeasures()
{
    open();
    const int left = 10 + 1 + 24; // shadow margin, border, padding
    const QWidget& dialog = *m_dialog;
    QCOMPARE(rectIn(dialog, dialog.findChild<QFrame*>("iconPickerHeader")), QRect(11, 11, 318, 56));
    for (int i = 0; i < kIconCount; ++i) {
        QCOMPARE(icons().at(i)->size(), QSize(36, 36));
        QCOMPARE(rectIn(dialog, icons().at(i)).top(), 91 + i / 5 * 52);
        QCOMPARE(rectIn(dialog, icons().at(i)).left(), rectIn(dialog, icons().at(i % 5)).left());
    }
    const QRect cancel = rectIn(dialog, at(kCancel));
    const QRect standard = rectIn(dialog, at(kDefault));
    const QRect browse = rectIn(dialog, at(kBrowse));
    QCOMPARE(cancel.left(), left);
    QCOMPARE(standard.left() - cancel.right() - 1, 8);
    QCOMPARE(browse.left() - standard.right() - 1, 8);
    QCOMPARE(browse.right() + 1, 340 - left);
    for (const QRect& rect : {cancel, standard, browse}) {
        QCOMPARE(rect.top(), 243);
        QCOMPARE(rect.height(), 36);
        QVERIFY(qAbs(rect.width() - cancel.width()) <= 1);
    }
}

void IconPickerDialogTest::texts()
{
    open();
    QCOMPARE(m_dialog->findChild<QLabel*>()->text(), "Choose Icon");
    const ColorTokens c = Theme::colors();
    QCOMPARE(button("Cancel")->styleSheet(), Theme::actionBtnStyle(c, "transparent"));
    QCOMPARE(button("Default")->styleSheet(), Theme::actionBtnStyle(c, "transparent"));
    QCOMPARE(button("Browse")->styleSheet(), Theme::primaryBtnStyle(c));
    Tr::currentLang = Lang::Ja;
    open();
    QCOMPARE(m_dialog->findChild<QLabel*>()->text(), QString::fromUtf8("アイコンを選択"));
    QVERIFY(button(Tr::t("editor.btn_upload")));
}

void IconPickerDialogTest::palette()
{
    open();
    const QList<uint> expected{0xE2C7, 0xE40A, 0xE429, 0xF20E, 0xE943, 0xEA28, 0xE86F, 0xE684,
                               0xE66B, 0xF09A, 0xE250, 0xE30C, 0xE873, 0xEBBD, 0xF1C6};
    QList<uint> found;
    for (const GlyphButton* icon : icons()) {
        found.append(icon->property("glyph").toUInt());
        QCOMPARE(icon->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(icon->focusPolicy(), Qt::StrongFocus);
    }
    QCOMPARE(found, expected);
}

void IconPickerDialogTest::namesForScreenReaders()
{
    open();
    QCOMPARE(m_dialog->windowTitle(), "Choose Icon");
    QCOMPARE(icons().first()->accessibleName(), "Icon: 1");
    QCOMPARE(icons().last()->accessibleName(), "Icon: 15");
}

void IconPickerDialogTest::startsOnTheSelectedGlyph_data()
{
    QTest::addColumn<QString>("iconPath");
    QTest::addColumn<int>("focused");
    QTest::addColumn<int>("selected"); // -1: none
    QTest::newRow("no icon") << "" << 0 << -1;
    QTest::newRow("first") << "glyph:e2c7" << 0 << 0;
    QTest::newRow("last") << "glyph:f1c6" << 14 << 14;
    QTest::newRow("glyph that is not offered") << "glyph:e145" << 0 << -1;
    QTest::newRow("malformed glyph") << "glyph:folder" << 0 << -1;
    QTest::newRow("glyph zero") << "glyph:0" << 0 << -1;
    QTest::newRow("token in capitals") << "GLYPH:e86f" << 0 << -1;
    QTest::newRow("image") << "/some/image.png" << 0 << -1;
}

void IconPickerDialogTest::startsOnTheSelectedGlyph()
{
    QFETCH(QString, iconPath);
    QFETCH(int, focused);
    QFETCH(int, selected);
    open(iconPath);
    QCOMPARE(m_dialog->focusWidget(), icons().at(focused));
    for (int i = 0; i < kIconCount; ++i)
        QCOMPARE(icons().at(i)->styleSheet(),
                 Theme::iconChoiceStyle(Theme::colors(), i == selected));
}

void IconPickerDialogTest::clickChoosesAtOnce()
{
    open("glyph:e2c7");
    QTest::mouseClick(icons().at(3), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QCOMPARE(m_dialog->chosenIconPath(), "glyph:f20e");
}

void IconPickerDialogTest::defaultMeansNoIcon()
{
    open("glyph:e86f");
    QTest::mouseClick(button("Default"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QVERIFY(m_dialog->chosenIconPath().isEmpty());
}

void IconPickerDialogTest::cancelChoosesNothing()
{
    open("glyph:e86f");
    QTest::mouseClick(button("Cancel"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
}

void IconPickerDialogTest::keysMoveTheFocus_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("to");
    QTest::newRow("Left") << 8 << int(Qt::Key_Left) << 7;
    QTest::newRow("Right") << 8 << int(Qt::Key_Right) << 9;
    QTest::newRow("Left into the row above") << 10 << int(Qt::Key_Left) << 9;
    QTest::newRow("Right into the row below") << 9 << int(Qt::Key_Right) << 10;
    QTest::newRow("Left on the first") << 0 << int(Qt::Key_Left) << 0;
    QTest::newRow("Right on the last") << 14 << int(Qt::Key_Right) << 14;
    QTest::newRow("Up") << 12 << int(Qt::Key_Up) << 7;
    QTest::newRow("Up in the first row") << 4 << int(Qt::Key_Up) << 4;
    QTest::newRow("Up on the first") << 0 << int(Qt::Key_Up) << 0;
    QTest::newRow("Down") << 2 << int(Qt::Key_Down) << 7;
    QTest::newRow("Down to the last") << 9 << int(Qt::Key_Down) << 14;
    QTest::newRow("Down from the last row") << 10 << int(Qt::Key_Down) << kCancel;
    QTest::newRow("Down from the last") << 14 << int(Qt::Key_Down) << kCancel;
    QTest::newRow("Right on Cancel") << kCancel << int(Qt::Key_Right) << kDefault;
    QTest::newRow("Right on Default") << kDefault << int(Qt::Key_Right) << kBrowse;
    QTest::newRow("Right on Browse") << kBrowse << int(Qt::Key_Right) << kBrowse;
    QTest::newRow("Left on Browse") << kBrowse << int(Qt::Key_Left) << kDefault;
    QTest::newRow("Left on Default") << kDefault << int(Qt::Key_Left) << kCancel;
    QTest::newRow("Left on Cancel") << kCancel << int(Qt::Key_Left) << kCancel;
    QTest::newRow("Up from Cancel") << kCancel << int(Qt::Key_Up) << 14;
    QTest::newRow("Up from Default") << kDefault << int(Qt::Key_Up) << 14;
    QTest::newRow("Up from Browse") << kBrowse << int(Qt::Key_Up) << 14;
}

void IconPickerDialogTest::keysMoveTheFocus()
{
    QFETCH(int, from);
    QFETCH(int, key);
    QFETCH(int, to);
    open();
    at(from)->setFocus();
    pressKey(*m_dialog, static_cast<Qt::Key>(key));
    QCOMPARE(m_dialog->focusWidget(), at(to));
    QVERIFY(m_dialog->isVisible());
}

void IconPickerDialogTest::enterChoosesTheIcon_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void IconPickerDialogTest::enterChoosesTheIcon()
{
    QFETCH(int, key);
    open();
    icons().at(14)->setFocus();
    QTest::keyPress(m_dialog->focusWidget(), static_cast<Qt::Key>(key));
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->chosenIconPath(), "glyph:f1c6");
}

void IconPickerDialogTest::spaceClicksWhenReleased()
{
    open();
    icons().at(6)->setFocus();
    QTest::keyPress(m_dialog->focusWidget(), Qt::Key_Space);
    QVERIFY(icons().at(6)->isDown()); // a push button like any other
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), kOpen);
    QTest::keyRelease(m_dialog->focusWidget(), Qt::Key_Space);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->chosenIconPath(), "glyph:e86f");
}

void IconPickerDialogTest::enterClicksTheButtons_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("result");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        QTest::addRow("Cancel by %x", key) << kCancel << int(key) << int(QDialog::Rejected);
        QTest::addRow("Default by %x", key) << kDefault << int(key) << int(QDialog::Accepted);
    }
}

void IconPickerDialogTest::enterClicksTheButtons()
{
    QFETCH(int, position);
    QFETCH(int, key);
    open("glyph:e86f");
    at(position)->setFocus();
    pressKey(*m_dialog, static_cast<Qt::Key>(key));
    QTEST(m_dialog->result(), "result");
    QVERIFY(m_dialog->chosenIconPath().isEmpty());
}

void IconPickerDialogTest::backKeysReject_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("key");
    for (const int position : {0, 14, kCancel, kBrowse}) {
        QTest::addRow("Esc at %d", position) << position << int(Qt::Key_Escape);
        QTest::addRow("Backspace at %d", position) << position << int(Qt::Key_Backspace);
    }
}

void IconPickerDialogTest::backKeysReject()
{
    QFETCH(int, position);
    QFETCH(int, key);
    open("glyph:e86f");
    at(position)->setFocus();
    pressKey(*m_dialog, static_cast<Qt::Key>(key));
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
}

void IconPickerDialogTest::browseAsksForAnImage()
{
    open();
    QString caption;
    QStringList filters;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    QWidget* owner = nullptr;
    const ModalDriver driver([&](QWidget* modal) {
        auto* chooser = qobject_cast<QFileDialog*>(modal);
        QVERIFY(chooser);
        caption = chooser->windowTitle();
        filters = chooser->nameFilters();
        mode = chooser->fileMode();
        owner = chooser->parentWidget();
        chooser->reject();
    });
    at(kBrowse)->setFocus();
    pressKey(*m_dialog, Qt::Key_Return);
    QCOMPARE(driver.count(), 1);
    QCOMPARE(caption, "Choose Icon");
    QCOMPARE(filters, QStringList{"Images (*.png *.jpg *.jpeg *.ico)"});
    QCOMPARE(mode, QFileDialog::ExistingFile);
    QCOMPARE(owner, m_dialog.get());
}

void IconPickerDialogTest::browsedFileIsTheChoice_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("image name") << "icon.png";
    QTest::newRow("blank and no ASCII") << QString::fromUtf8("mi icono ñ.ico");
}

void IconPickerDialogTest::browsedFileIsTheChoice()
{
    QFETCH(QString, name);
    // Not an image, which nobody checks here.
    const QString path = TestHome::writeDataFile(name, "not an image");
    open("glyph:e86f");
    const ModalDriver driver([&path](QWidget* modal) {
        auto* fileName = modal->findChild<QLineEdit*>("fileNameEdit");
        QVERIFY(fileName);
        fileName->setText(path);
        QTest::keyClick(fileName, Qt::Key_Return);
    });
    QTest::mouseClick(button("Browse"), Qt::LeftButton);
    QCOMPARE(driver.count(), 1);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QCOMPARE(m_dialog->chosenIconPath(), path);
}

void IconPickerDialogTest::cancelledBrowsingKeepsTheDialog()
{
    open("glyph:e86f");
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Escape); });
    QTest::mouseClick(button("Browse"), Qt::LeftButton);
    QCOMPARE(driver.count(), 1);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), kOpen);
    QVERIFY(m_dialog->chosenIconPath().isEmpty());
}

void IconPickerDialogTest::browsingKeepsWindowsOpen()
{
    QTRY_VERIFY(!g_blockAutoQuit);
    open();
    QVERIFY(!g_blockAutoQuit); // the dialog itself leaves that to its caller
    bool isBlocked = false;
    const ModalDriver driver([&isBlocked](QWidget* modal) {
        isBlocked = g_blockAutoQuit;
        pressKey(*modal, Qt::Key_Escape);
    });
    QTest::mouseClick(button("Browse"), Qt::LeftButton);
    QVERIFY(isBlocked);
    QVERIFY(g_blockAutoQuit);
    QTRY_VERIFY(!g_blockAutoQuit);
}

QTEST_MAIN(IconPickerDialogTest)
#include "tst_iconpickerdialog.moc"
