// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "CustomWidgets.h"
#include "FakeHotkeyBackend.h"
#include "FlowLayout.h"
#include "GlobalHotkeyController.h"
#include "GlyphWidgets.h"
#include "LauncherModel.h"
#include "SpotlightResultDelegate.h"
#include "SpotlightWindow.h"
#include "TestHome.h"
#include "Theme.h"

#include <QDir>
#include <QFile>
#include <QFrame>
#include <QListWidget>
#include <QPropertyAnimation>

/// A Spotlight window with the hotkeys of a made-up desktop, settings of its own and a document
/// that holds nothing but the items it is given; and the widgets inside, by the names they bear.
class SpotlightFixture
{
public:
    SpotlightFixture()
        : backend(FakeHotkeyBackend::install()), model(freshDocument()), window(&model, nullptr)
    {}

    /// The document from now on, in one section.
    void setItems(const QVector<LauncherElement>& items)
    {
        model.saveReorderedItems(model.data().categories.constFirst(), items);
    }

    /// What the desktop does when the user presses the hotkey.
    void pressHotkey()
    {
        FakeHotkeyBackend::Press press{HotkeyId};
        window.hotkeyController()->nativeEventFilter(FakeHotkeyBackend::eventType(), &press,
                                                     nullptr);
    }

    QFrame* frame(const char* name) const
    {
        return window.findChild<QFrame*>(QString::fromLatin1(name));
    }
    QFrame* shell() const { return frame("spotlightShell"); }
    QFrame* shadowLayer() const { return frame("spotlightShadowLayer"); }
    QFrame* pill() const { return frame("spotlightSearchPill"); }
    QFrame* box() const { return frame("spotlightSearchBox"); }
    QFrame* panel() const { return frame("spotlightResultsPanel"); }
    QWidget* chipRow() const
    {
        return window.findChild<QWidget*>(QStringLiteral("spotlightChipRow"));
    }
    GhostLineEdit* field() const { return window.findChild<GhostLineEdit*>(); }
    QListWidget* list() const { return window.findChild<QListWidget*>(); }
    GlyphButton* filterButton() const { return box()->findChild<GlyphButton*>(); }
    GlyphButton* settingsButton() const { return box()->findChildren<GlyphButton*>().constLast(); }
    GlyphLabel* magnifier() const { return box()->findChild<GlyphLabel*>(); }

    /// The chips in the order of their layout.
    QVector<GlyphButton*> chips() const
    {
        QVector<GlyphButton*> found;
        const QLayout* layout = chipRow()->layout();
        for (int i = 0; i < layout->count(); ++i)
            found.append(qobject_cast<GlyphButton*>(layout->itemAt(i)->widget()));
        return found;
    }

    QStringList chipTexts() const
    {
        QStringList texts;
        for (const GlyphButton* chip : chips())
            texts.append(chip->text());
        return texts;
    }

    /// The fade that is under way, or null.
    QPropertyAnimation* fade() const
    {
        for (QPropertyAnimation* animation : window.findChildren<QPropertyAnimation*>()) {
            if (animation->state() != QAbstractAnimation::Stopped)
                return animation;
        }
        return nullptr;
    }

    /// The list as text: headers behind a "# ", all other rows by their title.
    QStringList rows() const
    {
        QStringList texts;
        for (int row = 0; row < list()->count(); ++row) {
            const QListWidgetItem* item = list()->item(row);
            const bool isHeader = item->data(SpotlightResultDelegate::RoleIsHeader).toBool();
            texts.append((isHeader ? QStringLiteral("# ") : QString()) + item->text());
        }
        return texts;
    }

    /// The title of the selected row; empty if none is.
    QString selected() const
    {
        const QList<QListWidgetItem*> items = list()->selectedItems();
        return items.size() == 1 ? items.constFirst()->text() : QString();
    }

    static constexpr int HotkeyId = 2;

    FakeHotkeyBackend* backend; ///< owned by the process, until the next fixture
    LauncherModel model;
    SpotlightWindow window;

private:
    /// Path of a document that doesn't exist yet; the settings are gone too.
    static QString freshDocument()
    {
        QFile::remove(Theme::settingsFilePath());
        const QString path = QDir(TestHome::dataDir()).filePath(QStringLiteral("data.json"));
        QFile::remove(path);
        return path;
    }
};

/// An item under an id of its own.
inline LauncherElement makeItem(const QString& name, const QString& type,
                                const QString& value = QString())
{
    LauncherElement element;
    element.id = LauncherElement::createId();
    element.name = name;
    element.shortcutType = type;
    element.value = value;
    return element;
}
