// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SystemTheme.h"

#include <QSettings>
#include <QTest>
#include <QVariant>

/// What the registry says of the desktop's palette.
class SystemThemeTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void registryValueDecides_data();
    void registryValueDecides();
    void valueIsReadAnew();
};

namespace
{

const QString kKey = QStringLiteral(
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize");
const QString kValue = QStringLiteral("AppsUseLightTheme");

/// An invalid variant takes the value away.
void setValue(const QVariant& value)
{
    QSettings settings(kKey, QSettings::NativeFormat);
    if (value.isValid())
        settings.setValue(kValue, value);
    else
        settings.remove(kValue);
}

} // namespace

void SystemThemeTest::initTestCase()
{
    // Only where the profile is thrown away afterwards, and so knows nothing of a palette yet.
    QVERIFY(!QSettings(kKey, QSettings::NativeFormat).contains(kValue));
}

void SystemThemeTest::cleanup()
{
    setValue({});
}

void SystemThemeTest::registryValueDecides_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isDark");
    QTest::newRow("absent") << QVariant() << false;
    QTest::newRow("light") << QVariant(1) << false;
    QTest::newRow("dark") << QVariant(0) << true;
    QTest::newRow("any other number is light") << QVariant(2) << false;
    QTest::newRow("no number") << QVariant(QStringLiteral("dark")) << false;
    QTest::newRow("empty text") << QVariant(QString()) << false;
}

void SystemThemeTest::registryValueDecides()
{
    QFETCH(QVariant, value);
    setValue(value);
    QTEST(Platform::prefersDark(), "isDark");
}

void SystemThemeTest::valueIsReadAnew()
{
    setValue(0);
    QVERIFY(Platform::prefersDark());
    setValue(1);
    QVERIFY(!Platform::prefersDark());
}

QTEST_GUILESS_MAIN(SystemThemeTest)
#include "tst_systemtheme_windows.moc"
