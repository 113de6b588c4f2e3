// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomePage.h"
#include "Profile.h"

#include <QtTest>

/// The settings as pictures to look at: every page, and the menu and the dialog of the display, in
/// both themes, all languages and two scales.
class E2eSettingsLooks : public QObject
{
    Q_OBJECT

private slots:
    void pages_data();
    void pages();
};

void E2eSettingsLooks::pages_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("scale");
    for (const char* language : {"en", "id", "es", "ja"}) {
        for (const int scale : {1, 2}) {
            QTest::addRow("light-%s-%d", language, scale)
                << 1 << QString::fromLatin1(language) << scale;
            QTest::addRow("dark-%s-%d", language, scale)
                << 2 << QString::fromLatin1(language) << scale;
        }
    }
}

void E2eSettingsLooks::pages()
{
    QFETCH(int, theme);
    QFETCH(QString, language);
    QFETCH(int, scale);
    Desktop desktop(Desktop::Everything,
                    {QStringLiteral("openbox"), QStringLiteral("--sm-disable")},
                    QSize(Desktop::ScreenWidth, Desktop::ScreenHeight) * scale);
    HomePage home(desktop);
    home.program().setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    home.program().setSetting(QStringLiteral("Language/Code"), language);
    home.program().setScale(scale);
    home.program().writeData(QStringLiteral("data.json"), Profile::document(Profile::examples()));
    home.start();
    QImage last = home.settledScreenshot();
    const auto keep = [&home, &last](const char* name) {
        const QImage picture = home.settledScreenshot();
        QVERIFY2(picture != last, name); // each key has led somewhere
        last = picture;
        Program::keep(picture, QStringLiteral("settings-%1-%2")
                                   .arg(QString::fromLatin1(QTest::currentDataTag()),
                                        QString::fromLatin1(name)));
    };
    home.press({HomePage::Tab});
    keep("1-display");
    for (const char* name : {"2-program", "3-templates", "4-about"}) {
        home.press({HomePage::Down});
        keep(name);
    }
    home.press({HomePage::Up, HomePage::Up, HomePage::Up, HomePage::Return});
    home.press({HomePage::Down, HomePage::Down, HomePage::Down, HomePage::Return});
    home.press({HomePage::Down});
    keep("language-menu");
    home.press({HomePage::Escape, HomePage::Up, HomePage::Up, HomePage::Return});
    home.waitForDialog();
    keep("picker");
}

QTEST_GUILESS_MAIN(E2eSettingsLooks)
#include "tst_e2e_settingslooks.moc"
