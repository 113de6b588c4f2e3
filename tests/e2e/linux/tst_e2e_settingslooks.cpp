// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Profile.h"
#include "SettingsKeys.h"
#include "Theme.h"

#include <QtTest>

/// The settings as pictures to look at: every page, a menu and dialogs of it, in both themes, all
/// languages and two scales, and the colour dialog on colours at the edge of its field.
class E2eSettingsLooks : public QObject
{
    Q_OBJECT

private slots:
    void pages_data();
    void pages();
    void colors_data();
    void colors();

private:
    void openSettings(Desktop& desktop, SettingsKeys& settings, int scale) const;
};

namespace
{

// Between the list of categories and the cards, from the corner of the window.
constexpr QPoint kPanel{260, 130};

} // namespace

/// Starts the program and waits until the page is there and fully opaque.
void E2eSettingsLooks::openSettings(Desktop& desktop, SettingsKeys& settings, int scale) const
{
    settings.program().setScale(scale);
    settings.program().writeData(QStringLiteral("data.json"),
                                 Profile::document(Profile::examples()));
    settings.start();
    settings.press({HomePage::Tab});
    settings.waitOrGiveUp(
        [&] {
            const QRect window = settings.program().homeWindow().geometry;
            const QPoint panel = window.topLeft() + kPanel * scale;
            return window.width() == MainWindow::WINDOW_WIDTH_SETTINGS * scale &&
                   desktop.client().screenshot().pixelColor(panel) == QColor(Theme::panelBg());
        },
        "the settings don't come up");
}

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
    SettingsKeys settings(desktop);
    Theme::forceTheme = theme;
    settings.program().setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    settings.program().setSetting(QStringLiteral("Language/Code"), language);
    openSettings(desktop, settings, scale);
    QImage last;
    const auto keep = [&settings, &last](const char* name) {
        const QImage picture = settings.settledScreenshot();
        QVERIFY2(picture != last, name); // each key has led somewhere
        last = picture;
        Program::keep(picture, QStringLiteral("settings-%1-%2")
                                   .arg(QString::fromLatin1(QTest::currentDataTag()),
                                        QString::fromLatin1(name)));
    };
    keep("1-display");
    for (const char* name : {"2-program", "3-templates", "4-about"}) {
        settings.press({HomePage::Down});
        keep(name);
    }
    settings.press({HomePage::Up, HomePage::Up, HomePage::Up, HomePage::Return});
    settings.press({HomePage::Down, HomePage::Down, HomePage::Down, HomePage::Return});
    settings.press({HomePage::Down});
    keep("language-menu");
    settings.press({HomePage::Escape, HomePage::Up, HomePage::Up, HomePage::Return});
    settings.waitForDialog();
    keep("picker");
    settings.press({HomePage::Escape});
    settings.waitForHome();
    settings.press({HomePage::Escape, HomePage::Down, HomePage::Return});
    settings.press({HomePage::Right, HomePage::Return}); // past the button that resets
    keep("recorder");
    settings.press({HomePage::Escape});
    settings.press(HomePage::Down, SettingsKeys::DeleteRow);
    keep("5-program-below");
    settings.press({HomePage::Return});
    settings.waitForDialog();
    keep("deletion");
}

void E2eSettingsLooks::colors_data()
{
    QTest::addColumn<QString>("seed");
    for (const char* seed : {"ffffff", "000000", "808080", "0284c7"}) {
        for (const char* theme : {"light", "dark"})
            QTest::addRow("%s-%s", theme, seed) << QString::fromLatin1(seed);
    }
}

void E2eSettingsLooks::colors()
{
    QFETCH(QString, seed);
    const QString row = QString::fromLatin1(QTest::currentDataTag());
    Desktop desktop;
    SettingsKeys settings(desktop);
    Theme::forceTheme = row.startsWith(u"light") ? 1 : 2;
    Theme::seedColorHex = u'#' + seed;
    settings.program().setSetting(QStringLiteral("Theme/ForceTheme"), Theme::forceTheme);
    settings.program().setSetting(QStringLiteral("Theme/SeedColor"), Theme::seedColorHex);
    openSettings(desktop, settings, 1);
    settings.press({HomePage::Return, HomePage::Down, HomePage::Return});
    settings.waitForDialog();
    Program::keep(settings.settledScreenshot(), QStringLiteral("settings-picker-") + row);
}

QTEST_GUILESS_MAIN(E2eSettingsLooks)
#include "tst_e2e_settingslooks.moc"
