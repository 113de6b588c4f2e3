// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomColorPickerDialog.h"
#include "HueSlider.h"
#include "Localization.h"
#include "Pixels.h"
#include "SvField.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace
{

constexpr int kOpen = -1; ///< result of a dialog that has not ended

/// Hue, saturation and value that the pickers show.
using Choice = QList<int>;

} // namespace

class CustomColorPickerDialogTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup() { m_dialog.reset(); }

    void looksLikeEveryDialog();
    void hasItsWidth();
    void layoutFollowsTheMeasures();
    void texts();
    void startsInTheText();

    void opensOn_data();
    void opensOn();
    void opensOnAnySeed_data();
    void opensOnAnySeed();

    void typedColorMovesThePickers_data();
    void typedColorMovesThePickers();
    void typedTextThatIsNoColor_data();
    void typedTextThatIsNoColor();
    void textIsBounded();
    void greyKeepsTheHue();
    void previewShowsTheColor_data();
    void previewShowsTheColor();

    void fieldWritesTheText();
    void barWritesTheText();
    void barIsFreeInTheGreyCorner();
    void mouseIsNeverCorrected();

    void savesWhatStandsThere_data();
    void savesWhatStandsThere();
    void cancelRejects();
    void returnInTheTextSaves_data();
    void returnInTheTextSaves();
    void backKeys_data();
    void backKeys();

private:
    void open(const QString& initialHex = QString());
    QPushButton* button(const QString& text) const;
    QLineEdit* hex() const { return m_dialog->findChild<QLineEdit*>("hexInput"); }
    SvField* field() const { return m_dialog->findChild<SvField*>(); }
    HueSlider* bar() const { return m_dialog->findChild<HueSlider*>(); }
    QFrame* preview() const { return m_dialog->findChild<QFrame*>("colorPreview"); }
    Choice choice() const;

    std::unique_ptr<CustomColorPickerDialog> m_dialog;
};

void CustomColorPickerDialogTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
    Theme::seedColorHex = "#0284c7";
}

void CustomColorPickerDialogTest::open(const QString& initialHex)
{
    m_dialog = std::make_unique<CustomColorPickerDialog>(nullptr, initialHex);
    m_dialog->setResult(kOpen);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    QTRY_VERIFY(hex()->hasFocus());
}

QPushButton* CustomColorPickerDialogTest::button(const QString& text) const
{
    for (QPushButton* candidate : m_dialog->findChildren<QPushButton*>()) {
        if (candidate->text() == text)
            return candidate;
    }
    return nullptr;
}

Choice CustomColorPickerDialogTest::choice() const
{
    // The two never differ.
    return bar()->hue() == field()->hue() ? Choice{field()->hue(), field()->sat(), field()->val()}
                                          : Choice{};
}

void CustomColorPickerDialogTest::looksLikeEveryDialog()
{
    QWidget parent;
    const CustomColorPickerDialog dialog(&parent, QString());
    verifyDialogLook(dialog, parent, 24, 60);
    QCOMPARE(dialog.windowTitle(), "Accent Color");
}

void CustomColorPickerDialogTest::hasItsWidth()
{
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        open();
        QCOMPARE(m_dialog->width(), 320);
        QCOMPARE(m_dialog->minimumSize(), m_dialog->maximumSize());
        QCOMPARE(m_dialog->size(), m_dialog->sizeHint());
    }
}

void CustomColorPickerDialogTest::layoutFollowsTheMeasures()
{
    open();
    const QWidget& dialog = *m_dialog;
    const int left = 10 + 1 + 24; // shadow margin, border, padding
    const QRect title = rectIn(dialog, dialog.findChildren<QLabel*>().at(0));
    const QRect area = rectIn(dialog, field());
    const QRect hues = rectIn(dialog, bar());
    const QRect label = rectIn(dialog, dialog.findChildren<QLabel*>().at(1));
    const QRect sample = rectIn(dialog, preview());
    const QRect text = rectIn(dialog, hex());
    const QRect cancel = rectIn(dialog, button("Cancel"));
    const QRect save = rectIn(dialog, button("Save"));
    for (const QRect& row : {title, area, hues, label, sample})
        QCOMPARE(row.left(), left);
    for (const QRect& row : {area, hues, text, save})
        QCOMPARE(row.right() + 1, 320 - left);
    QCOMPARE(area.height(), 150);
    QCOMPARE(area.top() - title.bottom() - 1, 12);
    QCOMPARE(hues.top() - area.bottom() - 1, 12);
    QCOMPARE(label.top() - hues.bottom() - 1, 12);
    QCOMPARE(text.top() - label.bottom() - 1, 12);
    QCOMPARE(sample.size(), QSize(28, 28));
    QVERIFY(qAbs(sample.center().y() - text.center().y()) <= 1);
    QCOMPARE(text.left() - sample.right() - 1, 8);
    QCOMPARE(save.top() - text.bottom() - 1, 24);
    QCOMPARE(cancel.top(), save.top());
    QVERIFY(cancel.right() < save.left());
    QVERIFY(cancel.left() > left);
}

void CustomColorPickerDialogTest::texts()
{
    open();
    const ColorTokens c = Theme::colors();
    const QList<QLabel*> labels = m_dialog->findChildren<QLabel*>();
    QCOMPARE(labels.at(0)->text(), "Accent Color");
    QCOMPARE(labels.at(0)->styleSheet(), Theme::dialogTitleStyle(c));
    QCOMPARE(labels.at(1)->text(), "Custom Hex Code:");
    QCOMPARE(labels.at(1)->styleSheet(), Theme::fieldLabelStyle(c));
    QCOMPARE(labels.at(1)->buddy(), hex());
    QCOMPARE(hex()->styleSheet(), Theme::fieldInputStyle(c));
    QCOMPARE(button("Cancel")->styleSheet(), Theme::actionBtnStyle(c, "transparent"));
    QCOMPARE(button("Save")->styleSheet(), Theme::primaryBtnStyle(c));
    for (const QPushButton* each : {button("Cancel"), button("Save")}) {
        QCOMPARE(each->height(), 36);
        QCOMPARE(each->cursor().shape(), Qt::PointingHandCursor);
        QVERIFY(!each->autoDefault());
        QVERIFY(!each->isDefault());
    }
    Tr::currentLang = Lang::Es;
    open();
    QCOMPARE(m_dialog->findChildren<QLabel*>().at(0)->text(),
             QString::fromUtf8("Color de énfasis"));
    QCOMPARE(m_dialog->findChildren<QLabel*>().at(1)->text(), "Custom Hex Code:");
    QVERIFY(button(Tr::t("dialog.btn_cancel")));
    QVERIFY(button(Tr::t("dialog.btn_save")));
}

void CustomColorPickerDialogTest::startsInTheText()
{
    open("#123456");
    QVERIFY(hex()->hasFocus());
    QCOMPARE(hex()->selectedText(), "#123456");
}

void CustomColorPickerDialogTest::opensOn_data()
{
    QTest::addColumn<QString>("initialHex");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Choice>("choice");
    const Choice seed{200, 252, 199};
    QTest::newRow("nothing: the seed") << ""
                                       << "#0284c7" << seed;
    QTest::newRow("no colour: the seed") << "no colour"
                                         << "#0284c7" << seed;
    QTest::newRow("half a code: the seed") << "#12"
                                           << "#0284c7" << seed;
    QTest::newRow("white") << "#ffffff"
                           << "#ffffff" << Choice{0, 0, 255};
    QTest::newRow("black") << "#000000"
                           << "#000000" << Choice{0, 0, 0};
    QTest::newRow("grey") << "#808080"
                          << "#808080" << Choice{0, 0, 128};
    QTest::newRow("red") << "#FF0000"
                         << "#FF0000" << Choice{0, 255, 255};
    QTest::newRow("short code") << "#0f0"
                                << "#0f0" << Choice{120, 255, 255};
    QTest::newRow("colour word") << "RoyalBlue"
                                 << "RoyalBlue" << Choice{225, 181, 225};
    QTest::newRow("with alpha") << "#80ff0000"
                                << "#80ff0000" << Choice{0, 255, 255};
}

void CustomColorPickerDialogTest::opensOn()
{
    QFETCH(QString, initialHex);
    open(initialHex);
    QTEST(hex()->text(), "text");
    QTEST(choice(), "choice");
    QTEST(m_dialog->getHex(), "text");
}

void CustomColorPickerDialogTest::opensOnAnySeed_data()
{
    QTest::addColumn<QString>("seed");
    QTest::newRow("empty") << "";
    QTest::newRow("no colour") << "not a colour";
    QTest::newRow("long") << QString(1'000'000, 'f');
    QTest::newRow("markup and a line feed") << "<b>&amp;\n</b>";
}

void CustomColorPickerDialogTest::opensOnAnySeed()
{
    QFETCH(QString, seed);
    Theme::seedColorHex = seed;
    open();
    QCOMPARE(m_dialog->width(), 320);
    QCOMPARE(choice(), (Choice{0, 255, 255})); // where the pickers are when nobody moves them
    QTest::keyClick(hex(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(hex(), "#00ff00");
    QCOMPARE(choice(), (Choice{120, 255, 255}));
}

void CustomColorPickerDialogTest::typedColorMovesThePickers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Choice>("expected");
    QTest::newRow("code") << "#336699" << Choice{210, 170, 153};
    QTest::newRow("code in capitals") << "#AABBCC" << Choice{210, 42, 204};
    QTest::newRow("short code") << "#f00" << Choice{0, 255, 255};
    QTest::newRow("word") << "lime" << Choice{120, 255, 255};
    QTest::newRow("blanks around it") << "  #00ff00 " << Choice{120, 255, 255};
    QTest::newRow("last hue") << "#ff0001" << Choice{359, 255, 255};
    QTest::newRow("white keeps the hue") << "#ffffff" << Choice{200, 0, 255};
    QTest::newRow("black keeps the hue") << "#000000" << Choice{200, 0, 0};
    QTest::newRow("transparent is black") << "transparent" << Choice{200, 0, 0};
}

void CustomColorPickerDialogTest::typedColorMovesThePickers()
{
    QFETCH(QString, text);
    open();
    const QSignalSpy fieldChanged(field(), &SvField::svChanged);
    const QSignalSpy barChanged(bar(), &HueSlider::hueChanged);
    hex()->clear();
    QTest::keyClicks(hex(), text);
    QTEST(choice(), "expected");
    QCOMPARE(hex()->text(), text); // what the user typed stays
    QCOMPARE(fieldChanged.count() + barChanged.count(), 0);
}

void CustomColorPickerDialogTest::typedTextThatIsNoColor_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("half a code") << "#0284c";
    QTest::newRow("a hash") << "#";
    QTest::newRow("letters that are no digits") << "#ggg000";
    QTest::newRow("code without its hash") << "0284c7";
    QTest::newRow("blanks") << "    ";
    QTest::newRow("a style") << "red; border: 9px solid green";
    QTest::newRow("the end of a rule") << "} QWidget { background: red";
    QTest::newRow("placeholder") << "%1%2";
    QTest::newRow("emoji") << QString::fromUtf8("🎨");
    QTest::newRow("right to left") << QString::fromUtf8("\u202Eabc");
    QTest::newRow("long") << QString(256, '#');
}

void CustomColorPickerDialogTest::typedTextThatIsNoColor()
{
    QFETCH(QString, text);
    open();
    hex()->setText("#336699");
    hex()->setText(text);
    QCOMPARE(choice(), (Choice{210, 170, 153}));
    QCOMPARE(hex()->text(), text);
    QCOMPARE(preview()->styleSheet(),
             "QFrame { background-color: transparent; border-radius: 14px; border: 1px solid " +
                 Theme::colors().outline + "; }");
    QCOMPARE(m_dialog->width(), 320);
}

void CustomColorPickerDialogTest::textIsBounded()
{
    Theme::seedColorHex = QString(1'000'000, 'f');
    open();
    QCOMPARE(hex()->text().size(), 256);
    hex()->setText(QString(1'000'000, '#'));
    QCOMPARE(hex()->text().size(), 256);
}

void CustomColorPickerDialogTest::greyKeepsTheHue()
{
    open("#0000ff");
    for (const char* grey : {"#ffffff", "#7f7f7f", "black", "#111"}) {
        hex()->setText(grey);
        QCOMPARE(bar()->hue(), 240);
        QCOMPARE(field()->hue(), 240);
        QCOMPARE(field()->sat(), 0);
    }
}

void CustomColorPickerDialogTest::previewShowsTheColor_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("code") << "#336699"
                          << "#336699";
    QTest::newRow("word") << "Gold"
                          << "#ffd700";
    QTest::newRow("short code") << "#fa0"
                                << "#ffaa00";
    QTest::newRow("alpha plays no part") << "#33123456"
                                         << "#123456";
    QTest::newRow("blanks around a code") << " #336699"
                                          << "transparent";
    QTest::newRow("half a code") << "#33669"
                                 << "transparent";
}

void CustomColorPickerDialogTest::previewShowsTheColor()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);
    open();
    QVERIFY(preview()->styleSheet().contains("background-color: #0284c7;"));
    hex()->setText(text);
    QCOMPARE(preview()->styleSheet(),
             QStringLiteral("QFrame { background-color: %1; border-radius: 14px; border: 1px solid "
                            "%2; }")
                 .arg(shown, Theme::colors().outline));
    if (shown != QLatin1String("transparent")) {
        const QImage image = Pixels::imageOf(*preview());
        QCOMPARE(image.pixelColor(14, 14), QColor(shown));
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white)); // a circle
    }
}

void CustomColorPickerDialogTest::fieldWritesTheText()
{
    open("#ff0000");
    const QPoint lowerLeft(0, field()->height() - 1);
    sendMouse(field(), QEvent::MouseButtonPress, field()->mapToGlobal(QPoint(0, 0)));
    QCOMPARE(hex()->text(), "#FFFFFF");
    sendMouse(field(), QEvent::MouseButtonPress, field()->mapToGlobal(QPoint(99999, -99999)));
    QCOMPARE(hex()->text(), "#FF0000");
    sendMouse(field(), QEvent::MouseMove, field()->mapToGlobal(lowerLeft));
    QCOMPARE(hex()->text(), "#000000");
    sendMouse(field(), QEvent::MouseMove, field()->mapToGlobal(QPoint(99999, 75)));
    QCOMPARE(field()->sat(), 255);
    QCOMPARE(hex()->text(), QColor::fromHsv(0, 255, field()->val()).name().toUpper());
    QVERIFY(preview()->styleSheet().contains(hex()->text().toLower()));
}

void CustomColorPickerDialogTest::barWritesTheText()
{
    open("#ff0000");
    sendMouse(bar(), QEvent::MouseButtonPress, bar()->mapToGlobal(QPoint(99999, 5)));
    QCOMPARE(choice(), (Choice{359, 255, 255}));
    QCOMPARE(hex()->text(), "#FF0004");
    sendMouse(bar(), QEvent::MouseMove, bar()->mapToGlobal(QPoint(bar()->width() / 2, 5)));
    QCOMPARE(field()->hue(), bar()->hue());
    QCOMPARE(hex()->text(), QColor::fromHsv(bar()->hue(), 255, 255).name().toUpper());
}

void CustomColorPickerDialogTest::barIsFreeInTheGreyCorner()
{
    open("white");
    sendMouse(bar(), QEvent::MouseButtonPress, bar()->mapToGlobal(QPoint(99999, 5)));
    QCOMPARE(choice(), (Choice{359, 0, 255}));
    QCOMPARE(hex()->text(), "#FFFFFF");
    sendMouse(bar(), QEvent::MouseMove, bar()->mapToGlobal(QPoint(0, 5)));
    QCOMPARE(choice(), (Choice{0, 0, 255}));
}

void CustomColorPickerDialogTest::mouseIsNeverCorrected()
{
    open("#ff0000");
    sendMouse(bar(), QEvent::MouseButtonPress, bar()->mapToGlobal(QPoint(101, 5)));
    const int hue = bar()->hue();
    // So dark that many choices have the same code: reading it back would move the marker.
    for (int x = 0; x < field()->width(); x += 7) {
        const QPoint point(x, field()->height() - 2);
        sendMouse(field(), QEvent::MouseButtonPress, field()->mapToGlobal(point));
        const int sat = qBound(0, qRound(x * 255.0 / (field()->width() - 1)), 255);
        QCOMPARE(choice(), (Choice{hue, sat, 2}));
    }
}

void CustomColorPickerDialogTest::savesWhatStandsThere_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    QTest::newRow("code") << "#336699"
                          << "#336699";
    QTest::newRow("word as typed") << "DodgerBlue"
                                   << "DodgerBlue";
    QTest::newRow("blanks around it") << "  #336699 "
                                      << "#336699";
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("blanks") << "   "
                            << "";
    QTest::newRow("no colour") << "no colour"
                               << "no colour";
}

void CustomColorPickerDialogTest::savesWhatStandsThere()
{
    QFETCH(QString, text);
    open();
    hex()->setText(text);
    QTest::mouseClick(button("Save"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QTEST(m_dialog->getHex(), "result");
}

void CustomColorPickerDialogTest::cancelRejects()
{
    open("#336699");
    hex()->setText("#ff0000");
    QTest::mouseClick(button("Cancel"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
    QCOMPARE(m_dialog->getHex(), "#336699");
}

void CustomColorPickerDialogTest::returnInTheTextSaves_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void CustomColorPickerDialogTest::returnInTheTextSaves()
{
    QFETCH(Qt::Key, key);
    open();
    QTest::keyClicks(hex(), "#abc"); // replaces what is selected
    QTest::keyClick(hex(), key);
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QCOMPARE(m_dialog->getHex(), "#abc");
}

void CustomColorPickerDialogTest::backKeys_data()
{
    QTest::addColumn<bool>("isInText");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("result");
    QTest::newRow("Esc in the text") << true << Qt::Key_Escape << int(QDialog::Rejected);
    QTest::newRow("Backspace in the text") << true << Qt::Key_Backspace << kOpen;
    QTest::newRow("Esc on a button") << false << Qt::Key_Escape << int(QDialog::Rejected);
    QTest::newRow("Backspace on a button") << false << Qt::Key_Backspace << int(QDialog::Rejected);
}

void CustomColorPickerDialogTest::backKeys()
{
    QFETCH(bool, isInText);
    QFETCH(Qt::Key, key);
    open();
    if (!isInText)
        button("Save")->setFocus();
    pressKey(*m_dialog, key);
    QTEST(m_dialog->result(), "result");
    if (m_dialog->isVisible())
        QCOMPARE(hex()->text(), ""); // it was selected
}

QTEST_MAIN(CustomColorPickerDialogTest)
#include "tst_customcolorpickerdialog.moc"
