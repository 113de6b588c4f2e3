// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomePage.h"
#include "Profile.h"

#include <QtTest>

/// A user's work on sections, items and templates, by real keys and mouse, with the document on
/// disk, the programs that are started and the clipboard as witnesses.
class E2eHome : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyTypeIsMadeAndRunByKeysAlone();
    void bulkItemRunsItsLinesInOrder();
    void itemIsEdited();
    void itemMovesByTheEditor();
    void itemMovesByTheMenu();
    void itemIsDuplicated();
    void heldEnterStopsAtWhatNobodySaw();
    void deleteIsConfirmed_data();
    void deleteIsConfirmed();
    void deleteIsConfirmedByMouse();
    void sectionIsRenamed();
    void sectionNameIsTaken();
    void sectionIsDeleted_data();
    void sectionIsDeleted();
    void lastSectionIsReplaced();
    void sectionIsSavedAsTemplateAndUsed();
    void templateIsOverwritten_data();
    void templateIsOverwritten();
    void emptySectionMakesNoTemplate();
    void mouseDoesTheSame();

private:
    /// Two sections: "Work" with three snippets, "Play" with one.
    QByteArray twoSections() const;
    void writeProfile(HomePage& home) const;

    std::unique_ptr<Desktop> m_desktop;
};

void E2eHome::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

QByteArray E2eHome::twoSections() const
{
    const auto snippet = [](const char* name) {
        return Profile::item(QLatin1String(name), QStringLiteral("Snippet"),
                             QStringLiteral("text of ") + QLatin1String(name));
    };
    return Profile::documentOfSections(
        {{QStringLiteral("Work"), {snippet("One"), snippet("Two"), snippet("Three")}},
         {QStringLiteral("Play"), {snippet("Four")}}});
}

void E2eHome::writeProfile(HomePage& home) const
{
    home.program().writeData(QStringLiteral("data.json"), twoSections());
    m_desktop->setClipboard(QStringLiteral("from before"));
}

void E2eHome::everyTypeIsMadeAndRunByKeysAlone()
{
    const QString section = QStringLiteral("Work desk");
    const QString command = QStringLiteral("recorder plain \"two words\" \"say \"\"\"hi\"\"\"\"");
    const QString file = m_desktop->path(QStringLiteral("some report.pdf"));
    m_desktop->addRecorder(QStringLiteral("recorder"));
    m_desktop->addRecorder(QStringLiteral("step.exe"));
    HomePage home(*m_desktop);
    home.start();

    home.openAddMenu();
    home.chooseRow(HomePage::AddSectionRow);
    home.waitForDialog();
    home.type(section);
    home.press({HomePage::Return});
    home.waitForHome();
    QTRY_COMPARE(home.sections(), (QStringList{QStringLiteral("Default"), section}));

    const struct
    {
        const char* name;
        HomePage::TypeRow row;
        const char* type;
        QString value;
    } made[] = {
        {"Recorder", HomePage::ApplicationRow, "Application", command},
        {"Report", HomePage::FileRow, "File", file},
        {"Wiki", HomePage::UrlRow, "URL", QStringLiteral("https://wiki.example.org/a?b=c")},
        {"Greeting", HomePage::SnippetRow, "Snippet", QStringLiteral("  Dear all,\nkind regards ")},
        {"Morning", HomePage::BulkRow, "Bulk",
         QStringLiteral("step.exe \"t w o\"\nhttps://bulk.example.org")},
    };
    QStringList names;
    for (const auto& item : made) {
        home.showAgain();
        home.openAddMenu();
        home.chooseRow(HomePage::AddItemRow);
        home.fillEditor(QLatin1String(item.name), item.row, item.value);
        names.append(QLatin1String(item.name));
        QTRY_COMPARE(home.itemNames(section), names);
        const QJsonObject stored = home.item(section, int(names.size()) - 1);
        QCOMPARE(stored.value(QStringLiteral("shortcutType")).toString(), QLatin1String(item.type));
        QCOMPARE(stored.value(QStringLiteral("value")).toString(), item.value);
    }

    for (int i = 0; i < names.size(); ++i) {
        home.showAgain();
        home.goToItem(i);
        home.press({HomePage::Return});
        home.waitUntilGone();
    }
    QTRY_COMPARE(m_desktop->recorded(QStringLiteral("recorder")),
                 QStringLiteral("[plain]\n[two words]\n[say \"hi\"]\n"));
    QTRY_COMPARE(m_desktop->recorded(QStringLiteral("step.exe")), QStringLiteral("[t w o]\n"));
    QTRY_COMPARE(m_desktop->opened().size(), 3);
    QStringList opened = m_desktop->opened();
    opened.sort();
    QCOMPARE(opened, (QStringList{QUrl::fromLocalFile(file).toEncoded(),
                                  QStringLiteral("https://bulk.example.org"),
                                  QStringLiteral("https://wiki.example.org/a?b=c")}));
    QTRY_COMPARE(m_desktop->clipboard(), made[3].value);
    QCOMPARE(home.program().setting(QStringLiteral("lastCategory")).toString(), section);
}

void E2eHome::bulkItemRunsItsLinesInOrder()
{
    m_desktop->addRecorder(QStringLiteral("first.exe"));
    m_desktop->addRecorder(QStringLiteral("third.exe"));
    HomePage home(*m_desktop);
    home.program().writeData(
        QStringLiteral("data.json"),
        Profile::document(
            {Profile::item(QStringLiteral("Steps"), QStringLiteral("Bulk"),
                           QStringLiteral("first.exe 1\nsecond-is-missing.exe 2\nthird.exe 3"))}));
    home.start();
    home.press({HomePage::Down, HomePage::Return});
    // The line that fails says so, and those behind it wait for that.
    home.waitForDialog();
    QTRY_COMPARE(m_desktop->recorded(QStringLiteral("first.exe")), QStringLiteral("[1]\n"));
    QVERIFY(home.program().homeWindow().isViewable);
    QCOMPARE(m_desktop->recorded(QStringLiteral("third.exe")), QString());
    home.press({HomePage::Return});
    QTRY_COMPARE(m_desktop->recorded(QStringLiteral("third.exe")), QStringLiteral("[3]\n"));
    home.waitUntilGone();
}

void E2eHome::itemIsEdited()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    const QJsonObject before = home.item(QStringLiteral("Work"), 1);
    home.goToItem(1);
    home.press({HomePage::Space});
    home.chooseRow(HomePage::EditItemRow);
    home.press({HomePage::End});
    home.type(QStringLiteral(" & a half"));
    home.press({HomePage::Down, HomePage::Down}); // type, value
    home.chord({HomePage::Control, 'a'});
    home.type(QStringLiteral("another text"));
    home.press({HomePage::Down, HomePage::Right, HomePage::Return});
    QJsonObject expected = before;
    expected.insert(QStringLiteral("name"), QStringLiteral("Two & a half"));
    expected.insert(QStringLiteral("value"), QStringLiteral("another text"));
    QTRY_COMPARE(home.item(QStringLiteral("Work"), 1), expected);
    QCOMPARE(home.itemNames(QStringLiteral("Work")).size(), 3);
    home.press({HomePage::Return}); // the grid has the keyboard and the item is current
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("another text"));
}

void E2eHome::itemMovesByTheEditor()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    const QJsonObject item = home.item(QStringLiteral("Work"), 1);
    home.goToItem(1);
    home.press({HomePage::Space});
    home.chooseRow(HomePage::EditItemRow);
    home.press({HomePage::Return, HomePage::Right, HomePage::Return}); // to the menu of sections
    home.chooseRow(1);
    home.press({HomePage::Down, HomePage::Down, HomePage::Right, HomePage::Return});
    QTRY_COMPARE(home.itemNames(QStringLiteral("Play")),
                 (QStringList{QStringLiteral("Four"), QStringLiteral("Two")}));
    QCOMPARE(home.itemNames(QStringLiteral("Work")),
             (QStringList{QStringLiteral("One"), QStringLiteral("Three")}));
    QCOMPARE(home.item(QStringLiteral("Play"), 1), item);
    // The view has followed it there.
    home.press({HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Two"));
    QCOMPARE(home.program().setting(QStringLiteral("lastCategory")).toString(),
             QStringLiteral("Play"));
}

void E2eHome::itemMovesByTheMenu()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    const QJsonObject item = home.item(QStringLiteral("Work"), 0);
    home.goToItem(0);
    home.press({HomePage::Space});
    home.chooseRow(HomePage::MoveItemRow);
    home.chooseRow(0);
    QTRY_COMPARE(home.itemNames(QStringLiteral("Play")),
                 (QStringList{QStringLiteral("Four"), QStringLiteral("One")}));
    QCOMPARE(home.item(QStringLiteral("Play"), 1), item);
    home.press({HomePage::Return}); // the first of those that stay
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Two"));
}

void E2eHome::itemIsDuplicated()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.goToItem(0);
    home.press({HomePage::Space});
    home.chooseRow(HomePage::DuplicateItemRow);
    QTRY_COMPARE(home.itemNames(QStringLiteral("Work")),
                 (QStringList{QStringLiteral("One"), QStringLiteral("One 2"), QStringLiteral("Two"),
                              QStringLiteral("Three")}));
    const QJsonObject original = home.item(QStringLiteral("Work"), 0);
    const QJsonObject copy = home.item(QStringLiteral("Work"), 1);
    QVERIFY(copy.value(QStringLiteral("id")) != original.value(QStringLiteral("id")));
    QCOMPARE(copy.value(QStringLiteral("value")), original.value(QStringLiteral("value")));
    // The copy is current: it is the one that goes.
    home.press({HomePage::Space});
    home.chooseRow(HomePage::DeleteItemRow);
    home.press({HomePage::Return});
    QTRY_COMPARE(
        home.itemNames(QStringLiteral("Work")),
        (QStringList{QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")}));
    QCOMPARE(home.item(QStringLiteral("Work"), 0), original);
}

void E2eHome::heldEnterStopsAtWhatNobodySaw()
{
    constexpr xcb_keycode_t returnCode = 36;
    constexpr int heldMs = 1500; // several repeats
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.goToItem(0);
    home.press({HomePage::Space, HomePage::Down, HomePage::Down});
    m_desktop->client().setKeyDown(returnCode, true);
    QTRY_COMPARE(home.itemNames(QStringLiteral("Work")).size(), 4);
    QElapsedTimer held;
    held.start();
    QTRY_VERIFY(held.elapsed() > heldMs);
    m_desktop->client().setKeyDown(returnCode, false);
    QVERIFY(home.isUp());
    QCOMPARE(m_desktop->clipboard(), QStringLiteral("from before"));
    home.press({HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(),
                 home.item(QStringLiteral("Work"), 1).value(QStringLiteral("value")).toString());
}

void E2eHome::deleteIsConfirmed_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("isDeleted");
    QTest::newRow("Enter") << int(HomePage::Return) << true;
    QTest::newRow("Esc") << int(HomePage::Escape) << false;
    QTest::newRow("Backspace") << int(HomePage::BackSpace) << false;
    QTest::newRow("Left") << int(HomePage::Left) << false;
    QTest::newRow("click beside") << 0 << false;
}

void E2eHome::deleteIsConfirmed()
{
    QFETCH(int, key);
    QFETCH(bool, isDeleted);
    HomePage home(*m_desktop);
    writeProfile(home);
    const QByteArray before = twoSections();
    home.start();
    home.goToItem(1);
    home.press({HomePage::Space});
    home.chooseRow(HomePage::DeleteItemRow);
    if (key == 0)
        home.click(HomePage::BesideTheCard);
    else
        home.press({xcb_keysym_t(key)});
    // The grid has the keyboard again: Enter runs an item and does nothing else.
    home.press({HomePage::Return});
    home.waitUntilGone();
    if (isDeleted) {
        QTRY_COMPARE(home.itemNames(QStringLiteral("Work")),
                     (QStringList{QStringLiteral("One"), QStringLiteral("Three")}));
        QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of One"));
    } else {
        QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Two"));
        QCOMPARE(home.program().readData(QStringLiteral("data.json")), before);
    }
}

void E2eHome::deleteIsConfirmedByMouse()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.click(HomePage::tile(2), 3);
    home.chooseRow(HomePage::DeleteItemRow);
    // The one row of the card, in which a single click only chooses.
    constexpr QPoint kRow{308, 292};
    home.click(kRow);
    Program::keep(home.program().settledScreenshot(), QStringLiteral("home-delete"));
    QCOMPARE(home.itemNames(QStringLiteral("Work")).size(), 3);
    m_desktop->client().click(home.program().homeWindow().geometry.topLeft() + kRow);
    m_desktop->client().click(home.program().homeWindow().geometry.topLeft() + kRow);
    QTRY_COMPARE(home.itemNames(QStringLiteral("Work")),
                 (QStringList{QStringLiteral("One"), QStringLiteral("Two")}));
}

void E2eHome::sectionIsRenamed()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    const QStringList names = home.itemNames(QStringLiteral("Work"));
    home.press({HomePage::Return});
    home.chooseRow(HomePage::EditSectionRow);
    home.waitForDialog();
    home.chord({HomePage::Control, 'a'});
    home.type(QStringLiteral("R & D"));
    home.press({HomePage::Return});
    home.waitForHome();
    QTRY_COMPARE(home.sections(), (QStringList{QStringLiteral("R & D"), QStringLiteral("Play")}));
    QCOMPARE(home.itemNames(QStringLiteral("R & D")), names);
    QCOMPARE(home.itemNames(QStringLiteral("Work")), QStringList());
    QCOMPARE(home.document().value(QStringLiteral("defaultCategory")).toString(),
             QStringLiteral("R & D"));
}

void E2eHome::sectionNameIsTaken()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.openAddMenu();
    home.chooseRow(HomePage::AddSectionRow);
    const xcb_window_t dialog = home.waitForDialog();
    home.press({HomePage::Return}); // without a name
    const xcb_window_t warning = home.waitForDialog(dialog);
    home.press({HomePage::Return});
    QTRY_COMPARE(m_desktop->client().focus(), dialog);
    home.type(QStringLiteral("Play"));
    home.press({HomePage::Return});
    home.waitForDialog(dialog);
    QVERIFY(warning != dialog);
    home.press({HomePage::Return});
    home.waitForHome();
    QCOMPARE(home.program().readData(QStringLiteral("data.json")), twoSections());
}

void E2eHome::sectionIsDeleted_data()
{
    QTest::addColumn<QVector<int>>("keys");
    QTest::addColumn<bool>("isDeleted");
    QTest::newRow("Enter, which is for cancelling at first")
        << QVector<int>{HomePage::Return} << false;
    QTest::newRow("Enter on the button for it")
        << QVector<int>{HomePage::Left, HomePage::Return} << true;
    // Leaving a question answers it by its first button, whichever that is.
    QTest::newRow("Esc") << QVector<int>{HomePage::Escape} << true;
    QTest::newRow("Backspace") << QVector<int>{HomePage::BackSpace} << true;
}

void E2eHome::sectionIsDeleted()
{
    QFETCH(QVector<int>, keys);
    QFETCH(bool, isDeleted);
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.press({HomePage::Return});
    home.chooseRow(HomePage::DeleteSectionRow);
    home.waitForDialog();
    for (const int key : keys)
        home.press({xcb_keysym_t(key)});
    home.waitForHome();
    if (!isDeleted) {
        QCOMPARE(home.program().readData(QStringLiteral("data.json")), twoSections());
        return;
    }
    QTRY_COMPARE(home.sections(), QStringList{QStringLiteral("Play")});
    QCOMPARE(home.itemNames(QStringLiteral("Work")), QStringList());
    QCOMPARE(home.itemNames(QStringLiteral("Play")), QStringList{QStringLiteral("Four")});
}

void E2eHome::lastSectionIsReplaced()
{
    HomePage home(*m_desktop);
    home.program().writeData(QStringLiteral("data.json"), Profile::document(Profile::examples()));
    home.start();
    home.press({HomePage::Return});
    home.chooseRow(HomePage::DeleteSectionRow);
    home.waitForDialog();
    home.press({HomePage::Left, HomePage::Return});
    home.waitForHome();
    QTRY_COMPARE(home.sections(), QStringList{QStringLiteral("Default")});
    const QJsonObject document = home.document();
    QCOMPARE(document.value(QStringLiteral("sectionElements")).toObject(), QJsonObject());
    QCOMPARE(document.value(QStringLiteral("defaultCategory")).toString(),
             QStringLiteral("Default"));
    QCOMPARE(document.value(QStringLiteral("categoryIcons"))
                 .toObject()
                 .value(QStringLiteral("Default"))
                 .toInt(),
             0xE2C7);
}

void E2eHome::sectionIsSavedAsTemplateAndUsed()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    const QStringList names = home.itemNames(QStringLiteral("Work"));
    home.openTemplateMenu();
    home.chooseRow(HomePage::SaveTemplateRow);
    home.waitForDialog();
    home.chord({HomePage::Control, 'a'});
    home.type(QStringLiteral("Office"));
    home.press({HomePage::Return});
    home.waitForHome();
    const auto templates = [&home] {
        return home.document().value(QStringLiteral("templates")).toArray();
    };
    QTRY_COMPARE(templates().size(), 1);
    const QJsonObject saved = templates().at(0).toObject();
    QCOMPARE(saved.value(QStringLiteral("name")).toString(), QStringLiteral("Office"));
    QCOMPARE(saved.value(QStringLiteral("items")).toArray().size(), 3);

    home.showAgain();
    home.openTemplateMenu();
    home.chooseRow(HomePage::UseTemplateRow);
    home.chooseRow(0);
    home.waitForDialog();
    home.press({HomePage::Return}); // with the name that is suggested
    home.waitForHome();
    QTRY_COMPARE(home.sections(), (QStringList{QStringLiteral("Work"), QStringLiteral("Play"),
                                               QStringLiteral("Office")}));
    QCOMPARE(home.itemNames(QStringLiteral("Office")), names);
    QVERIFY(home.item(QStringLiteral("Office"), 0).value(QStringLiteral("id")) !=
            home.item(QStringLiteral("Work"), 0).value(QStringLiteral("id")));
    home.showAgain();
    home.press({HomePage::Down, HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of One"));
    QCOMPARE(home.program().setting(QStringLiteral("lastCategory")).toString(),
             QStringLiteral("Office"));
}

void E2eHome::templateIsOverwritten_data()
{
    QTest::addColumn<QVector<int>>("keys");
    QTest::addColumn<int>("itemCount"); // of the template afterwards
    QTest::newRow("Enter") << QVector<int>{HomePage::Return} << 3;
    QTest::newRow("the button for cancelling")
        << QVector<int>{HomePage::Right, HomePage::Return} << 1;
    QTest::newRow("Esc, which answers by the first button") << QVector<int>{HomePage::Escape} << 3;
}

void E2eHome::templateIsOverwritten()
{
    QFETCH(QVector<int>, keys);
    QFETCH(int, itemCount);
    HomePage home(*m_desktop);
    QJsonObject document = QJsonDocument::fromJson(twoSections()).object();
    SectionTemplate old;
    old.name = QStringLiteral("Work");
    old.items = {Profile::item(QStringLiteral("Old"), QStringLiteral("Snippet"),
                               QStringLiteral("from long ago"))};
    document.insert(QStringLiteral("templates"), QJsonArray{old.toJson()});
    home.program().writeData(QStringLiteral("data.json"), QJsonDocument(document).toJson());
    home.start();
    home.openTemplateMenu();
    home.chooseRow(HomePage::SaveTemplateRow);
    const xcb_window_t dialog = home.waitForDialog();
    home.press({HomePage::Return});
    home.waitForDialog(dialog);
    for (const int key : keys)
        home.press({xcb_keysym_t(key)});
    home.waitForHome();
    const auto items = [&home] {
        const QJsonArray templates = home.document().value(QStringLiteral("templates")).toArray();
        return templates.size() == 1
                   ? templates.at(0).toObject().value(QStringLiteral("items")).toArray()
                   : QJsonArray();
    };
    QTRY_COMPARE(items().size(), itemCount);
}

void E2eHome::emptySectionMakesNoTemplate()
{
    HomePage home(*m_desktop);
    home.program().writeData(QStringLiteral("data.json"), Profile::document({}));
    home.start();
    home.openTemplateMenu();
    home.chooseRow(HomePage::SaveTemplateRow);
    home.waitForDialog();
    Program::keep(home.program().settledScreenshot(), QStringLiteral("home-message-box"));
    home.press({HomePage::Return});
    home.waitForHome();
    QCOMPARE(home.program().readData(QStringLiteral("data.json")), Profile::document({}));
}

void E2eHome::mouseDoesTheSame()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    // The second pill stands right behind the first, whose name is as long.
    constexpr QPoint kSecondPill = HomePage::FirstPill + QPoint(85, 0);
    home.click(kSecondPill);
    home.click(HomePage::AddButton);
    home.chooseRow(HomePage::AddItemRow);
    home.fillEditor(QStringLiteral("Five"), HomePage::SnippetRow, QStringLiteral("text of Five"));
    QTRY_COMPARE(home.itemNames(QStringLiteral("Play")),
                 (QStringList{QStringLiteral("Four"), QStringLiteral("Five")}));
    const QPoint corner = home.program().homeWindow().geometry.topLeft();
    m_desktop->client().click(corner + HomePage::tile(1));
    m_desktop->client().click(corner + HomePage::tile(1));
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Five"));
    // The menu of a section that isn't current, by its pill: it becomes that first.
    home.show();
    home.click(HomePage::FirstPill, 3);
    home.program().settledScreenshot();
    home.chooseRow(HomePage::DeleteSectionRow);
    home.waitForDialog();
    home.press({HomePage::Left, HomePage::Return});
    home.waitForHome();
    QTRY_COMPARE(home.sections(), QStringList{QStringLiteral("Play")});
}

QTEST_GUILESS_MAIN(E2eHome)
#include "tst_e2e_home.moc"
