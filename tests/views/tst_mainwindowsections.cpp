// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AddEditCategoryDialog.h"
#include "CustomMessageBox.h"
#include "GlyphWidgets.h"
#include "HomePageFixture.h"

/// How sections and templates are made, changed and removed: what the dialogs show, what is told of
/// a refusal, and what the document holds at the end.
class MainWindowSectionsTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void dialogShows_data();
    void dialogShows();
    void emptyNameIsWarnedOfInTheDialog_data();
    void emptyNameIsWarnedOfInTheDialog();
    void dialogsHoldTheWindows_data();
    void dialogsHoldTheWindows();
    void cancelChangesNothing_data();
    void cancelChangesNothing();
    void takenNameIsWarnedOf_data();
    void takenNameIsWarnedOf();
    void emptyNameEndsTheFlow_data();
    void emptyNameEndsTheFlow();
    void dialogsAreTheWindows();

    void sectionIsAdded();
    void otherCaseIsAnotherName();
    void sectionIsEdited_data();
    void sectionIsEdited();
    void unchangedSectionIsNotWritten();
    void unknownSectionIsNotEdited_data();
    void unknownSectionIsNotEdited();

    void deleteIsConfirmed_data();
    void deleteIsConfirmed();
    void deleteQuestionShowsTheName_data();
    void deleteQuestionShowsTheName();
    void lastSectionIsReplaced();
    void unknownSectionIsNotDeleted_data();
    void unknownSectionIsNotDeleted();

    void templateIsSaved();
    void emptySectionMakesNoTemplate();
    void noSectionMakesNoTemplate();
    void overwriteIsConfirmed_data();
    void overwriteIsConfirmed();

    void sectionIsMadeFromATemplate();
    void unknownTemplateMakesNoSection();

    void focusComesBackAfterAMenu_data();
    void focusComesBackAfterAMenu();
    void sectionMayVanishBehindTheDialog_data();
    void sectionMayVanishBehindTheDialog();
    void templateMayVanishBehindTheDialog();

private:
    using Flow = std::function<bool()>;
    Flow flowOf(const QString& name);
    static void addFlows();
};

namespace
{

AddEditCategoryDialog* sectionDialog(QWidget* modal)
{
    return qobject_cast<AddEditCategoryDialog*>(modal);
}

void name(QWidget* modal, const QString& text)
{
    auto* input = modal->findChild<QLineEdit*>();
    QVERIFY(input);
    input->setText(text);
    QTest::keyClick(input, Qt::Key_Return);
}

void pick(const QWidget* modal, uint glyph)
{
    for (auto* button : modal->findChildren<GlyphButton*>()) {
        if (button->property("glyph").toUInt() == glyph)
            button->click();
    }
}

struct Message
{
    QString title;
    QString text;
    bool operator==(const Message&) const = default;
};

Message messageOf(const QWidget* modal)
{
    const auto labels = modal->findChildren<QLabel*>();
    return {labels.value(0)->text(), labels.value(1)->text()};
}

/// Answers a section dialog with a name, and closes the message boxes behind it.
class Answer : public ModalDriver
{
public:
    explicit Answer(const QString& sectionName)
        : ModalDriver([this, sectionName](QWidget* modal) {
              if (sectionDialog(modal)) {
                  name(modal, sectionName);
                  return;
              }
              messages.append(messageOf(modal));
              pressKey(*modal, Qt::Key_Return);
          })
    {}

    QList<Message> messages;
};

} // namespace

/// One of the flows that end in a dialog for a name, on the sections of the standard document.
MainWindowSectionsTest::Flow MainWindowSectionsTest::flowOf(const QString& name)
{
    if (name == QLatin1String("add"))
        return [this] { return m_window->addSectionViaDialog(m_window.get()); };
    if (name == QLatin1String("edit"))
        return [this] { return m_window->editSectionViaDialog(m_window.get(), "Alpha"); };
    if (name == QLatin1String("save template"))
        return [this] { return m_window->saveSectionAsTemplate(m_window.get(), "Alpha"); };
    return [this] { return m_window->createSectionFromTemplateViaDialog(m_window.get(), "Kit"); };
}

void MainWindowSectionsTest::addFlows()
{
    QTest::addColumn<QString>("flow");
    for (const char* flow : {"add", "edit", "save template", "use template"})
        QTest::newRow(flow) << flow;
}

void MainWindowSectionsTest::dialogShows_data()
{
    QTest::addColumn<QString>("flow");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("shownName");
    QTest::addColumn<uint>("icon");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("placeholder");
    const QString label = Tr::t("dialog.lbl_section_name");
    const QString placeholder = Tr::t("dialog.section_name_placeholder");
    QTest::newRow("add") << "add"
                         << "Add Section"
                         << "" << 58055u << label << placeholder;
    QTest::newRow("edit") << "edit"
                          << "Edit Section"
                          << "Alpha" << AlphaIcon << label << placeholder;
    QTest::newRow("save template")
        << "save template"
        << "Save as Template"
        << "Alpha" << AlphaIcon << "Template Name:" << Tr::t("template.name_placeholder");
    QTest::newRow("use template") << "use template"
                                  << "New Section from Template"
                                  << "Kit" << KitIcon << label << placeholder;
}

void MainWindowSectionsTest::dialogShows()
{
    QFETCH(QString, flow);
    open();
    QString title;
    QString shownName;
    QString placeholder;
    QStringList labels;
    uint icon = 0;
    const ModalDriver driver([&](QWidget* modal) {
        auto* dialog = sectionDialog(modal);
        QVERIFY(dialog);
        title = dialog->windowTitle();
        shownName = dialog->getName();
        icon = dialog->getIcon();
        placeholder = dialog->findChild<QLineEdit*>()->placeholderText();
        for (const QLabel* label : dialog->findChildren<QLabel*>())
            labels.append(label->text());
        pressKey(*dialog, Qt::Key_Escape);
    });
    QVERIFY(!flowOf(flow)());
    QTEST(title, "title");
    QTEST(shownName, "shownName");
    QTEST(icon, "icon");
    QTEST(placeholder, "placeholder");
    QFETCH(QString, label);
    QVERIFY(labels.contains(label));
}

void MainWindowSectionsTest::emptyNameIsWarnedOfInTheDialog_data()
{
    QTest::addColumn<QString>("flow");
    QTest::addColumn<QString>("text");
    for (const char* flow : {"add", "edit", "use template"})
        QTest::newRow(flow) << flow << "Section name cannot be empty.";
    QTest::newRow("save template") << "save template"
                                   << "Template name cannot be empty.";
}

void MainWindowSectionsTest::emptyNameIsWarnedOfInTheDialog()
{
    QFETCH(QString, flow);
    QFETCH(QString, text);
    open();
    QList<Message> messages;
    const ModalDriver driver([&](QWidget* modal) {
        const ModalDriver inner([&](QWidget* box) {
            messages.append(messageOf(box));
            pressKey(*box, Qt::Key_Return);
        });
        name(modal, "  ");
        QVERIFY(modal->isVisible()); // it stays for another try
        modal->close();
    });
    QVERIFY(!flowOf(flow)());
    QCOMPARE(messages.size(), 1);
    QCOMPARE(messages.constFirst().title, QStringLiteral("Validation"));
    QCOMPARE(messages.constFirst().text, text);
    QCOMPARE(onDisk(), standardDocument());
}

void MainWindowSectionsTest::dialogsHoldTheWindows_data()
{
    addFlows();
    QTest::newRow("delete") << "delete";
}

void MainWindowSectionsTest::dialogsHoldTheWindows()
{
    QFETCH(QString, flow);
    open();
    QTRY_VERIFY(!g_blockAutoQuit);
    bool isHeld = false;
    bool isDimmed = false;
    const ModalDriver driver([&](QWidget* modal) {
        isHeld = g_blockAutoQuit;
        isDimmed = backdrop()->isVisible();
        if (flow == QLatin1String("delete"))
            modal->findChildren<QPushButton*>().at(1)->click();
        else
            pressKey(*modal, Qt::Key_Escape);
    });
    const bool hasChanged = flow == QLatin1String("delete")
                                ? m_window->deleteSectionWithConfirm(m_window.get(), "Alpha")
                                : flowOf(flow)();
    QVERIFY(!hasChanged);
    QVERIFY(isHeld);
    QVERIFY(isDimmed);
    QVERIFY(!backdrop()->isVisible());
    QTRY_VERIFY(!g_blockAutoQuit);
}

void MainWindowSectionsTest::cancelChangesNothing_data()
{
    addFlows();
}

void MainWindowSectionsTest::cancelChangesNothing()
{
    QFETCH(QString, flow);
    open();
    const ModalDriver driver([](QWidget* modal) {
        modal->findChild<QLineEdit*>()->setText("Other");
        pick(modal, 0xF09A);
        pressKey(*modal, Qt::Key_Escape);
    });
    QVERIFY(!flowOf(flow)());
    QCOMPARE(driver.count(), 1);
    QCOMPARE(onDisk(), standardDocument());
    QCOMPARE(model()->data(), standardDocument());
}

void MainWindowSectionsTest::takenNameIsWarnedOf_data()
{
    QTest::addColumn<QString>("flow");
    for (const char* flow : {"add", "edit", "use template"})
        QTest::newRow(flow) << flow;
}

void MainWindowSectionsTest::takenNameIsWarnedOf()
{
    QFETCH(QString, flow);
    open();
    const Answer answer("Beta");
    QVERIFY(!flowOf(flow)());
    const QList<Message> expected{{"Validation", "A section with that name already exists."}};
    QCOMPARE(answer.messages, expected);
    QCOMPARE(answer.count(), 2); // the dialog doesn't come back
    QCOMPARE(onDisk(), standardDocument());
}

void MainWindowSectionsTest::emptyNameEndsTheFlow_data()
{
    QTest::addColumn<QString>("flow");
    QTest::addColumn<bool>("isWarnedOf");
    QTest::newRow("add") << "add" << true;
    QTest::newRow("edit") << "edit" << true;
    QTest::newRow("save template") << "save template" << false;
    QTest::newRow("use template") << "use template" << false;
}

void MainWindowSectionsTest::emptyNameEndsTheFlow()
{
    QFETCH(QString, flow);
    QFETCH(bool, isWarnedOf);
    open();
    QList<Message> messages;
    const ModalDriver driver([&](QWidget* modal) {
        if (auto* dialog = sectionDialog(modal)) {
            dialog->findChild<QLineEdit*>()->clear();
            dialog->accept(); // past its own check
        } else {
            messages.append(messageOf(modal));
            pressKey(*modal, Qt::Key_Return);
        }
    });
    QVERIFY(!flowOf(flow)());
    QList<Message> expected;
    if (isWarnedOf)
        expected.append(Message{"Validation", "Section name cannot be empty."});
    QCOMPARE(messages, expected);
    QCOMPARE(onDisk(), standardDocument());
}

void MainWindowSectionsTest::dialogsAreTheWindows()
{
    open();
    QList<QWidget*> parents;
    const ModalDriver driver([&parents](QWidget* modal) {
        parents.append(modal->parentWidget());
        pressKey(*modal, Qt::Key_Escape);
    });
    // A page of the window goes with the next rebuild, and would take the dialog along.
    m_window->addSectionViaDialog(home());
    m_window->editSectionViaDialog(home(), "Alpha");
    m_window->saveSectionAsTemplate(home(), "Gamma"); // a warning: it has no items
    m_window->deleteSectionWithConfirm(home(), "Gamma");
    m_window->addSectionViaDialog(nullptr);
    QWidget* window = m_window.get();
    QCOMPARE(parents, QList<QWidget*>({window, window, window, window, nullptr}));
}

void MainWindowSectionsTest::sectionIsAdded()
{
    open();
    const ModalDriver driver([](QWidget* modal) {
        pick(modal, 0xE943);
        name(modal, "  Work ");
    });
    QVERIFY(m_window->addSectionViaDialog(m_window.get()));
    QCOMPARE(onDisk().categories, QStringList({"Alpha", "Beta", "Gamma", "Work"}));
    QCOMPARE(onDisk().categoryIcons.value("Work"), 0xE943u);
    QCOMPARE(model()->currentCategory(), QStringLiteral("Work"));
    QCOMPARE(home()->selectedCategoryButton()->text(), QStringLiteral("Work"));
    QVERIFY(rows().isEmpty());
}

void MainWindowSectionsTest::otherCaseIsAnotherName()
{
    open();
    const Answer answer("BETA");
    QVERIFY(m_window->addSectionViaDialog(m_window.get()));
    QVERIFY(answer.messages.isEmpty());
    QCOMPARE(onDisk().categories, QStringList({"Alpha", "Beta", "Gamma", "BETA"}));
    QCOMPARE(onDisk().categoryIcons.value("BETA"), 58055u);
}

void MainWindowSectionsTest::sectionIsEdited_data()
{
    QTest::addColumn<QString>("newName");
    QTest::addColumn<uint>("newIcon");
    QTest::newRow("name") << "Omega" << AlphaIcon;
    QTest::newRow("icon") << "Alpha" << 0xF09Au;
    QTest::newRow("both") << "Omega" << 0xF09Au;
}

void MainWindowSectionsTest::sectionIsEdited()
{
    QFETCH(QString, newName);
    QFETCH(uint, newIcon);
    open();
    const ModalDriver driver([&](QWidget* modal) {
        pick(modal, newIcon);
        name(modal, newName);
    });
    QVERIFY(m_window->editSectionViaDialog(m_window.get(), "Alpha"));
    QCOMPARE(onDisk().categories, QStringList({newName, "Beta", "Gamma"}));
    QCOMPARE(onDisk().categoryIcons.value(newName), newIcon);
    QCOMPARE(onDisk().sectionElements.value(newName).size(), 3);
    QCOMPARE(model()->currentCategory(), newName);
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
}

void MainWindowSectionsTest::unchangedSectionIsNotWritten()
{
    open();
    QVERIFY(QFile::remove(documentPath()));
    const Answer answer("Alpha");
    QVERIFY(!m_window->editSectionViaDialog(m_window.get(), "Alpha"));
    QCOMPARE(answer.count(), 1);
    QVERIFY(!QFile::exists(documentPath()));
}

void MainWindowSectionsTest::unknownSectionIsNotEdited_data()
{
    QTest::addColumn<QString>("section");
    QTest::newRow("no name") << "";
    QTest::newRow("unknown") << "Gone";
}

void MainWindowSectionsTest::unknownSectionIsNotEdited()
{
    QFETCH(QString, section);
    open();
    const Answer answer("Other");
    QVERIFY(!m_window->editSectionViaDialog(m_window.get(), section));
    QCOMPARE(answer.count(), 0);
    QCOMPARE(onDisk(), standardDocument());
}

void MainWindowSectionsTest::deleteIsConfirmed_data()
{
    QTest::addColumn<QString>("by");
    QTest::addColumn<bool>("isDeleted");
    QTest::newRow("delete button") << "0" << true;
    QTest::newRow("cancel button") << "1" << false;
    QTest::newRow("Return, for the default button") << "Return" << false;
    // Both close the box, which counts as its first button.
    QTest::newRow("Esc") << "Esc" << true;
    QTest::newRow("Backspace") << "Backspace" << true;
}

void MainWindowSectionsTest::deleteIsConfirmed()
{
    QFETCH(QString, by);
    QFETCH(bool, isDeleted);
    open();
    Message message;
    QStringList buttons;
    QString style;
    bool isCancelDefault = false;
    const ModalDriver driver([&](QWidget* modal) {
        message = messageOf(modal);
        const auto shown = modal->findChildren<QPushButton*>();
        for (const QPushButton* button : shown)
            buttons.append(button->text());
        isCancelDefault = shown.at(1)->isDefault();
        style = shown.at(0)->styleSheet();
        if (by == QLatin1String("Return"))
            pressKey(*modal, Qt::Key_Return);
        else if (by == QLatin1String("Esc"))
            pressKey(*modal, Qt::Key_Escape);
        else if (by == QLatin1String("Backspace"))
            pressKey(*modal, Qt::Key_Backspace);
        else
            shown.at(by.toInt())->click();
    });
    QCOMPARE(m_window->deleteSectionWithConfirm(m_window.get(), "Alpha"), isDeleted);
    QCOMPARE(message.title, Tr::t("settings.del_section_title"));
    QCOMPARE(message.text, Tr::t("settings.del_section_msg").arg("Alpha"));
    QCOMPARE(buttons, QStringList({"Delete", "Cancel"}));
    QCOMPARE(style, Theme::destructiveBtnStyle(Theme::colors()));
    QVERIFY(isCancelDefault);
    const QStringList left = onDisk().categories;
    QCOMPARE(left,
             isDeleted ? QStringList({"Beta", "Gamma"}) : QStringList({"Alpha", "Beta", "Gamma"}));
    QCOMPARE(onDisk().sectionElements.contains("Alpha"), !isDeleted);
    QCOMPARE(home()->selectedCategoryButton()->text(), left.constFirst());
}

void MainWindowSectionsTest::deleteQuestionShowsTheName_data()
{
    QTest::addColumn<QString>("section");
    QTest::newRow("markup") << "R&D <b>%1 &amp; %2</b>";
    QTest::newRow("line feed") << "one\ntwo";
    QTest::newRow("right to left") << QString::fromUtf8("\u202Eabc \u05D0");
    QTest::newRow("10,000 characters") << QString(10000, u'w');
    QTest::newRow("a megabyte") << QString(1 << 20, u'x');
}

void MainWindowSectionsTest::deleteQuestionShowsTheName()
{
    QFETCH(QString, section);
    LauncherData document = standardDocument();
    document.categories.append(section);
    open(document);
    QString text;
    int width = 0;
    const ModalDriver driver([&](QWidget* modal) {
        text = modal->findChildren<QLabel*>().at(1)->text();
        text.remove(QChar(0x200B)); // where a line may break
        width = modal->width();
        modal->findChildren<QPushButton*>().at(1)->click();
    });
    QVERIFY(!m_window->deleteSectionWithConfirm(m_window.get(), section));
    QVERIFY(text.contains(section.left(2000)));
    QVERIFY(width < 700);
}

void MainWindowSectionsTest::lastSectionIsReplaced()
{
    LauncherData document = standardDocument();
    document.categories = QStringList{"Alpha"};
    document.defaultCategory = "Alpha";
    open(document);
    const ModalDriver driver(
        [](QWidget* modal) { modal->findChildren<QPushButton*>().at(0)->click(); });
    QVERIFY(m_window->deleteSectionWithConfirm(m_window.get(), "Alpha"));
    QCOMPARE(onDisk().categories, QStringList{"Default"});
    QCOMPARE(onDisk().categoryIcons.value("Default"), 58055u);
    QVERIFY(model()->getItems("Default").isEmpty());
    QCOMPARE(model()->currentCategory(), QStringLiteral("Default"));
    QCOMPARE(home()->selectedCategoryButton()->text(), QStringLiteral("Default"));
}

void MainWindowSectionsTest::unknownSectionIsNotDeleted_data()
{
    unknownSectionIsNotEdited_data();
}

void MainWindowSectionsTest::unknownSectionIsNotDeleted()
{
    QFETCH(QString, section);
    open();
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Escape); });
    QVERIFY(!m_window->deleteSectionWithConfirm(m_window.get(), section));
    QCOMPARE(driver.count(), 0);
    QCOMPARE(onDisk(), standardDocument());
}

void MainWindowSectionsTest::templateIsSaved()
{
    open();
    const ModalDriver driver([](QWidget* modal) {
        pick(modal, 0xF09A);
        name(modal, "Fresh");
    });
    QVERIFY(m_window->saveSectionAsTemplate(m_window.get(), "Alpha"));
    LauncherData expected = standardDocument();
    expected.templates.append(
        {"Fresh", 0xF09A, {snippet({}, "One"), snippet({}, "Two"), snippet({}, "Three")}});
    QCOMPARE(onDisk(), expected);
    QCOMPARE(model()->data(), expected);
}

void MainWindowSectionsTest::emptySectionMakesNoTemplate()
{
    open();
    const Answer answer("Fresh");
    QVERIFY(!m_window->saveSectionAsTemplate(m_window.get(), "Gamma"));
    QCOMPARE(answer.count(), 1);
    const QList<Message> expected{{"Save as Template", Tr::t("template.err_empty_section")}};
    QCOMPARE(answer.messages, expected);
    QCOMPARE(onDisk(), standardDocument());
}

void MainWindowSectionsTest::noSectionMakesNoTemplate()
{
    open();
    const Answer answer("Fresh");
    QVERIFY(!m_window->saveSectionAsTemplate(m_window.get(), {}));
    QCOMPARE(answer.count(), 0);
}

void MainWindowSectionsTest::overwriteIsConfirmed_data()
{
    QTest::addColumn<QString>("by");
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("save button") << "0" << true;
    QTest::newRow("cancel button") << "1" << false;
    QTest::newRow("Return, for the default button") << "Return" << true;
    QTest::newRow("Esc") << "Esc" << true;
    QTest::newRow("Backspace") << "Backspace" << true;
}

void MainWindowSectionsTest::overwriteIsConfirmed()
{
    QFETCH(QString, by);
    QFETCH(bool, isSaved);
    open();
    Message message;
    QStringList texts;
    QString style;
    bool isSaveDefault = false;
    const ModalDriver driver([&](QWidget* modal) {
        if (sectionDialog(modal)) {
            name(modal, "Kit");
            return;
        }
        message = messageOf(modal);
        const auto buttons = modal->findChildren<QPushButton*>();
        isSaveDefault = buttons.at(0)->isDefault();
        style = buttons.at(0)->styleSheet();
        texts = QStringList{buttons.at(0)->text(), buttons.at(1)->text()};
        if (by == QLatin1String("Return"))
            pressKey(*modal, Qt::Key_Return);
        else if (by == QLatin1String("Esc"))
            pressKey(*modal, Qt::Key_Escape);
        else if (by == QLatin1String("Backspace"))
            pressKey(*modal, Qt::Key_Backspace);
        else
            buttons.at(by.toInt())->click();
    });
    QCOMPARE(m_window->saveSectionAsTemplate(m_window.get(), "Beta"), isSaved);
    QCOMPARE(driver.count(), 2);
    QCOMPARE(texts, QStringList({"Save", "Cancel"}));
    QCOMPARE(style, Theme::primaryBtnStyle(Theme::colors()));
    QVERIFY(isSaveDefault);
    QCOMPARE(message.title, QStringLiteral("Template Already Exists"));
    QCOMPARE(message.text, Tr::t("template.confirm_overwrite_msg").arg("Kit"));
    LauncherData expected = standardDocument();
    if (isSaved)
        expected.templates[0] = {"Kit", SectionTemplate::DefaultIcon, {snippet({}, "Bee")}};
    QCOMPARE(onDisk(), expected);
}

void MainWindowSectionsTest::sectionIsMadeFromATemplate()
{
    LauncherData document = standardDocument();
    document.categories.append("Kit");
    open(document);
    QString suggested;
    const ModalDriver driver([&suggested](QWidget* modal) {
        suggested = sectionDialog(modal)->getName();
        pick(modal, 0xF09A);
        name(modal, suggested);
    });
    QVERIFY(m_window->createSectionFromTemplateViaDialog(m_window.get(), "Kit"));
    QCOMPARE(suggested, QStringLiteral("Kit 2"));
    QCOMPARE(onDisk().categories, QStringList({"Alpha", "Beta", "Gamma", "Kit", "Kit 2"}));
    QCOMPARE(onDisk().categoryIcons.value("Kit 2"), 0xF09Au);
    QCOMPARE(model()->currentCategory(), QStringLiteral("Kit 2"));
    QCOMPARE(rows(), QStringList({"Tool", "Nail"}));
    QCOMPARE(onDisk().templates, document.templates);
}

void MainWindowSectionsTest::unknownTemplateMakesNoSection()
{
    open();
    const Answer answer("Fresh");
    QVERIFY(!m_window->createSectionFromTemplateViaDialog(m_window.get(), "Gone"));
    QVERIFY(!m_window->createSectionFromTemplateViaDialog(m_window.get(), {}));
    QCOMPARE(answer.count(), 0);
}

void MainWindowSectionsTest::focusComesBackAfterAMenu_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QStringList>("choices");
    QTest::addColumn<QStringList>("sections");
    QTest::newRow("add") << "homeAddBtn" << QStringList{"Add Section"}
                         << QStringList{"Alpha", "Beta", "Gamma", "New"};
    QTest::newRow("edit") << "catScroll" << QStringList{"Edit Section"}
                          << QStringList{"New", "Beta", "Gamma"};
    QTest::newRow("delete") << "catScroll" << QStringList{"Delete Section"}
                            << QStringList{"Beta", "Gamma"};
    QTest::newRow("save as template") << "homeTemplateBtn" << QStringList{"Save as Template"}
                                      << QStringList{"Alpha", "Beta", "Gamma"};
    QTest::newRow("from template")
        << "homeTemplateBtn" << QStringList{"Section from Template", "Box"}
        << QStringList{"Alpha", "Beta", "Gamma", "New"};
}

void MainWindowSectionsTest::focusComesBackAfterAMenu()
{
    QFETCH(QString, menu);
    QFETCH(QStringList, choices);
    open();
    auto* widget = m_window->findChild<QWidget*>(menu);
    QVERIFY(widget);
    widget->setFocus();
    const ModalDriver driver([](QWidget* modal) {
        if (sectionDialog(modal))
            name(modal, "New");
        else
            modal->findChildren<QPushButton*>().at(0)->click();
    });
    QList<MenuScript::Action> actions;
    for (const QString& choice : choices)
        actions.append(choose(choice));
    inMenus([widget] { QTest::keyClick(widget, Qt::Key_Return); }, actions);
    QCOMPARE(driver.count(), 1);
    QTEST(onDisk().categories, "sections");
    QTRY_COMPARE(focused(), widget);
}

void MainWindowSectionsTest::sectionMayVanishBehindTheDialog_data()
{
    QTest::addColumn<QString>("flow");
    for (const char* flow : {"edit", "save template", "overwrite template", "delete"})
        QTest::newRow(flow) << flow;
}

void MainWindowSectionsTest::sectionMayVanishBehindTheDialog()
{
    QFETCH(QString, flow);
    open();
    LauncherData expected;
    const ModalDriver driver([&](QWidget* modal) {
        if (model()->data().categories.contains("Alpha")) {
            model()->deleteCategory("Alpha");
            expected = onDisk();
        }
        if (sectionDialog(modal))
            name(modal, flow == QLatin1String("overwrite template") ? "Kit" : "Beta");
        else
            modal->findChildren<QPushButton*>().at(0)->click();
    });
    const bool hasChanged = flow == QLatin1String("delete")
                                ? m_window->deleteSectionWithConfirm(m_window.get(), "Alpha")
                            : flow == QLatin1String("edit") ? flowOf("edit")()
                                                            : flowOf("save template")();
    QVERIFY(!hasChanged);
    QCOMPARE(driver.count(), flow == QLatin1String("overwrite template") ? 2 : 1);
    QCOMPARE(onDisk(), expected);
}

void MainWindowSectionsTest::templateMayVanishBehindTheDialog()
{
    open();
    const ModalDriver driver([this](QWidget* modal) {
        model()->deleteTemplate("Kit");
        name(modal, "Fresh");
    });
    QVERIFY(!flowOf("use template")());
    QCOMPARE(driver.count(), 1);
    QCOMPARE(onDisk().categories, standardDocument().categories);
}

QTEST_MAIN(MainWindowSectionsTest)
#include "tst_mainwindowsections.moc"
